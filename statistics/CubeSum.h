// SPDX-License-Identifier: MIT
#pragma once

#include <span>

namespace tallyscope {

// Adds up pow(x - mean, 3.0) in the order of the values, to the last bit, without calling pow for most of them. Any
// value may come, in any number of runs.
class CubeSum {
 public:
  explicit CubeSum(double mean) : mean_(mean) {}
  void Add(std::span<const double> values);
  double GetSum() const { return sum_; }

 private:
  double mean_;
  double sum_ = 0;
};

}  // namespace tallyscope
