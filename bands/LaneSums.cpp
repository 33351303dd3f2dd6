// SPDX-License-Identifier: MIT
#include "bands/LaneSums.h"

#include "platform/core/WideVectors.h"

namespace tallyscope {

namespace {

using Lanes [[gnu::vector_size(32), gnu::aligned(alignof(double)), gnu::may_alias]] = double;
constexpr int kVectors = kLanes / 4;

template <class Number>
[[gnu::always_inline]] inline void Add(const Number* numbers, int count, double* lanes) {
  Lanes* const all = reinterpret_cast<Lanes*>(lanes);
  Lanes sums[kVectors];
  for (int k = 0; k < kVectors; ++k) sums[k] = all[k];
  for (int i = 0; i < count; ++i) {
    const auto number = static_cast<double>(numbers[i]);
    for (int k = 0; k < kVectors; ++k) sums[k] += number;
  }
  for (int k = 0; k < kVectors; ++k) all[k] = sums[k];
}

}  // namespace

TALLYSCOPE_WIDE_VECTORS void AddToLanes(const float* numbers, int count, double* lanes) {
  Add(numbers, count, lanes);
}

TALLYSCOPE_WIDE_VECTORS void AddToLanes(const double* numbers, int count, double* lanes) {
  Add(numbers, count, lanes);
}

}  // namespace tallyscope
