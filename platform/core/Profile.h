// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <utility>

#include "platform/core/String.h"

namespace tallyscope {

// Where settings are kept: integers and strings by section and key. The program's lies on the desktop's settings
// (platform/ui), tests use CMemoryProfile, a host may bring its own. A missing entry reads as the default, `missing`; a
// write replaces the entry of that name. Nothing fails: settings that can't be kept are those of the next start.
// Integers and strings may be apart, so an entry is read as what it was written.
class CProfile {
 public:
  virtual ~CProfile() = default;
  virtual int GetProfileInt(const CString& section, const CString& key, int missing) const = 0;
  virtual void WriteProfileInt(const CString& section, const CString& key, int value) = 0;
  virtual CString GetProfileString(const CString& section, const CString& key, const CString& missing) const = 0;
  virtual void WriteProfileString(const CString& section, const CString& key, const CString& value) = 0;

  // A boolean is the integer 0 or 1; any other stored integer reads as true.
  bool GetProfileBool(const CString& section, const CString& key, bool missing) const;
  void WriteProfileBool(const CString& section, const CString& key, bool value);

  // A double is a string of 15 significant digits with a decimal point, whatever the locale. The default goes through
  // the same text, so that a missing 1/3 reads as 0.333333333333333. A text that starts with no number reads as 0.
  double GetProfileDouble(const CString& section, const CString& key, double missing) const;
  void WriteProfileDouble(const CString& section, const CString& key, double value);
};

// Entries that last as long as the object.
class CMemoryProfile : public CProfile {
 public:
  int GetProfileInt(const CString& section, const CString& key, int missing) const override;
  void WriteProfileInt(const CString& section, const CString& key, int value) override;
  CString GetProfileString(const CString& section, const CString& key, const CString& missing) const override;
  void WriteProfileString(const CString& section, const CString& key, const CString& value) override;

 private:
  std::map<std::pair<CString, CString>, int> ints_;
  std::map<std::pair<CString, CString>, CString> strings_;
};

}  // namespace tallyscope
