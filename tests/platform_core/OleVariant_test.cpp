// SPDX-License-Identifier: MIT
#include "platform/core/OleVariant.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "platform/core/Archive.h"

namespace tallyscope {

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Stored(COleVariant value) {
  CArchive archive;
  value.Serialize(archive);
  return archive.GetBytes();
}

TEST(OleVariant, EachTypeHasItsBytesAndComesBack) {
  struct Case {
    COleVariant value;
    Bytes bytes;
  };
  for (const Case& c : {
           Case{COleVariant(), {0, 0}},
           Case{COleVariant::Null(), {1, 0}},
           Case{COleVariant(-2, VT_I2), {2, 0, 0xfe, 0xff}},
           Case{COleVariant(-2), {3, 0, 0xfe, 0xff, 0xff, 0xff}},
           Case{COleVariant(1.5f), {4, 0, 0, 0, 0xc0, 0x3f}},
           Case{COleVariant(1.0), {5, 0, 0, 0, 0, 0, 0, 0, 0xf0, 0x3f}},
           Case{COleVariant(std::int64_t{-2}, VT_CY), {6, 0, 0xfe, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff}},
           Case{COleVariant(std::int64_t{1} << 33, VT_CY), {6, 0, 0, 0, 0, 0, 2, 0, 0, 0}},
           Case{COleVariant(1.0, VT_DATE), {7, 0, 0, 0, 0, 0, 0, 0, 0xf0, 0x3f}},
           Case{COleVariant("ab"), {8, 0, 2, 0, 0, 0, 'a', 'b'}},
           Case{COleVariant(3, VT_ERROR), {10, 0, 3, 0, 0, 0}},
           Case{COleVariant(1, VT_BOOL), {11, 0, 0xff, 0xff}},
           Case{COleVariant(200, VT_UI1), {17, 0, 200}},
       }) {
    EXPECT_EQ(Stored(c.value), c.bytes) << c.value.GetType();
    CArchive in(c.bytes);
    COleVariant read("before");
    read.Serialize(in);
    EXPECT_TRUE(read == c.value) << c.value.GetType();
    EXPECT_FALSE(in.IsFailed());
    EXPECT_EQ(in.GetRemaining(), 0u);
  }
}

TEST(OleVariant, TypesWithoutAnArchiveFormKeepTheirTypeAlone) {
  EXPECT_EQ(Stored(COleVariant(7, VT_INT)), (Bytes{22, 0}));
  CArchive in({99, 0, 5});
  COleVariant read("before");
  read.Serialize(in);
  EXPECT_EQ(read.GetType(), 99);
  EXPECT_EQ(read.GetReal(), 0);
  EXPECT_EQ(read.GetText(), "");
  EXPECT_EQ(in.GetRemaining(), 1u);
}

TEST(OleVariant, ALyingTextLengthFailsAndLeavesNothing) {
  for (const Bytes& bytes :
       {Bytes{8, 0, 3, 0, 0, 0, 'a', 'b'}, Bytes{8, 0, 0xff, 0xff, 0xff, 0xff, 'a'}, Bytes{8, 0}}) {
    CArchive in(bytes);
    COleVariant read("before");
    read.Serialize(in);
    EXPECT_TRUE(in.IsFailed() || bytes.size() == 2);
    EXPECT_EQ(read.GetText(), "");
    EXPECT_EQ(in.GetRemaining(), 0u);
  }
}

TEST(OleVariant, NumbersAreNarrowedAndRead) {
  EXPECT_EQ(COleVariant(300, VT_UI1).GetInteger(), 44);
  EXPECT_EQ(COleVariant(200, VT_I1).GetInteger(), -56);
  EXPECT_EQ(COleVariant(-1, VT_UI4).GetReal(), 4294967295.0);
  EXPECT_EQ(COleVariant(-1, VT_UI4).GetInteger(), std::numeric_limits<int>::max()) << "limited";
  EXPECT_EQ(COleVariant(7, VT_R8).GetReal(), 7) << "a whole number in a type of reals";
  EXPECT_EQ(COleVariant(16777217, VT_R4).GetReal(), 16777216);
  EXPECT_EQ(COleVariant(-2.9, VT_I4).GetReal(), -2) << "a real in a type of whole numbers";
  EXPECT_EQ(COleVariant(1e300, VT_CY).GetReal(), 9223372036854775807.0);
  EXPECT_EQ(COleVariant(std::nan(""), VT_I2).GetReal(), 0);
  EXPECT_EQ(COleVariant(0.1, VT_R4).GetReal(), static_cast<double>(0.1f));
  EXPECT_EQ(COleVariant(-2.9).GetInteger(), -2);
  EXPECT_EQ(COleVariant(1e300).GetInteger(), std::numeric_limits<int>::max());
  EXPECT_EQ(COleVariant(std::nan("")).GetInteger(), 0);
  EXPECT_EQ(COleVariant("12").GetReal(), 0) << "a text has no number of its own";
}

TEST(OleVariant, EqualityAsksTypeAndValue) {
  EXPECT_TRUE(COleVariant(1.0) == COleVariant(1.0));
  EXPECT_FALSE(COleVariant(1.0) == COleVariant(1));
  EXPECT_FALSE(COleVariant() == COleVariant::Null());
  EXPECT_TRUE(COleVariant("a") == COleVariant(CString("a")));
  EXPECT_FALSE(COleVariant("a") == COleVariant("A"));
  EXPECT_FALSE(COleVariant(std::nan("")) == COleVariant(std::nan("")));
  COleVariant copy("text");
  const COleVariant other = copy;
  copy = copy;  // NOLINT: onto itself
  EXPECT_TRUE(copy == other);
  copy.SetReal(2);
  EXPECT_EQ(copy.GetText(), "");
  EXPECT_EQ(other.GetText(), "text");
}

}  // namespace

}  // namespace tallyscope
