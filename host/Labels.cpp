// SPDX-License-Identifier: MIT
#include "host/Labels.h"

#include <iterator>

namespace tallyscope {

int CLabels::GetCode(std::string_view text) {
  if (last_ > 0 && GetText(last_) == text) return last_;
  const auto found = codes_.find(text);
  if (found != codes_.end()) return last_ = found->second;
  texts_.emplace_back(text);
  last_ = static_cast<int>(texts_.size());
  codes_.emplace(texts_.back(), last_);
  return last_;
}

std::vector<CString> CLabels::TakeTexts() {
  codes_.clear();
  std::vector<CString> texts(std::make_move_iterator(texts_.begin()), std::make_move_iterator(texts_.end()));
  Clear();
  return texts;
}

void CLabels::Clear() {
  codes_.clear();
  texts_.clear();
  last_ = 0;
}

std::optional<std::size_t> FindLabel(double code, std::size_t labels) {
  if (!(code >= 1) || !(code < static_cast<double>(labels) + 1)) return std::nullopt;
  return static_cast<std::size_t>(code) - 1;
}

}  // namespace tallyscope
