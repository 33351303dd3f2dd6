// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/core/String.h"

namespace tallyscope {

// Distinct texts and their codes 1, 2, ... in order of first appearance. Texts are kept once each, whatever the
// column's length; all of it may throw bad_alloc.
class CLabels {
 public:
  int GetCode(std::string_view text);  // of a text met before, or the next one
  bool IsEmpty() const { return texts_.empty(); }
  // REQUIRES: a code that was given out.
  const CString& GetText(int code) const { return texts_[static_cast<std::size_t>(code) - 1]; }
  std::vector<CString> TakeTexts();  // by code - 1; none are left
  void Clear();

 private:
  std::deque<CString> texts_;  // never moved: the keys point into it
  std::unordered_map<std::string_view, int> codes_;
  int last_ = 0;  // neighbours are often equal
};

}  // namespace tallyscope
