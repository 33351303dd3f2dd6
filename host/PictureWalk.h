// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/core/Status.h"

namespace tallyscope {

class CDlg_Tallyscope;

// Shows each mode and each page of an open workbench in turn, and writes a picture of the window for each to `folder`,
// which is made if need be: "univariate-statistics.png" and so on. The files that were written are added to `written`;
// it stops at the first that can't be, with a sentence.
Status WalkPages(CDlg_Tallyscope& workbench, const CString& folder, std::vector<CString>& written);

}  // namespace tallyscope
