// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/core/ShownText.h"

namespace tallyscope {
namespace {

TEST(ShownText, LeavesOutWholeCharacters) {
  const CString text = "aé…𝄞";  // 1, 2, 3 and 4 bytes
  for (const auto& [at, before, behind] : {std::tuple{0, 0, 0},
                                           {1, 1, 1},
                                           {2, 1, 3},
                                           {3, 3, 3},
                                           {4, 3, 6},
                                           {5, 3, 6},
                                           {6, 6, 6},
                                           {7, 6, 10},
                                           {9, 6, 10},
                                           {10, 10, 10},
                                           {99, 10, 10}}) {
    EXPECT_EQ(CharacterBefore(text, static_cast<std::size_t>(at)), static_cast<std::size_t>(before)) << at;
    EXPECT_EQ(CharacterBehind(text, static_cast<std::size_t>(at)), static_cast<std::size_t>(behind)) << at;
  }
  EXPECT_EQ(LeaveMiddleOut(text, 2, 5), "a…𝄞");
  EXPECT_EQ(LeaveMiddleOut("abc", 9, 0), "abc…");
  EXPECT_EQ(LeaveMiddleOut("\x80\x80\x80\x80\x80\x80", 4, 1), "\x80\x80\x80\x80…\x80") << "no UTF-8";
}

TEST(ShownText, IsOneShortLine) {
  EXPECT_EQ(ShownText("Zn\t(ppm)\r\n\x1b[31m\xc2\x9b"), "Zn (ppm)   [31m ");
  EXPECT_EQ(ShownText("\xc2\xa0\xef\xbf\xbd\xc2"), "\xc2\xa0\xef\xbf\xbd\xc2") << "nothing to mend";
  EXPECT_EQ(ShownText(CString(1024, 'x')), CString(1024, 'x'));
  EXPECT_EQ(ShownText(CString(16000, 'x')), CString(512, 'x') + "…" + CString(512, 'x'));
}

}  // namespace
}  // namespace tallyscope
