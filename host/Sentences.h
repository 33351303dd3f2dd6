// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

#include "platform/core/String.h"

namespace tallyscope {

// Pieces of the sentences that the program says.
CString Counted(long long count, std::string_view one, std::string_view many);  // "1 row", "3 rows"
CString Shortened(std::string_view text);  // on one line, cut to some forty characters
CString Quoted(std::string_view text);     // the same in single quotes

// "; did you mean zinc or zinc2?" for names that differ in case or by a slip of the pen, "; it has x, y, ..."
// otherwise.
CString SuggestNames(std::string_view missing, const std::vector<CString>& names);

}  // namespace tallyscope
