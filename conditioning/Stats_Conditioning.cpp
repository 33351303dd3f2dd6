// SPDX-License-Identifier: MIT
#include "conditioning/Stats_Conditioning.h"

#include <algorithm>

#include "conditioning/Tolerance.h"
#include "platform/core/TextCase.h"

namespace tallyscope {

namespace {

bool Matches(double a, double b) {
  return IsNear(a, b, kRuleTolerance);
}

bool IsSame(double a, double b) {
  return IsNear(a, b, kSettingsTolerance);
}

ConditioningOutcome::eMatch MatchLists(const CStats_Conditioning& rules, double value) {
  for (const double listed : rules.nullValues) {
    if (Matches(value, listed)) return ConditioningOutcome::eListed;
  }
  for (const auto& range : rules.nullRanges) {
    if (range.Holds(value)) return ConditioningOutcome::eInRange;
  }
  return ConditioningOutcome::eNone;
}

// A value that matches the declared null keeps its own bits; one of the lists becomes the declared null. Inlined, so
// that who asks for the value alone doesn't pay for the story.
[[gnu::always_inline]] inline ConditioningOutcome Walk(const CStats_Conditioning& rules, double& value) {
  ConditioningOutcome outcome;
  double x = value;
  if (rules.nullDeclared && Matches(x, rules.nullValue)) {
    outcome.match = ConditioningOutcome::eDeclared;
  } else if (rules.nullDeclared || rules.convertToBackground) {
    outcome.match = MatchLists(rules, x);
    if (outcome.match != ConditioningOutcome::eNone) x = rules.nullValue;
  }
  const bool matched = outcome.match != ConditioningOutcome::eNone;
  outcome.isNull = matched && !rules.convertToBackground;
  outcome.toBackground = matched && rules.convertToBackground;
  if (outcome.toBackground) x = rules.backgroundValue;
  if (!outcome.isNull) {
    outcome.cappedBelow = rules.capMinimumOn && rules.capMinimum > x;
    if (outcome.cappedBelow) x = rules.capMinimum;
    outcome.cappedAbove = rules.capMaximumOn && x > rules.capMaximum;
    if (outcome.cappedAbove) x = rules.capMaximum;
  }
  value = x;
  return outcome;
}

}  // namespace

int CStats_Conditioning::Compare(const CString& a, const CString& b) const {
  return caseSensitive ? a.compare(b) : CompareNoCase(a, b);
}

void CStats_Conditioning::DefineString(int sensitive) {
  kind = eString;
  caseSensitive = sensitive != 0;
}

void CStats_Conditioning::SetNULL(double value) {
  nullDeclared = true;
  nullValue = value;
}

void CStats_Conditioning::SetNULL(const CString& value) {
  nullDeclared = true;
  nullString = value;
}

void CStats_Conditioning::SetBackground(int on, bool equalsNull) {
  convertToBackground = on != 0 && !(nullDeclared && equalsNull);
}

void CStats_Conditioning::Convert2Bkgd(int on, double value) {
  backgroundValue = value;
  SetBackground(on, IsSame(value, nullValue));
}

void CStats_Conditioning::Convert2Bkgd(int on, const CString& value) {
  backgroundString = value;
  SetBackground(on, Compare(value, nullString) == 0);
}

void CStats_Conditioning::CapMinimum(int on, double value) {
  capMinimumOn = on != 0;
  capMinimum = value;
}

void CStats_Conditioning::CapMaximum(int on, double value) {
  capMaximumOn = on != 0;
  capMaximum = value;
}

void CStats_Conditioning::AddOperator(CStats_Operator::CStats_OperatorType type, const CString& value) {
  CStats_Operator step;
  CStats_Operator::CreateOperator(type, value, step);
  operators.push_back(step);
}

ConditioningOutcome::eMatch CStats_Conditioning::MatchLists(const CString& value) const {
  const bool listed = std::any_of(nullStrings.begin(), nullStrings.end(),
                                  [&](const CString& null) { return Compare(value, null) == 0; });
  return listed ? ConditioningOutcome::eListed : ConditioningOutcome::eNone;
}

ConditioningOutcome CStats_Conditioning::ApplyRules(double& value) const {
  return Walk(*this, value);
}

ConditioningOutcome CStats_Conditioning::ApplyRules(CString& value) const {
  ConditioningOutcome outcome;
  if (nullDeclared && Compare(value, nullString) == 0) {
    outcome.match = ConditioningOutcome::eDeclared;
  } else if (nullDeclared || convertToBackground) {
    outcome.match = MatchLists(value);
    if (outcome.match != ConditioningOutcome::eNone) value = nullString;
  }
  if (outcome.match == ConditioningOutcome::eNone) return outcome;
  outcome.isNull = !convertToBackground;
  outcome.toBackground = convertToBackground;
  if (convertToBackground) value = backgroundString;
  return outcome;
}

int CStats_Conditioning::ProcessValue(double& value) const {
  return Walk(*this, value).isNull ? 0 : 1;
}

int CStats_Conditioning::ProcessValue(CString& value) const {
  return ApplyRules(value).isNull ? 0 : 1;
}

double CStats_Conditioning::ConvertValue(double value) const {
  Walk(*this, value);
  return value;
}

CString CStats_Conditioning::ConvertValue(const CString& value) const {
  CString converted = value;
  ApplyRules(converted);
  return converted;
}

int CStats_Conditioning::IsNull(double value, bool applyRules) const {
  if (!nullDeclared) return 0;
  if (!applyRules) return Matches(value, nullValue) ? 1 : 0;
  return ProcessValue(value) == 0 ? 1 : 0;
}

int CStats_Conditioning::IsNull(const CString& value, bool applyRules) const {
  if (!nullDeclared) return 0;
  if (!applyRules) return Compare(value, nullString) == 0 ? 1 : 0;
  CString copy = value;
  return ProcessValue(copy) == 0 ? 1 : 0;
}

bool CStats_Conditioning::operator==(const CStats_Conditioning& other) const {
  if (this == &other) return true;
  if (kind != other.kind || operatorsUsed != other.operatorsUsed || operators != other.operators) return false;
  const auto alike = [this](const CString& a, const CString& b) { return Compare(a, b) == 0; };
  if (IsNumeric()) {
    return nullDeclared == other.nullDeclared && IsSame(nullValue, other.nullValue) &&
           convertToBackground == other.convertToBackground && IsSame(backgroundValue, other.backgroundValue) &&
           capMinimumOn == other.capMinimumOn && IsSame(capMinimum, other.capMinimum) &&
           capMaximumOn == other.capMaximumOn && IsSame(capMaximum, other.capMaximum) &&
           std::equal(nullValues.begin(), nullValues.end(), other.nullValues.begin(), other.nullValues.end(), IsSame) &&
           nullRanges == other.nullRanges;
  }
  if (!IsString()) return true;
  return caseSensitive == other.caseSensitive && nullDeclared == other.nullDeclared &&
         convertToBackground == other.convertToBackground && alike(nullString, other.nullString) &&
         alike(backgroundString, other.backgroundString) &&
         std::equal(nullStrings.begin(), nullStrings.end(), other.nullStrings.begin(), other.nullStrings.end(), alike);
}

}  // namespace tallyscope
