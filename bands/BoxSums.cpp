// SPDX-License-Identifier: MIT
#include "bands/BoxSums.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "platform/core/WideVectors.h"

namespace tallyscope {

namespace {

constexpr int kChains = 8;
constexpr std::uint32_t kSizeBits = 0x7fffffff;
constexpr int kBias = 1023;
constexpr int kNoNumber = 0x7ff;  // exponent of NaN and of infinities

// What eight samples in a row add up to, by halves: t[i] = x[i] + ... + x[i + 7].
TALLYSCOPE_WIDE_VECTORS
void SumEights(const double* x, double* t, int count) {
  for (int i = 0; i < count + 6; ++i) t[i] = x[i] + x[i + 1];
  for (int i = 0; i < count + 4; ++i) t[i] += t[i + 2];
  for (int i = 0; i < count; ++i) t[i] += t[i + 4];
}

// Each window from the one eight samples before it: eight chains side by side.
TALLYSCOPE_WIDE_VECTORS
void SlideEights(const double* leaving, const double* coming, double* sums, int count) {
  for (int i = 0; i < count; ++i) sums[i + kChains] = sums[i] + (coming[i] - leaving[i]);
}

struct Exponents {
  int largest = -1;  // biased; -1: every sample is 0
  int smallest = 0;  // of those that aren't 0
};

// By the upper halves of the doubles, which hold sign, exponent and the first bits of the fraction.
TALLYSCOPE_WIDE_VECTORS
Exponents GetExponents(const double* samples, int count) {
  std::uint32_t largest = 0;
  std::uint32_t lessOne = ~std::uint32_t{0};  // 0 less 1 is the largest of all, so zeros don't count
  for (int i = 0; i < count; ++i) {
    const auto size = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(samples[i]) >> 32) & kSizeBits;
    largest = size > largest ? size : largest;
    lessOne = size - 1 < lessOne ? size - 1 : lessOne;
  }
  if (largest == 0) return {};
  return {static_cast<int>(largest >> 20), static_cast<int>((lessOne + 1) >> 20)};
}

}  // namespace

void SlideBox(const double* samples, int width, double* sums, int count, std::vector<double>& room) {
  double sum = 0;
  for (int i = 0; i < width; ++i) sum += samples[i];
  for (int i = 0; i < std::min(count, kChains); ++i) {
    sums[i] = sum;
    if (i + 1 < count) sum += samples[i + width] - samples[i];
  }
  const int rest = count - kChains;
  if (rest <= 0) return;
  room.resize(static_cast<std::size_t>(rest) + static_cast<std::size_t>(width) + 6);
  SumEights(samples, room.data(), rest + width);
  SlideEights(room.data(), room.data() + width, sums, rest);
}

// A float is a whole number of units, 2^-23 of its power of two. While a sum of them all keeps below 2^53 units of the
// smallest, nothing is ever rounded. Otherwise each addition errs by at most half an ulp of the largest sum that there
// can be: the one way takes `steps` of them and two sums of up to `terms`, the other `terms`. (Higham, Accuracy and
// Stability of Numerical Algorithms, 2nd ed., section 4.2.)
SumSpread GetSumSpread(std::span<const double> samples, int terms, int steps) {
  const Exponents exponents = GetExponents(samples.data(), static_cast<int>(samples.size()));
  if (exponents.largest >= kNoNumber) return {};
  if (exponents.largest < 0) return {true, 0};
  const double most = std::ldexp(1.0, exponents.largest + 1 - kBias);
  const double unit = std::ldexp(1.0, exponents.smallest - kBias - 23);
  const double sum = most * (terms + 2.0);
  if (sum < 0x1p53 * unit) return {true, 0};
  return {true, sum * 0x1p-53 * 2.0 * (2.0 * steps + 4.0 * terms + 8.0)};
}

}  // namespace tallyscope
