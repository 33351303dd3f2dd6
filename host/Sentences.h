// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <string_view>
#include <vector>

#include "platform/core/String.h"

namespace tallyscope {

// A text of a file, a file name or an argument, as it may stand on a terminal: on one line and without a character that
// the terminal would act on. Control characters, those that turn the direction of writing, and bytes that are no UTF-8
// are spelled out: "\n", "\x1b", "\u202e". Spelled out once, a text stays as it is.
CString Shown(std::string_view text);
CString Shortened(std::string_view text);  // the same, cut to some forty characters
CString Quoted(std::string_view text);     // the same in single quotes

// A sentence on a line of its own, shown as above whatever stands in it. Whatever goes to standard error goes this way.
void Say(std::ostream& to, std::string_view sentence);

CString OnOneLine(CString message);  // of one of several lines

// Pieces of sentences.
CString Counted(long long count, std::string_view one, std::string_view many);  // "1 row", "3 rows"

// "; did you mean zinc or zinc2?" for names that differ in case or by a slip of the pen. Empty when none is near.
CString SuggestNear(std::string_view missing, const std::vector<CString>& names);
// The same; when none is near "; it has x, y, ...".
CString SuggestNames(std::string_view missing, const std::vector<CString>& names);

}  // namespace tallyscope
