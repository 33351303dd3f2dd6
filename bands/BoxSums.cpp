// SPDX-License-Identifier: MIT
#include "bands/BoxSums.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "platform/core/WideVectors.h"

namespace tallyscope {

namespace {

constexpr int kChains = 8;
constexpr std::uint32_t kSizeBits = 0x7fffffff;

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

// Of numbers without their signs, as the integers that their bits are.
struct Sizes {
  std::uint32_t largest = 0;
  std::uint32_t lessOne =
      ~std::uint32_t{0};  // the smallest less 1: 0 less 1 is the largest of all, so zeros don't count
};

// By the upper halves of the doubles, which hold sign, exponent and the first bits of the fraction.
TALLYSCOPE_WIDE_VECTORS
Sizes GetSizes(const double* samples, int count) {
  Sizes sizes;
  for (int i = 0; i < count; ++i) {
    const auto size = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(samples[i]) >> 32) & kSizeBits;
    sizes.largest = size > sizes.largest ? size : sizes.largest;
    sizes.lessOne = size - 1 < sizes.lessOne ? size - 1 : sizes.lessOne;
  }
  return sizes;
}

TALLYSCOPE_WIDE_VECTORS
Sizes GetSizes(const float* samples, int count) {
  Sizes sizes;
  for (int i = 0; i < count; ++i) {
    const std::uint32_t size = std::bit_cast<std::uint32_t>(samples[i]) & kSizeBits;
    sizes.largest = size > sizes.largest ? size : sizes.largest;
    sizes.lessOne = size - 1 < sizes.lessOne ? size - 1 : sizes.lessOne;
  }
  return sizes;
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

namespace {

// A float is a whole number of units, 2^-23 of its power of two. While a sum of them all keeps below 2^53 units of the
// smallest, nothing is ever rounded. Otherwise each addition errs by at most half an ulp of the largest sum that there
// can be: the one way takes `steps` of them and two sums of up to `terms`, the other `terms`. (Higham, Accuracy and
// Stability of Numerical Algorithms, 2nd ed., section 4.2.)
template <class Real, int kFraction>  // kFraction: the fraction's bits that a size holds
SumSpread GetSpread(std::span<const Real> samples, int terms, int steps) {
  constexpr int kBias = std::numeric_limits<Real>::max_exponent - 1;
  constexpr std::uint32_t kNoNumber = std::uint32_t{2 * kBias + 1} << kFraction;  // infinity; NaNs are beyond
  const Sizes sizes = GetSizes(samples.data(), static_cast<int>(samples.size()));
  if (sizes.largest >= kNoNumber) return {};
  if (sizes.largest == 0) return {true, 0};
  const int largest = static_cast<int>(sizes.largest >> kFraction);
  const int smallest = static_cast<int>((sizes.lessOne + 1) >> kFraction);
  const double most = std::ldexp(1.0, largest + 1 - kBias);
  const double unit = std::ldexp(1.0, std::max(smallest, 1) - kBias - 23);
  const double sum = most * (terms + 2.0);
  if (sum < 0x1p53 * unit) return {true, 0};
  return {true, sum * 0x1p-53 * 2.0 * (2.0 * steps + 4.0 * terms + 8.0)};
}

}  // namespace

SumSpread GetSumSpread(std::span<const double> samples, int terms, int steps) {
  return GetSpread<double, 20>(samples, terms, steps);
}

SumSpread GetSumSpread(std::span<const float> samples, int terms, int steps) {
  return GetSpread<float, 23>(samples, terms, steps);
}

}  // namespace tallyscope
