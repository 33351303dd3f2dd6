// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace tallyscope {

// Blanks and tabs, as they stand around words and numbers in a line of text. Line ends are none, nor is a non-breaking
// space.
inline constexpr bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

// The text without blanks before and behind it, a view on the same bytes.
inline constexpr std::string_view TrimBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace tallyscope
