// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QSettings>
#include <QTemporaryDir>

#include "platform/ui/WinApp.h"

namespace tallyscope {
namespace {

TEST(SettingsProfile, KeepsWhatWasWritten) {
  const QTemporaryDir folder;
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
  const CString texts[] = {"",   "a,b;c", "0.333333333333333", " blanks ", "Größe µ", "line\nbreak", "C:\\data\\x",
                           "@x", "%20"};
  {
    const auto profile = MakeSettingsProfile();
    EXPECT_EQ(profile->GetProfileInt("PATH", "Count", 7), 7);
    EXPECT_EQ(profile->GetProfileString("PATH", "Last", "none"), "none");
    int key = 0;
    for (const auto& text : texts) profile->WriteProfileString("UPlotXControls", "Text" + std::to_string(key++), text);
    profile->WriteProfileInt("UPlotXControls", "Low", -2147483647 - 1);
    profile->WriteProfileString("A/B", "Key", "one");
    profile->WriteProfileString("A", "B/Key", "another");
    profile->WriteProfileDouble("UPlotXControls", "Third", 1.0 / 3);
    profile->WriteProfileString("UPlotXControls", "Word", "many");
  }
  const auto profile = MakeSettingsProfile();
  int key = 0;
  for (const auto& text : texts) {
    EXPECT_EQ(profile->GetProfileString("UPlotXControls", "Text" + std::to_string(key++), "missing"), text);
  }
  EXPECT_EQ(profile->GetProfileInt("UPlotXControls", "Low", 0), -2147483647 - 1);
  EXPECT_EQ(profile->GetProfileString("A/B", "Key", ""), "one") << "one section, whatever it is called";
  EXPECT_EQ(profile->GetProfileDouble("UPlotXControls", "Third", 0), 0.333333333333333);
  EXPECT_EQ(profile->GetProfileInt("UPlotXControls", "Word", 3), 3) << "no number";
}

TEST(Profile, AHostsOwnStandsInForTheDesktops) {
  auto own = std::make_unique<CMemoryProfile>();
  auto* seen = own.get();
  SetProfile(std::move(own));
  EXPECT_EQ(&GetProfile(), seen);
  SetProfile(std::make_unique<CMemoryProfile>());
}

}  // namespace
}  // namespace tallyscope
