// SPDX-License-Identifier: MIT
#include "statistics/bvector.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace tallyscope {

namespace {

TEST(bvector, TakesAByteMoreThanWholeBytesNeed) {
  bvector bits(8, true);
  EXPECT_EQ(bits.GetBytes(), (std::vector<std::uint8_t>{0xff, 0}));
  bits.Resize(9);
  EXPECT_EQ(bits.GetBytes().size(), 2u);
  EXPECT_FALSE(bits[8]);
  bits.Set(8, true);
  EXPECT_EQ(bits.GetBytes()[1], 1) << "least significant bit first";
  bits.Clear();
  EXPECT_EQ(bits.GetSize(), 0);
  EXPECT_EQ(bits.GetBytes().capacity(), 0u);
  bits.Resize(-3);
  EXPECT_EQ(bits.GetSize(), 0);
}

TEST(bvector, ShrinkingKeepsTheBitsBehindTheEnd) {
  bvector bits(20, true);
  bits.Resize(10);
  EXPECT_EQ(bits.GetBytes().size(), 3u);
  bits.Resize(15);
  EXPECT_TRUE(bits[14]);
  bits.Resize(10);
  bits.Resize(16, false);
  EXPECT_TRUE(bits[9]);
  EXPECT_FALSE(bits[10]);
}

// Beside a vector<bool>, through ranges that begin, end and lie anywhere in a byte.
TEST(bvector, RangesSetTheirBitsAndNoOthers) {
  std::mt19937 random(20240611);
  bvector bits(100);
  std::vector<bool> expected(100);
  for (int i = 0; i < 5'000; ++i) {
    const int first = static_cast<int>(random() % 100);
    const int last = static_cast<int>(random() % 100);
    const bool value = random() % 2 != 0;
    bits.SetRange(first, last, value);
    for (int k = first; k <= last; ++k) expected[static_cast<std::size_t>(k)] = value;
    for (int k = 0; k < 100; ++k) ASSERT_EQ(bits[k], expected[static_cast<std::size_t>(k)]) << first << ".." << last;
  }
}

}  // namespace

}  // namespace tallyscope
