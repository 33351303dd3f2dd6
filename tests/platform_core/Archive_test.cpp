// SPDX-License-Identifier: MIT
#include "platform/core/Archive.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tallyscope {

namespace {

TEST(Archive, WritesLittleEndianAndReadsItAgain) {
  CArchive out;
  out << 0x01020304 << -2 << 1.0;
  out.Write("ab", 2);
  EXPECT_EQ(out.GetBytes(),
            (std::vector<std::uint8_t>{4, 3, 2, 1, 0xfe, 0xff, 0xff, 0xff, 0, 0, 0, 0, 0, 0, 0xf0, 0x3f, 'a', 'b'}));
  EXPECT_TRUE(out.IsStoring());
  CArchive in(out.GetBytes());
  std::int32_t first = 0;
  std::int32_t second = 0;
  double third = 0;
  char text[3] = {};
  in >> first >> second >> third;
  in.Read(text, 2);
  EXPECT_EQ(first, 0x01020304);
  EXPECT_EQ(second, -2);
  EXPECT_EQ(third, 1.0);
  EXPECT_STREQ(text, "ab");
  EXPECT_EQ(in.GetRemaining(), 0u);
  EXPECT_FALSE(in.IsFailed());
}

TEST(Archive, KeepsEveryDouble) {
  using Limits = std::numeric_limits<double>;
  for (const double value : {-0.0, Limits::denorm_min(), Limits::max(), Limits::infinity(), 0.1}) {
    CArchive out;
    out << value;
    CArchive in(out.GetBytes());
    double read = 1;
    in >> read;
    EXPECT_EQ(std::signbit(read), std::signbit(value));
    EXPECT_EQ(read, value);
  }
}

TEST(Archive, AReadPastTheEndGivesZerosAndFailsForGood) {
  CArchive in({1, 0, 0, 0, 9, 9});
  std::int32_t value = 5;
  in >> value;
  EXPECT_EQ(value, 1);
  in >> value;
  EXPECT_EQ(value, 0) << "half a value is none";
  EXPECT_TRUE(in.IsFailed());
  EXPECT_EQ(in.GetRemaining(), 0u);
  double number = 3;
  in >> number;
  EXPECT_EQ(number, 0);
  in.Read(nullptr, 0);
}

}  // namespace

}  // namespace tallyscope
