// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/Profile.h"

namespace tallyscope {

// Folders that file prompts start in, remembered in the profile. Both ways they end in a separator.
CString GetDefaultFolder(const CProfile& profile, const CString& section, const CString& key);  // default: the current
void SetDefaultFolder(CProfile& profile, const CString& section, const CString& key, const CString& folder);

// The current folder, ending in a separator.
CString GetCurrentFolder();

// Filters of file prompts are texts such as "Models (*.mvf)|*.mvf|All Files (*.*)|*.*||".
CString AddFilter(const CString& filter, const CString& description, const CString& pattern);
CString CloseFilter(const CString& filter, bool allFiles);

}  // namespace tallyscope
