// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "conditioning/Stats_Conditioning.h"
#include "platform/core/Status.h"

namespace tallyscope {

// Conditioning as a text file, ".dcf": docs/formats/dcf.md. Numbers have ten digits, always with a point. The bands of
// the operators aren't kept, and an object without a declared null comes back with the one of a new object.
//   const Status saved = SaveConditioning("zinc.dcf", rules);
//   if (!saved.IsGood()) Tell(saved.GetError());

// Whole or not at all. Full sentences on the file and the reason when it can't be written.
Status SaveConditioning(const CString& path, const CStats_Conditioning& rules);

// What a reader met in the lines that are neither empty nor comments.
struct ConditioningFileLines {
  int good = 0;      // that took effect
  int firstOdd = 0;  // number of the first that didn't, from 1; 0: none
  CString oddText;   // that line
};

// What stands in the file, over the settings of a new object. A line that doesn't fit is skipped: whether the file is
// one of rules at all is for the caller to tell, by the lines. False, with the sentences, when the file can't be read
// or a line is longer than 1 MB; `rules` stays as it is then.
bool LoadConditioning(const CString& path, CStats_Conditioning& rules, ConditioningFileLines& lines, CString& error);
bool LoadConditioning(const CString& path, CStats_Conditioning& rules, CString& error);

// The content of such a file. Parsing stops at a line that is longer than 1 MB.
CString FormatConditioning(const CStats_Conditioning& rules);
CStats_Conditioning ParseConditioning(std::string_view text);

}  // namespace tallyscope
