// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "bands/BoxGrid.h"
#include "statistics/bvector.h"

namespace tallyscope {

// Means of `width` floats each, from floats to floats in one go: means[i] is that of samples[i] to
// samples[i + width - 1], as the sum in order gives it. A mean that the quick sum can't decide is left open, and what
// stands in its place then means nothing. False, and no mean is written, where not all samples are finite.
//
// A whole number of kStep means at a time; kAhead samples behind the last window must be there to be read, and don't
// count.
class CBoxMeans {
 public:
  static constexpr int kStep = 4;
  static constexpr int kAhead = 12;

  void SetWidth(int width) { width_ = width; }

  bool Run(const float* samples, double divisor, float* means, int count);
  // Bit first + i of the mask is that of samples[i]. Nulls don't count; a mean of nothing but nulls is no number, or
  // open.
  bool RunAroundNulls(const float* samples, const bvector& mask, int first, float* means, int count);

  // Of the last run: the open means, in order; and the samples, nulls being 0.
  const std::vector<int>& GetOpen() const { return open_; }
  const float* GetSamples() const { return samples_; }

 private:
  bool Fit(const float* samples, int count);

  int width_ = 1;
  CBoxGrid grid_;
  const float* samples_ = nullptr;
  std::vector<float> copy_;
  std::vector<std::int32_t> nulls_;  // 1 for a null, else 0
  std::vector<int> open_;
};

}  // namespace tallyscope
