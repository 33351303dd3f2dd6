// SPDX-License-Identifier: MIT
#include "platform/core/Profile.h"

#include <charconv>

#include "platform/core/NumberText.h"

namespace tallyscope {

bool CProfile::GetProfileBool(const CString& section, const CString& key, bool missing) const {
  return GetProfileInt(section, key, missing ? 1 : 0) != 0;
}

void CProfile::WriteProfileBool(const CString& section, const CString& key, bool value) {
  WriteProfileInt(section, key, value ? 1 : 0);
}

double CProfile::GetProfileDouble(const CString& section, const CString& key, double missing) const {
  return ParseLeadingNumber(GetProfileString(section, key, FormatGeneral(missing, 15)));
}

void CProfile::WriteProfileDouble(const CString& section, const CString& key, double value) {
  WriteProfileString(section, key, FormatGeneral(value, 15));
}

int CMemoryProfile::GetProfileInt(const CString& section, const CString& key, int missing) const {
  const auto found = ints_.find({section, key});
  return found == ints_.end() ? missing : found->second;
}

void CMemoryProfile::WriteProfileInt(const CString& section, const CString& key, int value) {
  ints_[{section, key}] = value;
}

CString CMemoryProfile::GetProfileString(const CString& section, const CString& key, const CString& missing) const {
  const auto found = strings_.find({section, key});
  return found == strings_.end() ? missing : found->second;
}

void CMemoryProfile::WriteProfileString(const CString& section, const CString& key, const CString& value) {
  strings_[{section, key}] = value;
}

}  // namespace tallyscope
