// SPDX-License-Identifier: MIT
#include "statistics/CubeSum.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace tallyscope {

namespace {

constexpr int kChunk = 64;

// The C library's pow is not correctly rounded. It errs by less than 0.515 units in the last place for results between
// 2^-100 and 2^100, and by less than 0.531 between 2^-600 and 2^600 (0.511 from its exponential, and 1.5 * 2^-15 for
// each unit of |log result| from its logarithm; so the analysis in ARM's "optimized-routines", which most C libraries
// carry). Where the exact cube lies further than this excess from the middle between two doubles, pow gives the nearest
// double.
constexpr double kNearHalf = 0x1p-52 * (0.5 - 0x1p-6);
constexpr double kNearSmallest = 0x1p-100;
constexpr double kNearLargest = 0x1p100;
constexpr double kFarHalf = 0x1p-52 * (0.5 - 0x1p-5);
constexpr double kFarSmallest = 0x1p-600;
constexpr double kFarLargest = 0x1p600;

struct Pair {
  double high;  // rounded
  double low;   // high + low is exact
};

// The product and its rounding error; by Veltkamp's splitting and Dekker's formula where there is no fused product.
template <bool kFused>
[[gnu::always_inline]] inline Pair Multiply(double a, double b) {
  const double product = a * b;
  if constexpr (kFused) return {product, __builtin_fma(a, b, -product)};
  constexpr double kSplit = 0x1p27 + 1;
  const double aScaled = kSplit * a;
  const double aHigh = aScaled - (aScaled - a);
  const double aLow = a - aHigh;
  const double bScaled = kSplit * b;
  const double bHigh = bScaled - (bScaled - b);
  const double bLow = b - bHigh;
  return {product, ((aHigh * bHigh - product) + aHigh * bLow + aLow * bHigh) + aLow * bLow};
}

// Cubes of a chunk; doubtful[i] is non-zero where the cube is not sure to be what pow gives.
template <bool kFused>
[[gnu::always_inline]] inline void Cube(const double* values, double mean, int count, double* cubes,
                                        std::uint64_t* doubtful) {
  for (int i = 0; i < count; ++i) {
    const double d = values[i] - mean;
    const Pair square = Multiply<kFused>(d, d);
    const Pair cube = Multiply<kFused>(square.high, d);
    const double low = cube.low + square.low * d;
    const double rounded = cube.high + low;
    const double rest = low - (rounded - cube.high);
    const auto bits = std::bit_cast<std::uint64_t>(rounded);
    constexpr std::uint64_t kExponent = 0x7ff0000000000000;
    const double binade = std::bit_cast<double>(bits & kExponent);
    const double size = std::fabs(rounded);
    // A power of two has closer neighbours on one side and counts as doubtful. Single ands: the loop has to stay one
    // straight line of vector code.
    const bool near = (size >= kNearSmallest) & (size <= kNearLargest);
    const double guarded = near ? kNearHalf : kFarHalf;
    const bool sure =
        (size >= kFarSmallest) & (size <= kFarLargest) & (size != binade) & (std::fabs(rest) < binade * guarded);
    cubes[i] = rounded;
    doubtful[i] = sure ? 0 : 1;
  }
}

#if defined(__FP_FAST_FMA)
constexpr bool kAlwaysFused = true;
#else
constexpr bool kAlwaysFused = false;
#endif

void CubePlain(const double* values, double mean, int count, double* cubes, std::uint64_t* doubtful) {
  Cube<kAlwaysFused>(values, mean, count, cubes, doubtful);
}

using CubeFunction = decltype(&CubePlain);

#if defined(__x86_64__)
[[gnu::target("avx2,fma")]] void CubeFused(const double* values, double mean, int count, double* cubes,
                                           std::uint64_t* doubtful) {
  Cube<true>(values, mean, count, cubes, doubtful);
}

CubeFunction ChooseCube() {
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") ? CubeFused : CubePlain;
}
#else
CubeFunction ChooseCube() {
  return CubePlain;
}
#endif

}  // namespace

void CubeSum::Add(std::span<const double> all) {
  const double* values = all.data();
  const int count = static_cast<int>(all.size());
  static const CubeFunction cube = ChooseCube();
  double cubes[kChunk];
  std::uint64_t doubtful[kChunk];
  for (int first = 0; first < count; first += kChunk) {
    const int n = std::min(kChunk, count - first);
    cube(values + first, mean_, n, cubes, doubtful);
    for (int i = 0; i < n; ++i) {
      if (doubtful[i] != 0) cubes[i] = std::pow(values[first + i] - mean_, 3.0);
    }
    double sum = sum_;
    for (int i = 0; i < n; ++i) sum += cubes[i];
    sum_ = sum;
  }
}

}  // namespace tallyscope
