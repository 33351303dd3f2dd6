// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/core/String.h"

namespace tallyscope {

class CDlg_Tallyscope;

// Shows each mode and each page of an open workbench in turn, and writes a picture of the window for each to `folder`,
// which is made if need be: "univariate-statistics.png" and so on. Returns the files written; on a failed write it
// stops, and `error` says which file it was.
std::vector<CString> WalkPages(CDlg_Tallyscope& workbench, const CString& folder, CString& error);

}  // namespace tallyscope
