// SPDX-License-Identifier: MIT
#include "host/TextEncoding.h"

#include <cstdint>

namespace tallyscope {

namespace {

// Bytes of the character that starts with `lead`, and the range of its second byte, which keeps out overlong forms,
// surrogates and what lies beyond U+10FFFF. (The Unicode Standard, table 3-7.)
struct Form {
  int length;
  unsigned char low;
  unsigned char high;
};

Form GetForm(unsigned char lead) {
  if (lead < 0x80) return {1, 0, 0};
  if (lead < 0xC2 || lead > 0xF4) return {0, 0, 0};
  if (lead < 0xE0) return {2, 0x80, 0xBF};
  if (lead < 0xF0) {
    return {3, static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80),
            static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF)};
  }
  return {4, static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
          static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF)};
}

constexpr std::uint16_t kWindows1252[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                            0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                            0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                            0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void AppendUtf8(CString& text, unsigned code) {
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0 | code >> 6);
    text += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    text += static_cast<char>(0xE0 | code >> 12);
    text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (code & 0x3F));
  }
}

}  // namespace

bool IsUtf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const Form form = GetForm(static_cast<unsigned char>(text[i]));
    if (form.length == 0 || text.size() - i < static_cast<std::size_t>(form.length)) return false;
    for (std::size_t k = 1; k < static_cast<std::size_t>(form.length); ++k) {
      const auto byte = static_cast<unsigned char>(text[i + k]);
      if (k == 1 ? byte < form.low || byte > form.high : byte < 0x80 || byte > 0xBF) return false;
    }
    i += static_cast<std::size_t>(form.length);
  }
  return true;
}

CString Latin1ToUtf8(std::string_view text) {
  CString converted;
  converted.reserve(text.size() + text.size() / 4);
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    AppendUtf8(converted, byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80] : byte);
  }
  return converted;
}

}  // namespace tallyscope
