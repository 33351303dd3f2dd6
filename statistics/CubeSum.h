// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

// Adds up pow(x - mean, 3.0) in the order of the values, to the last bit, without calling pow for most of them.
class CubeSum {
 public:
  explicit CubeSum(double mean) : mean_(mean) {}
  void Add(const double* values, int count);
  double GetSum() const { return sum_; }

 private:
  double mean_;
  double sum_ = 0;
};

}  // namespace tallyscope
