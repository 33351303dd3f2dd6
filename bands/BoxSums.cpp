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
constexpr std::uint32_t kInfinity = 0x7f800000;

double SumDirectly(const double* samples, int width) {
  double sum = 0;
  for (int i = 0; i < width; ++i) sum += samples[i];
  return sum;
}

// The chains start `length` apart, each with a sum of its own.
void SlideChains(const double* samples, int width, double* sums, int length) {
  double sum[kChains];
  for (int c = 0; c < kChains; ++c) sums[c * length] = sum[c] = SumDirectly(samples + c * length, width);
  for (int i = 1; i < length; ++i) {
    for (int c = 0; c < kChains; ++c) {
      const double* const at = samples + c * length + i - 1;
      sum[c] += at[width] - at[0];
      sums[c * length + i] = sum[c];
    }
  }
}

struct Sizes {
  std::uint32_t largest = 0;
  std::uint32_t smallest = kSizeBits;  // that isn't 0
};

TALLYSCOPE_WIDE_VECTORS
Sizes GetSizes(const float* samples, int count) {
  std::uint32_t largest = 0;
  std::uint32_t lessOne = ~std::uint32_t{0};  // 0 less 1 is the largest of all, so zeros don't count
  for (int i = 0; i < count; ++i) {
    const std::uint32_t size = std::bit_cast<std::uint32_t>(samples[i]) & kSizeBits;
    largest = size > largest ? size : largest;
    lessOne = size - 1 < lessOne ? size - 1 : lessOne;
  }
  return {largest, lessOne + 1};
}

}  // namespace

void SlideBox(const double* samples, int width, double* sums, int count) {
  const int length = count / kChains;
  if (length > 0) SlideChains(samples, width, sums, length);
  for (int i = length * kChains; i < count; ++i) {
    sums[i] = i == 0 ? SumDirectly(samples, width) : sums[i - 1] + (samples[i - 1 + width] - samples[i - 1]);
  }
}

// A float is a whole number of units, 2^-23 of its power of two. While a sum of them all keeps below 2^53 units of the
// smallest, nothing is ever rounded. Otherwise each addition errs by at most half an ulp of the largest sum that there
// can be: the one way takes `steps` of them and two sums of up to `terms`, the other `terms`. (Higham, Accuracy and
// Stability of Numerical Algorithms, 2nd ed., section 4.2.)
SumSpread GetSumSpread(std::span<const float> samples, int terms, int steps) {
  const Sizes sizes = GetSizes(samples.data(), static_cast<int>(samples.size()));
  if (sizes.largest >= kInfinity) return {};
  if (sizes.largest == 0) return {true, 0};
  const double most = std::bit_cast<float>(sizes.largest);
  const int exponent = std::max(static_cast<int>(sizes.smallest >> 23), 1) - 127;
  const double unit = std::ldexp(1.0, exponent - 23);
  const double sum = most * (terms + 2.0);
  if (sum < 0x1p53 * unit) return {true, 0};
  return {true, sum * 0x1p-53 * 2.0 * (2.0 * steps + 4.0 * terms + 8.0)};
}

}  // namespace tallyscope
