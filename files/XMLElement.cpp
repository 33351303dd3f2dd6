// SPDX-License-Identifier: MIT
#include "files/XMLElement.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "files/XMLText.h"
#include "platform/core/NumberText.h"

namespace tallyscope {

namespace {

CString Escaped(std::string_view text, bool alreadyEscaped) {
  return alreadyEscaped ? CString(text) : EncodeXml(text);
}

CString EscapedName(std::string_view text, bool alreadyEscaped) {
  CString name = Escaped(text, alreadyEscaped);
  name.erase(name.find_last_not_of(' ') + 1);
  return name;
}

int CopyDecoded(const CString& escaped, char* buffer) {
  if (buffer == nullptr) return static_cast<int>(escaped.size());
  const CString text = DecodeXml(escaped);
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  return static_cast<int>(text.size());
}

}  // namespace

XMLAttribute::XMLAttribute(const char* name, const char* value, bool alreadyEscaped) {
  SetName(name != nullptr ? name : "", alreadyEscaped);
  SetValue(value != nullptr ? value : "", alreadyEscaped);
}

void XMLAttribute::SetName(std::string_view text, bool alreadyEscaped) {
  name_ = EscapedName(text, alreadyEscaped);
}

void XMLAttribute::SetValue(std::string_view text, bool alreadyEscaped) {
  value_ = Escaped(text, alreadyEscaped);
}

void XMLAttribute::SetValueInt(int value) {
  SetValue(std::to_string(value), false);
}

void XMLAttribute::SetValueFloat(double value) {
  SetValue(FormatFixed(value, 6), false);
}

CString XMLAttribute::GetName() const {
  return DecodeXml(name_);
}

CString XMLAttribute::GetValue() const {
  return DecodeXml(value_);
}

int XMLAttribute::GetName(char* buffer) const {
  return CopyDecoded(name_, buffer);
}

int XMLAttribute::GetValue(char* buffer) const {
  return CopyDecoded(value_, buffer);
}

int XMLAttribute::GetValueInt() const {
  return ParseLeadingInteger(GetValue());
}

double XMLAttribute::GetValueFloat() const {
  return ParseLeadingNumber(GetValue());
}

XMLElement::XMLElement(XMLElement* parent, const char* tag, int /*reserved*/) : parent_(parent) {
  ParseTag(tag != nullptr ? tag : "");
}

XMLElement::~XMLElement() {
  RemoveAllAttributes();
  RemoveAllElements();
}

void XMLElement::ParseTag(std::string_view tag) {
  if (tag.starts_with('<')) tag.remove_prefix(1);
  const auto nameEnd = std::min(tag.find_first_of(" \t/>\""), tag.size());
  name_ = EscapedName(tag.substr(0, nameEnd), false);
  tag.remove_prefix(nameEnd);
  for (;;) {
    tag.remove_prefix(std::min(tag.find_first_not_of(" \t"), tag.size()));
    if (tag.empty() || tag[0] == '>' || tag[0] == '/') return;
    const auto equals = tag.find('=');
    if (equals == std::string_view::npos) return;
    const auto opening = tag.find('"', equals + 1);
    if (opening == std::string_view::npos) return;
    const auto closing = tag.find('"', opening + 1);
    if (closing == std::string_view::npos) return;
    const CString name(tag.substr(0, equals));
    const CString value(tag.substr(opening + 1, closing - opening - 1));
    AddAttribute(new XMLAttribute(name.c_str(), value.c_str(), true));
    tag.remove_prefix(closing + 1);
  }
}

int XMLElement::AddElement(XMLElement* child) {
  children_.emplace_back(child);
  if (child != nullptr) child->parent_ = this;
  return GetElementCount();
}

int XMLElement::AddAttribute(XMLAttribute* attribute) {
  if (attribute == nullptr) return GetAttributeCount();
  attributes_.emplace_back(attribute);
  attribute->owner_ = this;
  return GetAttributeCount();
}

void XMLElement::KeepElement(XMLElement* child) {
  if (GetChildIndex(child) < 0) return;
  const auto slot = std::find_if(references_.begin(), references_.end(), [](const Reference& r) { return !r.inUse; });
  Reference& reference = slot != references_.end() ? *slot : references_.emplace_back();
  reference = {true, child};
}

bool XMLElement::ReleaseReference(const XMLElement* child) {
  bool kept = false;
  for (Reference& reference : references_) {
    if (!reference.inUse || reference.element != child) continue;
    reference = {};
    kept = true;
  }
  return kept;
}

XMLElement* XMLElement::FindElement(std::string_view name) const {
  for (const auto& child : children_) {
    if (child != nullptr && child->GetName() == name) return child.get();
  }
  return nullptr;
}

XMLAttribute* XMLElement::FindAttribute(std::string_view name, bool create) {
  for (const auto& attribute : attributes_) {
    if (attribute->GetName() == name) return attribute.get();
  }
  if (!create) return nullptr;
  auto* const attribute = new XMLAttribute("", "", false);
  attribute->SetName(name, false);
  AddAttribute(attribute);
  return attribute;
}

XMLElement* XMLElement::GetElement(int index) const {
  return index >= 0 && index < GetElementCount() ? children_[static_cast<std::size_t>(index)].get() : nullptr;
}

CString XMLElement::GetName() const {
  return DecodeXml(name_);
}

int XMLElement::GetName(char* buffer) const {
  return CopyDecoded(name_, buffer);
}

int XMLElement::GetDepth() const {
  int depth = 0;
  for (const XMLElement* up = parent_; up != nullptr; up = up->parent_) ++depth;
  return depth;
}

int XMLElement::GetChildIndex(const XMLElement* child) const {
  if (child == nullptr) return -1;
  const auto found =
      std::find_if(children_.begin(), children_.end(), [child](const auto& own) { return own.get() == child; });
  return found == children_.end() ? -1 : static_cast<int>(found - children_.begin());
}

CString XMLElement::GetTemporaryName(int child) const {
  CString name = std::to_string(child) + ".xmltmp";
  for (const XMLElement* element = this; element->parent_ != nullptr; element = element->parent_) {
    name.insert(0, std::to_string(element->parent_->GetChildIndex(element)) + "-");
  }
  return name;
}

// From the last leaf up, without recursion, so that no depth of a tree is too much. An element goes while it still
// knows its place, which its children's temporary files are named by.
void XMLElement::RemoveAllElements() {
  for (XMLElement* at = this; at != this || !at->children_.empty();) {
    if (at->children_.empty()) {
      at = at->parent_;
      at->children_.pop_back();
    } else if (XMLElement* const child = at->children_.back().get(); child == nullptr) {
      std::remove(at->GetTemporaryName(at->GetElementCount() - 1).c_str());
      at->children_.pop_back();
    } else if (at->ReleaseReference(child)) {
      child->parent_ = nullptr;
      static_cast<void>(at->children_.back().release());
      at->children_.pop_back();
    } else {
      at = child;
    }
  }
}

void XMLElement::RemoveAllAttributes() {
  while (!attributes_.empty()) attributes_.pop_back();
}

}  // namespace tallyscope
