// SPDX-License-Identifier: MIT
#pragma once

#include <span>

namespace tallyscope {

// Extremes and sum of the values seen so far. The extremes start at 1e10 and -1e10 and take part as values do, and are
// updated by plain comparison, so that a NaN never enters them, as it does the sum.
struct CRunningRange {
  double minimum = 1e10;
  double maximum = -1e10;
  double sum = 0;

  void Add(std::span<const double> values) {
    double low = minimum;
    double high = maximum;
    double running = sum;
    for (const double value : values) {
      low = value < low ? value : low;
      high = value > high ? value : high;
      running += value;
    }
    *this = {low, high, running};
  }
};

}  // namespace tallyscope
