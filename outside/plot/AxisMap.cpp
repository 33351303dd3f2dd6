// SPDX-License-Identifier: MIT
#include "outside/plot/AxisMap.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "platform/core/WideVectors.h"

namespace tallyscope {

namespace {

constexpr std::uint64_t kOneBits = 0x3ff0000000000000;       // of 1.0
constexpr std::uint64_t kRootHalfBits = 0x3fe6a09e667f3bcd;  // of the root of 1/2
constexpr std::uint64_t kFraction = 0x000fffffffffffff;
constexpr std::uint64_t kWholeBits = 0x4330000000000000;  // of 2^52, whose last bits count ones
constexpr double kWholeAndBias = 0x1p52 + 1023;
constexpr std::uint64_t kSign = 0x8000000000000000;

using Four [[gnu::vector_size(4 * sizeof(double))]] = double;
using FourAnywhere [[gnu::vector_size(4 * sizeof(double)), gnu::aligned(alignof(double)), gnu::may_alias]] = double;
using FourBits [[gnu::vector_size(4 * sizeof(double))]] = std::uint64_t;

constexpr double kLog10Of2 = std::numbers::ln2 * std::numbers::log10e;
constexpr double kTerms[] = {1.0 / 17, 1.0 / 15, 1.0 / 13, 1.0 / 11, 1.0 / 9, 1.0 / 7, 1.0 / 5, 1.0 / 3, 1.0};

// The part within the band and the logarithm of what goes beyond it are a sum, on both sides. The logarithm is taken
// without calls or branches, four at a time: a number is m 2^k with m from the root of 1/2 to that of 2, and the
// logarithm of m is twice the areatangent of (m - 1) / (m + 1), of at most 0.172: ten terms of its series are enough.
// What is infinite or NaN gives NaN, by the difference.
TALLYSCOPE_WIDE_VECTORS
void MapFours(const double* world, int count, double band, double* data) {
  for (int i = 0; i < count; i += 4) {
    const Four scaled = *reinterpret_cast<const FourAnywhere*>(world + i) / band;
    const FourBits sign = reinterpret_cast<FourBits>(scaled) & kSign;
    const FourBits sizeBits = reinterpret_cast<FourBits>(scaled) & ~kSign;
    const Four size = reinterpret_cast<Four>(sizeBits);
    const Four ones = Four{} + 1.0;
    const Four inside = size < ones ? size : ones;
    const Four beyond = size > ones ? size : ones;
    const FourBits bits = reinterpret_cast<FourBits>(beyond) + (kOneBits - kRootHalfBits);
    const FourBits powerBits = (bits >> 52) | kWholeBits;
    const FourBits mBits = (bits & kFraction) + kRootHalfBits;
    const Four power = reinterpret_cast<Four>(powerBits) - kWholeAndBias;
    const Four m = reinterpret_cast<Four>(mBits);
    const Four s = (m - 1.0) / (m + 1.0);
    const Four z = s * s;
    Four series = Four{} + 1.0 / 19;
    for (const double term : kTerms) series = series * z + term;
    const Four log = power * kLog10Of2 + s * series * (2 * std::numbers::log10e);
    const Four sum = inside + log + (size - size);
    const FourBits signedSum = reinterpret_cast<FourBits>(sum) | sign;
    *reinterpret_cast<FourAnywhere*>(data + i) = reinterpret_cast<Four>(signedSum);
  }
}

void MapLogarithmic(const double* world, int count, double band, double* data) {
  const int fours = count / 4 * 4;
  MapFours(world, fours, band, data);
  double rest[4]{};
  std::copy(world + fours, world + count, rest);
  MapFours(rest, 4, band, rest);
  std::copy_n(rest, count - fours, data + fours);
}

}  // namespace

double AxisMap::ToData(double world) const {
  if (!IsLogarithmic()) return world;
  const double scaled = world / band;
  return std::abs(scaled) <= 1 ? scaled : std::copysign(1 + std::log10(std::abs(scaled)), scaled);
}

void AxisMap::ToDataNearly(const double* world, int count, double* data) const {
  if (IsLogarithmic()) {
    MapLogarithmic(world, count, band, data);
  } else if (data != world) {
    std::copy_n(world, count, data);
  }
}

double AxisMap::ToWorld(double data) const {
  if (!IsLogarithmic()) return data;
  if (std::abs(data) <= 1) return data * band;
  const double power = std::pow(10.0, std::abs(data) - 1);
  if (std::isfinite(power)) return std::copysign(power * band, data);
  // Beside a narrow band the power alone is beyond the largest number, the value need not be.
  const double root = std::pow(10.0, (std::abs(data) - 1) / 2);
  return std::copysign(root * band * root, data);
}

}  // namespace tallyscope
