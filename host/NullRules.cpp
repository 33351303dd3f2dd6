// SPDX-License-Identifier: MIT
#include "host/NullRules.h"

#include <algorithm>
#include <cmath>

#include "host/HostColumn.h"
#include "host/NumberScan.h"

namespace tallyscope {

namespace {

bool IsLetter(char c, char lower) {
  return (c | 0x20) == lower;
}

bool IsEmptyWord(std::string_view text) {
  switch (text.size()) {
    case 0:
      return true;
    case 1:
      return text[0] == '*' || text[0] == '-';
    case 2:
      return IsLetter(text[0], 'n') && IsLetter(text[1], 'a');
    case 3:
      return IsLetter(text[0], 'n') && IsLetter(text[1], 'a') && IsLetter(text[2], 'n');
    default:
      return false;
  }
}

}  // namespace

CNullRules::CNullRules(const std::vector<CString>& nulls, char decimal) : decimal_(decimal), texts_(nulls) {
  for (const auto& null : nulls) {
    double value = 0;
    if (ParseNumber(null, '.', value) || ParseNumber(null, decimal, value)) numbers_.push_back(value);
  }
}

bool CNullRules::IsNullNumber(double value) const {
  if (nullSize_ > 0 && std::abs(value) >= nullSize_) return true;
  return std::find(numbers_.begin(), numbers_.end(), value) != numbers_.end();
}

bool CNullRules::IsDeclaredText(std::string_view text) const {
  return std::find(texts_.begin(), texts_.end(), text) != texts_.end();
}

bool CNullRules::IsNullText(std::string_view text) const {
  if (IsEmptyWord(text) || IsDeclaredText(text)) return true;
  double value = 0;
  return HasNumbers() && ParseNumber(text, decimal_, value) && IsNullNumber(value);
}

CellKind CNullRules::Classify(std::string_view text, double& value) const {
  value = kEmptyCell;
  if (IsEmptyWord(text)) return CellKind::kEmpty;
  double number = 0;
  if (ParseNumber(text, decimal_, number)) {
    value = number;
    return IsNullNumber(number) ? CellKind::kDeclaredNull : CellKind::kNumber;
  }
  if (IsDeclaredText(text)) return CellKind::kDeclaredNull;
  if (text.front() != '<' && text.front() != '>') return CellKind::kText;
  const auto limit = text.find_first_not_of(" \t", 1);
  if (limit == std::string_view::npos || !ParseNumber(text.substr(limit), decimal_, number)) return CellKind::kText;
  value = number;
  return text.front() == '<' ? CellKind::kBelowDetection : CellKind::kAboveDetection;
}

}  // namespace tallyscope
