// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "conditioning/Stats_Conditioning.h"

namespace tallyscope {

// Conditioning as a text file, ".dcf": docs/formats/dcf.md. Numbers have ten digits, always with a point. The bands of
// the operators aren't kept, and an object without a declared null comes back with the one of a new object.
//   CString error;
//   if (!SaveConditioning("zinc.dcf", rules, error)) Tell(error);

// Whole or not at all. False, with full sentences on the file and the reason, when it can't be written.
bool SaveConditioning(const CString& path, const CStats_Conditioning& rules, CString& error);

// What stands in the file, over the settings of a new object. A line that doesn't fit is skipped. False, with the
// sentences, when the file can't be read; `rules` stays as it is then.
bool LoadConditioning(const CString& path, CStats_Conditioning& rules, CString& error);

// The content of such a file.
CString FormatConditioning(const CStats_Conditioning& rules);
CStats_Conditioning ParseConditioning(std::string_view text);

}  // namespace tallyscope
