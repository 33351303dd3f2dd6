// SPDX-License-Identifier: MIT
#include "statistics/CubeSum.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <span>
#include <vector>

namespace tallyscope {

namespace {

// Values whose cubes' sums show each single cube: one among zeros, in every place of a vector register.
void ExpectCubesOfPow(const std::vector<double>& values, double mean) {
  double expected = 0;
  CubeSum cubes(mean);
  for (std::size_t first = 0; first < values.size(); first += 37) {
    const std::size_t count = std::min<std::size_t>(37, values.size() - first);
    cubes.Add(std::span(values).subspan(first, count));
    for (std::size_t i = first; i < first + count; ++i) expected += std::pow(values[i] - mean, 3.0);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(cubes.GetSum()), std::bit_cast<std::uint64_t>(expected)) << "by " << first;
  }
}

double CubeOf(double x, int lane) {
  double values[8] = {};
  values[lane] = x;
  CubeSum cubes(0);
  cubes.Add(values);
  return cubes.GetSum();
}

TEST(CubeSum, IsThatOfPowToTheLastBit) {
  std::mt19937_64 random(20240611);
  std::normal_distribution<double> normal(100, 15);
  std::vector<double> values(500'000);
  for (auto& value : values) value = normal(random);
  ExpectCubesOfPow(values, 100.01);
  for (auto& value : values) value = std::round(value * 100) / 100;
  ExpectCubesOfPow(values, 99.98765);
}

TEST(CubeSum, CubesOfEveryMagnitudeAreThoseOfPow) {
  std::mt19937_64 random(4711);
  std::uniform_real_distribution<double> mantissa(1, 2);
  for (int exponent = -400; exponent <= 400; ++exponent) {
    for (int i = 0; i < 400; ++i) {
      const double x = std::ldexp(mantissa(random), exponent) * (i % 2 == 0 ? 1 : -1);
      ASSERT_EQ(CubeOf(x, i % 8), std::pow(x, 3.0)) << x;
    }
  }
}

TEST(CubeSum, CubesInTheMiddleBetweenTwoDoublesAreThoseOfPow) {
  // An odd number of 18 bits has a cube of 52 to 54 bits: those of 54 end in the middle.
  int middles = 0;
  for (std::uint64_t x = (1u << 17) + 1; x < 1u << 18; x += 2) {
    middles += x * x * x >= std::uint64_t{1} << 53 ? 1 : 0;
    ASSERT_EQ(CubeOf(static_cast<double>(x), x / 2 % 8), std::pow(static_cast<double>(x), 3.0)) << x;
  }
  EXPECT_GT(middles, 1000);
}

TEST(CubeSum, TakesAnyValue) {
  using Limits = std::numeric_limits<double>;
  const double values[] = {0.0,
                           -0.0,
                           1.0,
                           -2.0,
                           0x1p33,
                           0x1p34,
                           0x1p-34,
                           0x1p200,
                           0x1p-200,
                           0x1p341,
                           0x1p342,
                           0x1p-358,
                           Limits::denorm_min(),
                           Limits::min(),
                           Limits::max(),
                           -Limits::max(),
                           Limits::infinity(),
                           -Limits::infinity(),
                           1.2599210498948731,
                           1.2599210498948732,
                           1.5874010519681994,
                           5.6438030941222897e102,
                           5.6438030941222918e102};
  for (const double x : values) {
    for (int lane = 0; lane < 8; ++lane) EXPECT_EQ(CubeOf(x, lane), std::pow(x, 3.0)) << x;
  }
  EXPECT_TRUE(std::isnan(CubeOf(Limits::quiet_NaN(), 3)));
}

}  // namespace

}  // namespace tallyscope
