// SPDX-License-Identifier: MIT
#include "bands/Burg.h"

#include <algorithm>
#include <cstddef>

namespace tallyscope {

namespace {

struct PairSums {
  double products = 0;
  double squares = 0;

  void Add(double forward, double backward) {
    products += forward * backward;
    squares += forward * forward + backward * backward;
  }
  double GetReflection() const { return squares == 0 && products == 0 ? 0.0 : 2 * products / squares; }
};

}  // namespace

BurgPredictor::Error BurgPredictor::Fit(std::span<const double> samples, int order) {
  if (order > kMaxOrder) return kOrderTooHigh;
  if (order < 2) return kOrderTooLow;
  if (samples.size() > kMaxSamples) return kTooManySamples;
  if (samples.size() < 2) return kTooFewSamples;

  // The errors of predicting forward and backward, in pairs.
  double forward[kMaxSamples];
  double backward[kMaxSamples];
  std::size_t pairs = samples.size() - 1;
  std::copy_n(samples.begin(), pairs, forward);
  std::copy_n(samples.begin() + 1, pairs, backward);
  PairSums sums;
  for (std::size_t j = 0; j < pairs; ++j) sums.Add(forward[j], backward[j]);

  const auto terms = static_cast<std::size_t>(order);
  double previous[kMaxOrder];
  for (std::size_t k = 0; k < terms; ++k) {
    const double reflection = sums.GetReflection();
    coefficients[k] = reflection;
    for (std::size_t i = 0; i < k; ++i) coefficients[i] = previous[i] - reflection * previous[k - 1 - i];
    std::copy_n(coefficients.begin(), k + 1, previous);
    // One pair fewer at each order, and the sums of the next one on the way: they wait for an addition at each pair,
    // which leaves the time for the update.
    sums = {};
    if (pairs > 0) --pairs;
    for (std::size_t j = 0; j < pairs; ++j) {
      forward[j] -= reflection * backward[j];
      backward[j] = backward[j + 1] - reflection * forward[j + 1];
      sums.Add(forward[j], backward[j]);
    }
  }
  count = order;
  return kNone;
}

}  // namespace tallyscope
