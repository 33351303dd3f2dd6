// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/core/String.h"

namespace tallyscope {

class XMLElement;

// A name and a value, held in their escaped form (XMLText.h).
class XMLAttribute {
 public:
  XMLAttribute(const char* name, const char* value, bool alreadyEscaped);

  void SetName(std::string_view text, bool alreadyEscaped);  // blanks at its end are dropped
  void SetValue(std::string_view text, bool alreadyEscaped);
  void SetValueInt(int value);
  void SetValueFloat(double value);  // six decimals

  CString GetName() const;
  CString GetValue() const;
  // Into a buffer, with a terminator; returns the length. Without a buffer: room enough for the text, terminator apart.
  int GetName(char* buffer) const;
  int GetValue(char* buffer) const;
  int GetValueInt() const;       // the integer that the value starts with, 0 if none
  double GetValueFloat() const;  // the number that the value starts with, 0 if none

  const CString& GetEscapedValue() const { return value_; }
  XMLElement* GetOwner() const { return owner_; }

 private:
  friend class XMLElement;

  CString name_;
  CString value_;
  XMLElement* owner_ = nullptr;
};

// An element of a settings document that a host holds: a name, attributes and children. The tree is all there is:
// reading and writing the document is the host's.
//   XMLElement root(nullptr, "Settings", 0);
//   root.AddElement(new XMLElement(&root, "<Operator Type=\"Scale\" Band=\"2\"/>", 0));
//   root.FindElement("Operator")->FindAttribute("Band", false)->GetValueInt();
class XMLElement {
 public:
  enum TextList { kComments, kContents, kData };

  // From a bare name or an opening tag. What can't be read of a tag is left out. The element doesn't join the parent's
  // children by itself.
  XMLElement(XMLElement* parent, const char* tag, int reserved);
  XMLElement(const XMLElement&) = delete;
  XMLElement& operator=(const XMLElement&) = delete;
  ~XMLElement();

  // Takes the child; returns how many there are then. Null stands for a child that the host has put into a temporary
  // file named by GetTemporaryName, which goes when the children are removed.
  int AddElement(XMLElement* child);
  int AddAttribute(XMLAttribute* attribute);  // takes it
  // The host keeps this child when its parent goes.
  void KeepElement(XMLElement* child);

  XMLElement* FindElement(std::string_view name) const;             // first of exactly this name; null if none
  XMLAttribute* FindAttribute(std::string_view name, bool create);  // null if none and not to be created, else empty
  int GetElementCount() const { return static_cast<int>(children_.size()); }
  XMLElement* GetElement(int index) const;  // null out of range
  int GetAttributeCount() const { return static_cast<int>(attributes_.size()); }
  XMLElement* GetParent() const { return parent_; }

  CString GetName() const;
  int GetName(char* buffer) const;                   // as of the attribute
  int GetDepth() const;                              // ancestors
  int GetChildIndex(const XMLElement* child) const;  // -1 if it is none of ours
  // The child numbers from the root on, such as "0-3.xmltmp", in the current folder.
  CString GetTemporaryName(int child) const;

  std::vector<CString>& GetTexts(TextList list) { return texts_[list]; }
  void RemoveAllElements();
  void RemoveAllAttributes();
  void RemoveAllTexts(TextList list) { texts_[list].clear(); }

 private:
  struct Reference {
    bool inUse = false;
    XMLElement* element = nullptr;
  };

  void ParseTag(std::string_view tag);
  bool ReleaseReference(const XMLElement* child);

  CString name_;
  XMLElement* parent_;
  std::vector<std::unique_ptr<XMLElement>> children_;
  std::vector<std::unique_ptr<XMLAttribute>> attributes_;
  std::array<std::vector<CString>, 3> texts_;
  std::vector<Reference> references_;
};

}  // namespace tallyscope
