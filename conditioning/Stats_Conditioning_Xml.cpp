// SPDX-License-Identifier: MIT
// The form of a host's document. It keeps six decimals, and nothing of the kind, the texts and the declared null.
#include <utility>

#include "conditioning/Stats_Conditioning.h"
#include "conditioning/Tolerance.h"
#include "files/XMLElement.h"
#include "platform/core/TextCase.h"

namespace tallyscope {

namespace {

constexpr const char* kElement = "Conditioning";

// The six settings, as pairs of an option and its value.
struct SettingRow {
  const char* flagName;
  bool CStats_Conditioning::*flag;
  const char* valueName;
  double CStats_Conditioning::*value;
};

constexpr SettingRow kSettings[] = {
    {"ConvertNullToBkgnd", &CStats_Conditioning::convertToBackground, "BkgndValue",
     &CStats_Conditioning::backgroundValue},
    {"CapBelow", &CStats_Conditioning::capMinimumOn, "CapBelowValue", &CStats_Conditioning::capMinimum},
    {"CapAbove", &CStats_Conditioning::capMaximumOn, "CapAboveValue", &CStats_Conditioning::capMaximum},
};

bool IsSame(double a, double b) {
  return IsNear(a, b, kSettingsTolerance);
}

bool IsSameStep(const CStats_Operator& a, const CStats_Operator& b) {
  return a.GetType() == b.GetType() && a.GetValueS() == b.GetValueS() && a.GetBand() == b.GetBand() &&
         a.GetBandCount() == b.GetBandCount();
}

// Only what differs is replaced. Whether anything did.
template <class Value, class Same>
bool Adopt(Value& current, const Value& read, const Same& isSame) {
  if (isSame(current, read)) return false;
  current = read;
  return true;
}

template <class Record, class Same>
bool AdoptList(std::vector<Record>& current, std::vector<Record> read, const Same& isSame) {
  if (current.size() != read.size()) {
    current = std::move(read);
    return true;
  }
  bool changed = false;
  for (std::size_t i = 0; i < read.size(); ++i) changed |= Adopt(current[i], read[i], isSame);
  return changed;
}

void SetText(XMLElement& element, const char* name, const CString& text) {
  element.FindAttribute(name, true)->SetValue(text, false);
}

void SetReal(XMLElement& element, const char* name, double value) {
  element.FindAttribute(name, true)->SetValueFloat(value);
}

void SetInteger(XMLElement& element, const char* name, int value) {
  element.FindAttribute(name, true)->SetValueInt(value);
}

// The new child belongs to its parent.
XMLElement& AddChild(XMLElement& parent, const char* name) {
  auto* child = new XMLElement(&parent, name, 0);
  parent.AddElement(child);
  return *child;
}

bool ReadReal(XMLElement& element, const char* name, double& value) {
  const auto* attribute = element.FindAttribute(name, false);
  if (attribute == nullptr) return false;
  value = attribute->GetValueFloat();
  return true;
}

int ReadInteger(XMLElement& element, const char* name, int preset) {
  const auto* attribute = element.FindAttribute(name, false);
  return attribute != nullptr ? attribute->GetValueInt() : preset;
}

bool AdoptSetting(XMLElement& element, const SettingRow& row, CStats_Conditioning& rules) {
  bool changed = false;
  if (const auto* flag = element.FindAttribute(row.flagName, false)) {
    const bool on = CompareNoCase(flag->GetValue(), "On") == 0;
    changed |= Adopt(rules.*row.flag, on, [](bool a, bool b) { return a == b; });
  }
  double value = 0;
  if (ReadReal(element, row.valueName, value)) changed |= Adopt(rules.*row.value, value, IsSame);
  return changed;
}

CStats_Operator ReadStep(XMLElement& element) {
  auto type = CStats_Operator::kNone;
  if (const auto* name = element.FindAttribute("Type", false)) {
    type = CStats_Operator::GetOperatorTypeFromName(name->GetValue());
  }
  CString value;
  CStats_Operator::GetOperatorParamDefaultValue(type, value);
  const auto* given = element.FindAttribute("Param", false);
  if (given != nullptr && CStats_Operator::GetOperatorHasParam(type) != 0) value = given->GetValue();
  CStats_Operator step;
  CStats_Operator::CreateOperator(type, value, step);
  step.SetBand(ReadInteger(element, "Band", 0));
  step.SetBandCount(ReadInteger(element, "BandCount", 1));
  return step;
}

// What stands in the children, in their order. A value or a range that isn't whole is left out.
struct Lists {
  std::vector<double> values;
  std::vector<CStats_ConditioningRange> ranges;
  std::vector<CStats_Operator> operators;

  explicit Lists(const XMLElement& element) {
    for (int i = 0; i < element.GetElementCount(); ++i) {
      if (auto* child = element.GetElement(i)) Add(*child);
    }
  }

  void Add(XMLElement& child) {
    const CString name = child.GetName();
    double low = 0;
    double high = 0;
    if (CompareNoCase(name, "NullValue") == 0) {
      if (ReadReal(child, "Value", low)) values.push_back(low);
    } else if (CompareNoCase(name, "NullRange") == 0) {
      if (ReadReal(child, "Min", low) && ReadReal(child, "Max", high)) ranges.emplace_back(low, high);
    } else if (CompareNoCase(name, "Operator") == 0) {
      operators.push_back(ReadStep(child));
    }
  }
};

}  // namespace

void CStats_Conditioning::GetProperties(XMLElement* parent) const {
  if (parent == nullptr) return;
  auto& element = AddChild(*parent, kElement);
  for (const auto& row : kSettings) {
    SetText(element, row.flagName, this->*row.flag ? "On" : "Off");
    SetReal(element, row.valueName, this->*row.value);
  }
  for (const double value : nullValues) SetReal(AddChild(element, "NullValue"), "Value", value);
  for (const auto& range : nullRanges) {
    auto& child = AddChild(element, "NullRange");
    SetReal(child, "Min", range.minimum);
    SetReal(child, "Max", range.maximum);
  }
  for (const auto& step : operators) {
    auto& child = AddChild(element, "Operator");
    SetText(child, "Type", CStats_Operator::GetOperatorName(step.GetType()));
    SetInteger(child, "Band", step.GetBand());
    SetInteger(child, "BandCount", step.GetBandCount());
    if (CStats_Operator::GetOperatorHasParam(step.GetType()) != 0) SetText(child, "Param", step.GetValueS());
  }
}

int CStats_Conditioning::SetProperties(XMLElement* parent) {
  XMLElement* element = parent != nullptr ? parent->FindElement(kElement) : nullptr;
  if (element == nullptr) return 0;
  bool changed = false;
  for (const auto& row : kSettings) changed |= AdoptSetting(*element, row, *this);
  Lists lists(*element);
  changed |= AdoptList(nullValues, std::move(lists.values), IsSame);
  changed |= AdoptList(nullRanges, std::move(lists.ranges), [](const auto& a, const auto& b) { return a == b; });
  changed |= AdoptList(operators, std::move(lists.operators), IsSameStep);
  return changed ? 1 : 0;
}

}  // namespace tallyscope
