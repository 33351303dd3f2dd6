// SPDX-License-Identifier: MIT
#include "files/FolderMemory.h"

#include <filesystem>
#include <system_error>

#include "files/UFilename.h"

namespace tallyscope {

CString GetCurrentFolder() {
  std::error_code error;
  const CString folder = std::filesystem::current_path(error).string();
  return WithSeparator(error ? CString(".") : folder);
}

CString GetDefaultFolder(const CProfile& profile, const CString& section, const CString& key) {
  return WithSeparator(profile.GetProfileString(section, key, GetCurrentFolder()));
}

void SetDefaultFolder(CProfile& profile, const CString& section, const CString& key, const CString& folder) {
  profile.WriteProfileString(section, key, WithSeparator(folder));
}

CString AddFilter(const CString& filter, const CString& description, const CString& pattern) {
  return filter + description + "|" + pattern + "|";
}

CString CloseFilter(const CString& filter, bool allFiles) {
  return (allFiles ? AddFilter(filter, "All Files (*.*)", "*.*") : filter) + "|";
}

}  // namespace tallyscope
