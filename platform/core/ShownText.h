// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "platform/core/String.h"

namespace tallyscope {

// Texts from outside (headings, labels, paths) as they may be shown: no one reads more than this of one, and measuring
// and laying out costs by the length.
inline constexpr std::size_t kMostShownBytes = 1024;

// The first place at or before `at`, and at or behind it, where no character of the UTF-8 text is split. Bytes that are
// no UTF-8 count as characters of their own.
std::size_t CharacterBefore(const CString& text, std::size_t at);
std::size_t CharacterBehind(const CString& text, std::size_t at);

// The text without its middle: `head` bytes from its start and `tail` bytes to its end, fewer where a character would
// be split, with an ellipsis between them.
CString LeaveMiddleOut(const CString& text, std::size_t head, std::size_t tail);

// Control characters become blanks, and what no XML file may hold (U+FFFE and U+FFFF) U+FFFD.
CString WithoutControls(CString text);

// Without controls, and no longer than kMostShownBytes and an ellipsis.
CString ShownText(const CString& text);

}  // namespace tallyscope
