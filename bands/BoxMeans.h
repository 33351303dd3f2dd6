// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "statistics/bvector.h"

namespace tallyscope {

// Means of `width` floats each, from floats to floats in one go: means[i] is that of samples[i] to
// samples[i + width - 1]. Only for samples whose sums nothing rounds, whatever the order; for others the answer is
// false, and no mean is written. A whole number of kStep means at a time; kAhead samples behind the last window must be
// there to be read, and don't count.
class CBoxMeans {
 public:
  static constexpr int kStep = 4;
  static constexpr int kAhead = 12;

  explicit CBoxMeans(int width) : width_(width) {}

  bool Run(const float* samples, double divisor, float* means, int count) const;
  // Bit first + i of the mask is that of samples[i]. Nulls don't count; a mean of nothing but nulls is no number.
  bool RunAroundNulls(const float* samples, const bvector& mask, int first, float* means, int count);

 private:
  bool IsExact(const float* samples, int count) const;

  int width_;
  std::vector<float> samples_;       // nulls are 0
  std::vector<std::int32_t> nulls_;  // 1 for a null, else 0
};

}  // namespace tallyscope
