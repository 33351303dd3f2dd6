// SPDX-License-Identifier: MIT
#include "platform/core/ShownText.h"

#include <algorithm>

namespace tallyscope {

namespace {

constexpr std::size_t kLongest = 4;  // bytes of a character
constexpr const char* kEllipsis = "…";

bool IsContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Bytes of the character that starts with this one; 1 for what starts none.
std::size_t GetLength(char first) {
  const auto byte = static_cast<unsigned char>(first);
  return byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
}

}  // namespace

std::size_t CharacterBefore(const CString& text, std::size_t at) {
  if (at >= text.size()) return text.size();
  std::size_t start = at;
  while (start > 0 && at - start < kLongest - 1 && IsContinuation(text[start])) --start;
  return start + GetLength(text[start]) > at ? start : at;
}

std::size_t CharacterBehind(const CString& text, std::size_t at) {
  const std::size_t start = CharacterBefore(text, at);
  if (start >= std::min(at, text.size())) return start;
  std::size_t end = at;
  while (end < text.size() && end - start < GetLength(text[start]) && IsContinuation(text[end])) ++end;
  return end;
}

CString LeaveMiddleOut(const CString& text, std::size_t head, std::size_t tail) {
  const std::size_t first = CharacterBefore(text, std::min(head, text.size()));
  const std::size_t last = CharacterBehind(text, text.size() - std::min(tail, text.size()));
  return text.substr(0, first) + kEllipsis + text.substr(last);
}

CString WithoutControls(CString text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x20 || byte == 0x7F) text[i] = ' ';
    if (byte == 0xC2 && i + 1 < text.size() && IsContinuation(text[i + 1]) &&
        static_cast<unsigned char>(text[i + 1]) < 0xA0) {
      text.replace(i, 2, " ");
    }
    if (text.compare(i, 2, "\xEF\xBF") == 0 && i + 2 < text.size() && static_cast<unsigned char>(text[i + 2]) >= 0xBE) {
      text[i + 2] = '\xBD';
    }
  }
  return text;
}

CString ShownText(const CString& text) {
  const std::size_t half = kMostShownBytes / 2;
  return WithoutControls(text.size() <= kMostShownBytes ? text : LeaveMiddleOut(text, half, half));
}

}  // namespace tallyscope
