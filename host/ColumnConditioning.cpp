// SPDX-License-Identifier: MIT
#include "host/ColumnConditioning.h"

#include <cmath>

#include "host/Labels.h"
#include "statistics/bvector.h"

namespace tallyscope {

namespace {

void CountNull(ConditioningOutcome::eMatch match, RuleCounts& counts) {
  counts.declaredNulls += match == ConditioningOutcome::eDeclared;
  counts.listed += match == ConditioningOutcome::eListed;
  counts.inRange += match == ConditioningOutcome::eInRange;
}

void CountChange(const ConditioningOutcome& outcome, RuleCounts& counts) {
  counts.toBackground += outcome.toBackground;
  counts.cappedBelow += outcome.cappedBelow;
  counts.cappedAbove += outcome.cappedAbove;
}

// False for a null, which leaves `value` of no account.
template <class Value>
bool ConditionValue(const CStats_Conditioning& rules, bool inTable, const Value& declared, Value& value,
                    RuleCounts& counts) {
  if (inTable) {
    const auto outcome = rules.ApplyRules(value);
    CountNull(outcome.match, counts);
    CountChange(outcome, counts);
    return !outcome.isNull;
  }
  ++counts.tableNulls;
  if (!rules.IsNULLDeclared()) return false;
  value = declared;
  const auto outcome = rules.ApplyRules(value);
  if (!outcome.toBackground) return false;  // a declared NaN matches nothing, and is null all the same
  CountChange(outcome, counts);
  return true;
}

// A file of rules may hold an infinite background, and an operator may end anywhere; a table has finite numbers only.
void SetNumber(std::size_t row, bool valid, double value, double null, CHostColumn& column, RuleCounts& counts) {
  const bool isNumber = std::isfinite(value);
  counts.nonFinite += valid && !isNumber;
  if (!valid || !isNumber) return column.SetNull(row, null);
  column.GetValues()[row] = value;
  column.SetValid(row, true);
}

void ConditionNumbers(const CStats_Conditioning& rules, std::size_t rows, CHostColumn& column, RuleCounts& counts) {
  for (std::size_t row = 0; row < rows; ++row) {
    double value = column.GetValues()[row];
    const bool valid = ConditionValue(rules, column.IsValid(row), rules.nullValue, value, counts);
    SetNumber(row, valid, value, rules.nullValue, column, counts);
  }
}

// Labels may become one, or vanish: the codes are given anew, in the order of the rows.
void ConditionTexts(const CStats_Conditioning& rules, std::size_t rows, CHostColumn& column, RuleCounts& counts) {
  const auto before = std::move(column.labels);
  CLabels labels;
  for (std::size_t row = 0; row < rows; ++row) {
    const auto label = column.IsValid(row) ? FindLabel(column.GetValues()[row], before.size()) : std::nullopt;
    CString text = label ? before[*label] : CString();
    if (ConditionValue(rules, label.has_value(), rules.nullString, text, counts)) {
      column.GetValues()[row] = labels.GetCode(text);
      column.SetValid(row, true);
    } else {
      column.SetNull(row, kEmptyCell);
    }
  }
  column.labels = labels.TakeTexts();
}

void RunChain(const CStats_Conditioning& rules, int rows, CHostColumn& column, RuleCounts& counts) {
  std::vector<float> samples(static_cast<std::size_t>(rows));
  bvector nulls(rows);
  for (int row = 0; row < rows; ++row) {
    const auto i = static_cast<std::size_t>(row);
    samples[i] = static_cast<float>(column.GetValues()[i]);
    nulls.Set(row, !column.IsValid(i));
  }
  if (rules.ProcessOperations(samples.data(), &nulls, rows) == 0) return;
  for (int row = 0; row < rows; ++row) {
    const auto i = static_cast<std::size_t>(row);
    SetNumber(i, !nulls.Get(row), static_cast<double>(samples[i]), rules.nullValue, column, counts);
  }
}

}  // namespace

const std::vector<RuleCountRow>& GetRuleCountRows() {
  static const std::vector<RuleCountRow> rows = {
      {"tableNull", "Null in the table", &RuleCounts::tableNulls},
      {"declaredNull", "Declared null", &RuleCounts::declaredNulls},
      {"listed", "Listed as null", &RuleCounts::listed},
      {"inRange", "In a range of nulls", &RuleCounts::inRange},
      {"toBackground", "To background", &RuleCounts::toBackground},
      {"cappedBelow", "Capped below", &RuleCounts::cappedBelow},
      {"cappedAbove", "Capped above", &RuleCounts::cappedAbove},
  };
  return rows;
}

RuleCounts ConditionColumn(const CStats_Conditioning& rules, int rows, CHostColumn& column) {
  RuleCounts counts;
  const auto size = static_cast<std::size_t>(rows);
  if (column.IsText()) {
    ConditionTexts(rules, size, column, counts);
  } else {
    ConditionNumbers(rules, size, column, counts);
    if (rows > 0) RunChain(rules, rows, column, counts);
  }
  return counts;
}

}  // namespace tallyscope
