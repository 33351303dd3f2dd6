// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

namespace tallyscope {

// How exact sums of samples in windows are. The sum in order, from 0 and rounded to a double at each step, is what a
// window's sum means; sums that are reached another way are the same where nothing is ever rounded, and near it
// elsewhere.
//
// Let every sum of a window's first samples, for every window, keep to 2^53 steps of a grid. A sample that is a whole
// number of steps then adds no rounding; only the fine ones do, and what they leave behind in a sum is rounded away
// within one more step. So with n fine samples in a window the sum in order is within 1.5 n steps of the true one, and
// that within n / 2 steps of the sum of the samples rounded to the grid, which no order of adding rounds.
// (Higham, Accuracy and Stability of Numerical Algorithms, 2nd ed., section 4.2, has the like for the plain sum.)
class CBoxGrid {
 public:
  // A few samples more than `width` may be in a sum at once, on the way from window to window.
  static constexpr int kSlack = 8;

  // For windows of up to `width` samples. False where not all are finite.
  bool Fit(std::span<const float> samples, int width);

  // Every sum is exact in every order.
  bool IsExact() const { return bound_ == 0; }
  // How far the sum in order may lie from that of the rounded samples.
  double GetBound() const { return bound_; }
  double GetStep() const { return step_; }  // REQUIRES: not exact

  // A sample rounded to whole steps is (sample + beside) - beside, since a double loses the rest next to 3 * 2^51
  // steps.
  double GetBeside() const { return IsExact() ? 0 : 0x1.8p52 * step_; }

 private:
  double GetLargestSum(std::span<const float> samples, int width);
  int CountFine(std::span<const float> samples, int width);

  // Of the sums of all samples before each of some chunks.
  struct Range {
    double low;
    double high;
  };

  double step_ = 0;
  double bound_ = 0;
  std::vector<double> sums_;  // of chunks
  std::vector<Range> ranges_;
  std::vector<int> fine_;  // samples of each chunk that are no whole steps
};

}  // namespace tallyscope
