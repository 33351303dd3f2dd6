// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace tallyscope {

// Letters beyond ASCII, which are several bytes in UTF-8, stay as they are.
inline constexpr char ToLowerAscii(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

// 0 when the texts are equal but for the case of ASCII letters, below 0 when `a` comes first. Bytes beyond ASCII
// compare as they are, so that the answer doesn't depend on a locale.
inline int CompareNoCase(std::string_view a, std::string_view b) {
  for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) {
    const int difference =
        static_cast<unsigned char>(ToLowerAscii(a[i])) - static_cast<unsigned char>(ToLowerAscii(b[i]));
    if (difference != 0) return difference;
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

}  // namespace tallyscope
