// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <functional>

#include "tests/conditioning/ConditioningTesting.h"

namespace tallyscope {

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Joined(const std::function<void(CArchive&)>& write) {
  CArchive archive;
  write(archive);
  return archive.GetBytes();
}

bool Load(CStats_Conditioning& rules, const Bytes& bytes) {
  CArchive archive(bytes);
  rules.Serialize(archive);
  return !archive.IsFailed();
}

void WriteVersion0(CArchive& a) {
  a << -999.0 << 2 << 7.5 << -1e-5 << 2 << 0 << 10.0 << 20.0 << 0 << -3.25 << -1.0;
  a << 1 << 0.5 << 1 << -4.0 << 1 << 1234.5678;
}

void WriteVersion1(CArchive& a) {
  WriteVersion0(a);
  a << 1 << 0 << 1 << CString("na") << CString("it's blank") << 2 << CString("none") << CString("a, b | c = d # e");
}

void WriteVersion2(CArchive& a) {
  WriteVersion1(a);
  const auto null = std::uint16_t{1}, integer = std::uint16_t{3}, real = std::uint16_t{5};
  a << 1 << 3 << 0 << 0 << null << 0 << 7 << integer << 11 << 0 << 11 << real << 2.5;
}

TEST(ConditioningArchive, IsWrittenAsVersion2) {
  EXPECT_EQ(StoredBytes(FullRules(1)), Joined([](CArchive& a) { a << 2, WriteVersion2(a); }));
  EXPECT_EQ(StoredBytes(CStats_Conditioning()), Joined([](CArchive& a) {
              a << 2 << -1e32 << 0 << 0 << 0 << 0.0 << 0 << 0.0 << 0 << 100.0 << 1 << 0 << 1;
              a << CString() << CString() << 0 << 0 << 0;
            }));
}

TEST(ConditioningArchive, ComesBackWholeForEachKind) {
  for (const int kind : {0, 1, 2, 77}) {
    const auto stored = FullRules(kind);
    CStats_Conditioning loaded;
    loaded.AddNULLValue(1);
    loaded.AddOperator(CStats_Operator::kAgc, "5");
    ASSERT_TRUE(Load(loaded, StoredBytes(stored)));
    EXPECT_TRUE(IsIdentical(loaded, stored));
    EXPECT_TRUE(loaded == stored);
  }
}

TEST(ConditioningArchive, BandsAreNotKept) {
  auto stored = FullRules(1);
  stored.operators[2].SetBand(4);
  stored.operators[2].SetBandCount(9);
  CStats_Conditioning loaded;
  ASSERT_TRUE(Load(loaded, StoredBytes(stored)));
  EXPECT_EQ(loaded.operators[2].GetBand(), 0);
  EXPECT_EQ(loaded.operators[2].GetBandCount(), 1);
}

TEST(ConditioningArchive, AnOlderVersionLeavesWhatItDoesNotHold) {
  CStats_Conditioning loaded;
  loaded.DefineString(1);
  loaded.SetNULL("kept");
  loaded.DefineOperators(1);
  loaded.AddOperator(CStats_Operator::kScale, "3");
  ASSERT_TRUE(Load(loaded, Joined([](CArchive& a) { a << 0, WriteVersion0(a); })));
  EXPECT_EQ(loaded.nullValue, -999);
  EXPECT_EQ(loaded.nullRanges[1].minimum, -3.25);
  EXPECT_EQ(loaded.capMaximum, 1234.5678);
  EXPECT_TRUE(loaded.IsString() && loaded.IsCaseSensitive());
  EXPECT_EQ(loaded.nullString, "kept");
  EXPECT_EQ(loaded.GetOperatorCount(), 1);
  ASSERT_TRUE(Load(loaded, Joined([](CArchive& a) { a << 1, WriteVersion1(a); })));
  EXPECT_TRUE(loaded.IsNumeric() && !loaded.IsCaseSensitive());
  EXPECT_EQ(loaded.nullStrings[0], "none");
  EXPECT_TRUE(loaded.IsOperatorsUsed());
  EXPECT_EQ(loaded.GetOperatorCount(), 1);
}

TEST(ConditioningArchive, ATruncationFailsAndLeavesTheRestAsItWas) {
  const auto whole = StoredBytes(FullRules(1));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    CStats_Conditioning loaded;
    ASSERT_FALSE(Load(loaded, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)))) << size;
    ASSERT_EQ(loaded.nullValue, size < 12 ? -1e32 : -999) << size;
    ASSERT_EQ(loaded.capMaximum, size < 112 ? 100 : 1234.5678) << size;
    ASSERT_TRUE(loaded.nullValues.size() == (size < 32 ? 0 : 2)) << size;
  }
}

TEST(ConditioningArchive, ALyingCountFailsWithoutRoomBeingMade) {
  for (const int count : {-1, 3, 1'000'000, 0x7fffffff, static_cast<int>(0x80000000)}) {
    CStats_Conditioning rules = FullRules(1);
    EXPECT_FALSE(Load(rules, Joined([&](CArchive& a) { a << 2 << 1.0 << count << 5.0 << 6.0; })));
    EXPECT_EQ(rules.nullValue, 1);
    EXPECT_EQ(rules.nullValues.size(), 2u) << "as it was";
    EXPECT_EQ(rules.capMaximum, 1234.5678) << "nothing behind it";
    EXPECT_FALSE(Load(rules, Joined([&](CArchive& a) { a << 2 << 1.0 << 0 << count << 0 << 5.0 << 6.0; })));
    EXPECT_FALSE(Load(rules, Joined([&](CArchive& a) { a << 2, WriteVersion1(a), a << 1 << count << 0 << 8; })));
  }
  CStats_Conditioning rules;
  EXPECT_FALSE(Load(rules, Joined([](CArchive& a) { a << -1, WriteVersion0(a); })));
}

// Types and parameters of any kind load; what they mean is decided later.
TEST(ConditioningArchive, OperatorsOfUnknownTypesComeBackAsTheyAre) {
  auto rules = FullRules(1);
  ASSERT_TRUE(Load(rules, Joined([](CArchive& a) {
                     a << 2, WriteVersion1(a);
                     a << 1 << 2 << 0 << 99 << std::uint16_t{8} << 1;
                     a << std::uint8_t{'x'} << 0 << 8 << std::uint16_t{3} << 5;
                   })));
  ASSERT_EQ(rules.GetOperatorCount(), 2) << "in place of those that were there";
  EXPECT_EQ(rules.operators[0].GetType(), 99);
  EXPECT_EQ(rules.operators[0].GetValue().GetText(), "x");
  EXPECT_EQ(rules.operators[1].GetValueS(), "5") << "a scale that was kept as a whole number";
}

}  // namespace

}  // namespace tallyscope
