// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

#include "host/ReaderOptions.h"

namespace tallyscope {

enum class CellKind { kNumber, kText, kEmpty, kDeclaredNull, kBelowDetection, kAboveDetection };

// What a cell's text means in a column of numbers, with blanks around it already gone.
//   empty, "NA", "NaN" in any case, "*", "-"         kEmpty
//   a declared null                                  kDeclaredNull, value: its number, kEmptyCell for a text
//   "<0.01", "< 0.01"                                kBelowDetection, value: the limit
//   ">1000"                                          kAboveDetection, value: the limit
//   a number                                         kNumber, value: the number
//   anything else                                    kText
class CNullRules {
 public:
  CNullRules() = default;
  CNullRules(const std::vector<CString>& nulls, char decimal);

  // Further: every number of that size or more, either sign, is a declared null.
  void SetNullSize(double size) { nullSize_ = size; }

  bool HasNumbers() const { return !numbers_.empty() || nullSize_ > 0; }
  bool IsNullNumber(double value) const;
  // For a column of texts, where numbers and limits are texts like any other.
  bool IsNullText(std::string_view text) const;
  CellKind Classify(std::string_view text, double& value) const;

 private:
  bool IsDeclaredText(std::string_view text) const;

  char decimal_ = '.';
  double nullSize_ = 0;
  std::vector<double> numbers_;
  std::vector<CString> texts_;
};

}  // namespace tallyscope
