// SPDX-License-Identifier: MIT
#include "platform/core/Archive.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

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

// Values of every kind, by chance. A stream that is cut anywhere gives what was stored up to the cut, and zeros from
// there on; that it failed shows exactly when something is missing.
TEST(Archive, ACutStreamNeverGivesAnythingElse) {
  std::mt19937_64 random(7);
  CArchive out;
  std::vector<std::pair<int, std::uint64_t>> stored;  // kind; bits, or length of a text
  for (int i = 0; i < 60; ++i) {
    const int kind = static_cast<int>(random() % 6);
    std::uint64_t bits = random();
    switch (kind) {
      case 0:
        out << static_cast<std::uint8_t>(bits &= 0xff);
        break;
      case 1:
        out << static_cast<std::uint16_t>(bits &= 0xffff);
        break;
      case 2:
        out << static_cast<std::int32_t>(bits &= 0xffff'ffff);
        break;
      case 3:
        out << std::bit_cast<float>(static_cast<std::uint32_t>(bits &= 0xffff'ffff));
        break;
      case 4:
        out << std::bit_cast<double>(bits);
        break;
      default:
        out << CString(bits %= 300, 't');
    }
    stored.emplace_back(kind, bits);
  }
  for (std::size_t length = 0; length <= out.GetBytes().size(); ++length) {
    CArchive in({out.GetBytes().begin(), out.GetBytes().begin() + static_cast<std::ptrdiff_t>(length)});
    for (const auto& [kind, bits] : stored) {
      std::uint8_t byte = 1;
      std::uint16_t word = 1;
      std::int32_t integer = 1;
      float real = 1;
      double number = 1;
      CString text = "before";
      std::uint64_t got = 0;
      switch (kind) {
        case 0:
          in >> byte;
          got = byte;
          break;
        case 1:
          in >> word;
          got = word;
          break;
        case 2:
          in >> integer;
          got = static_cast<std::uint32_t>(integer);
          break;
        case 3:
          in >> real;
          got = std::bit_cast<std::uint32_t>(real);
          break;
        case 4:
          in >> number;
          got = std::bit_cast<std::uint64_t>(number);
          break;
        default:
          in >> text;
          got = text.size();
      }
      ASSERT_EQ(got, in.IsFailed() ? 0 : bits) << "kind " << kind << ", cut at " << length;
    }
    ASSERT_EQ(in.IsFailed(), length < out.GetBytes().size());
    ASSERT_EQ(in.GetRemaining(), 0u);
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

TEST(Archive, TextsOfEveryLengthClass) {
  for (const std::size_t length : {0, 1, 254, 255, 256, 65533, 65534, 65535, 70000}) {
    CArchive out;
    out << CString(length, 'x') << std::uint8_t{7};
    const std::size_t prefix = length < 255 ? 1 : length < 65534 ? 3 : 7;
    EXPECT_EQ(out.GetBytes().size(), prefix + length + 1);
    CArchive in(out.GetBytes());
    CString text;
    std::uint8_t behind = 0;
    in >> text >> behind;
    EXPECT_EQ(text, CString(length, 'x'));
    EXPECT_EQ(behind, 7);
  }
}

TEST(Archive, ALyingOrWideTextLengthFails) {
  const std::vector<std::uint8_t> lies[] = {
      {5, 'a', 'b'}, {255}, {255, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 'a'}, {255, 0xfe, 0xff, 1, 'a', 0}};
  for (const auto& bytes : lies) {
    CArchive in(bytes);
    CString text = "before";
    in >> text;
    EXPECT_TRUE(in.IsFailed());
    EXPECT_EQ(text, "");
    EXPECT_EQ(in.GetRemaining(), 0u);
  }
}

}  // namespace

}  // namespace tallyscope
