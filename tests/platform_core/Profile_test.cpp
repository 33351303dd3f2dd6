// SPDX-License-Identifier: MIT
#include "platform/core/Profile.h"

#include <gtest/gtest.h>

#include "platform/core/StringTable.h"

namespace tallyscope {

namespace {

TEST(Profile, MissingEntriesReadAsTheDefault) {
  CMemoryProfile profile;
  EXPECT_EQ(profile.GetProfileInt("A", "key", 7), 7);
  EXPECT_EQ(profile.GetProfileString("A", "key", "none"), "none");
  EXPECT_TRUE(profile.GetProfileBool("A", "key", true));
  EXPECT_EQ(profile.GetProfileDouble("A", "key", 1.0 / 3), 0.333333333333333) << "the default goes through the text";
}

TEST(Profile, EntriesAreKeptBySectionAndKey) {
  CMemoryProfile profile;
  profile.WriteProfileInt("A", "key", 1);
  profile.WriteProfileInt("B", "key", 2);
  profile.WriteProfileInt("A", "other", 3);
  EXPECT_EQ(profile.GetProfileInt("A", "key", 0), 1);
  EXPECT_EQ(profile.GetProfileInt("B", "key", 0), 2);
  profile.WriteProfileBool("A", "key", false);
  EXPECT_EQ(profile.GetProfileInt("A", "key", 9), 0);
  profile.WriteProfileInt("A", "key", -5);
  EXPECT_TRUE(profile.GetProfileBool("A", "key", false)) << "any other integer is true";
}

TEST(Profile, DoublesAreTextWithAPointInEveryLocale) {
  CMemoryProfile profile;
  profile.WriteProfileDouble("A", "width", 1234.5);
  EXPECT_EQ(profile.GetProfileString("A", "width", ""), "1234.5");
  EXPECT_EQ(profile.GetProfileDouble("A", "width", 0), 1234.5);
  profile.WriteProfileDouble("A", "width", -1e-300);
  EXPECT_EQ(profile.GetProfileDouble("A", "width", 0), -1e-300);
  profile.WriteProfileString("A", "width", "damaged");
  EXPECT_EQ(profile.GetProfileDouble("A", "width", 3), 0);
}

TEST(StringTable, FillsTheFirstMark) {
  EXPECT_EQ(FormatMessage(LoadString(kStringSummaryTitle), "Zn"), "Zn - Summary statistics");
  EXPECT_EQ(FormatMessage("plain", "Zn"), "plain");
  EXPECT_EQ(FormatMessage("%1!s! and %1!s!", "%1!s!"), "%1!s! and %1!s!") << "a name that looks like the mark";
  EXPECT_EQ(LoadString(-1), "");
}

}  // namespace

}  // namespace tallyscope
