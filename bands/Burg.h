// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <span>

namespace tallyscope {

// Linear prediction by the maximum entropy method (J. P. Burg, 1967; the recursion of N. Andersen, Geophysics 39,
// 1974).
struct BurgPredictor {
  static constexpr int kMaxOrder = 60;
  static constexpr int kMaxSamples = 1024;

  enum Error { kNone, kOrderTooHigh, kOrderTooLow, kTooManySamples, kTooFewSamples };

  // Fits `count` coefficients so that x[p] is about the sum of coefficients[j - 1] * x[p - j], and of x[p + j] as well.
  // Orders from 2 to 60, 2 to 1024 samples. An error leaves everything as it was.
  Error Fit(std::span<const double> samples, int order);

  std::array<double, kMaxOrder> coefficients{};
  int count = 0;
};

// Samples to fit a predictor to, and its order.
struct BurgTask {
  std::span<const double> samples;
  int order = 0;

  BurgPredictor::Error Check() const;  // what Fit would refuse it for
};

// Two fits in the time of one: a fit waits for its sums, which may not be split. No task may have an error.
void FitTwo(const BurgTask& one, BurgPredictor& first, const BurgTask& other, BurgPredictor& second);

}  // namespace tallyscope
