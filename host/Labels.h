// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/core/String.h"

namespace tallyscope {

// Distinct texts and their codes 1, 2, ... in order of first appearance.
class CLabels {
 public:
  int GetCode(std::string_view text);
  bool IsEmpty() const { return texts_.empty(); }
  const CString& GetText(int code) const { return texts_[static_cast<std::size_t>(code) - 1]; }  // of a code it gave
  std::vector<CString> TakeTexts();
  void Clear();

 private:
  std::deque<CString> texts_;  // never moved: the keys point into it
  std::unordered_map<std::string_view, int> codes_;
  int last_ = 0;  // neighbours are often equal
};

// The place of a code among so many labels, code - 1. Nothing for a number that is no code of theirs.
std::optional<std::size_t> FindLabel(double code, std::size_t labels);

}  // namespace tallyscope
