// SPDX-License-Identifier: MIT
#include "platform/ui/WinApp.h"

#include <utility>

#include <QSettings>

#include "platform/ui/Wnd.h"

namespace tallyscope {

namespace {

QString EntryName(const CString& section, const CString& key) {
  QString name = ToQString(section);
  name.replace('/', '\\');  // one section, one group
  return name + '/' + ToQString(key);
}

class SettingsProfile : public CProfile {
 public:
  int GetProfileInt(const CString& section, const CString& key, int missing) const override {
    bool readable = false;
    const int value = settings_.value(EntryName(section, key)).toInt(&readable);
    return readable ? value : missing;
  }
  void WriteProfileInt(const CString& section, const CString& key, int value) override {
    settings_.setValue(EntryName(section, key), value);
  }
  CString GetProfileString(const CString& section, const CString& key, const CString& missing) const override {
    return FromQString(settings_.value(EntryName(section, key), ToQString(missing)).toString());
  }
  void WriteProfileString(const CString& section, const CString& key, const CString& value) override {
    settings_.setValue(EntryName(section, key), ToQString(value));
  }

 private:
  QSettings settings_{"Tallyscope", "tallyscope"};
};

std::unique_ptr<CProfile>& Current() {
  static std::unique_ptr<CProfile> current;
  return current;
}

}  // namespace

CProfile& GetProfile() {
  if (!Current()) Current() = MakeSettingsProfile();
  return *Current();
}

void SetProfile(std::unique_ptr<CProfile> profile) {
  Current() = std::move(profile);
}

std::unique_ptr<CProfile> MakeSettingsProfile() {
  return std::make_unique<SettingsProfile>();
}

}  // namespace tallyscope
