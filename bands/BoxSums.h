// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "bands/BoxGrid.h"

namespace tallyscope {

// A window over samples, from `from` to before `to`.
struct BoxWindow {
  int from;
  int to;
};

// The sums of windows over floats, however wide, as their means need them: sums[i] / divisors[i] is, narrowed to a
// float, what the sum of the window's samples in order gives, from 0 and rounded to a double at each step. Divisors are
// numbers of samples, or 1. Samples that don't count are 0.
//   CBoxSums box;
//   box.Start(samples, width);
//   box.Sum(windows, divisors, sums);   // again and again, neither end of a window going back
class CBoxSums {
 public:
  // The samples stay as they are until the last sum; no window is wider than `width`.
  void Start(std::span<const float> samples, int width);
  void Sum(std::span<const BoxWindow> windows, const double* divisors, double* sums);

 private:
  // A sample that is infinite or NaN.
  struct OddSample {
    int at;
    double value;
    std::size_t differing;  // index of the next one of another value
  };

  void TakeOutOdd();
  void ApplyOdd(std::span<const BoxWindow> windows, double* sums);
  void Slide(std::span<const BoxWindow> windows, double* sums);
  void Settle(std::span<const BoxWindow> windows, const double* divisors, double* sums);
  void SettleRun(std::span<const BoxWindow> windows, int first, int end, const double* divisors, double* sums);
  bool SumApart(std::span<const BoxWindow> windows, const double* divisors, double* sums) const;

  std::span<const float> samples_;
  CBoxGrid grid_;
  int from_ = 0;  // the window whose sum of rounded samples is sum_
  int to_ = 0;
  double sum_ = 0;
  std::vector<unsigned char> open_;  // of the windows in hand: the quick sum doesn't decide
  std::vector<int> rest_;            // those that are summed in order
  std::vector<float> finite_;
  std::vector<OddSample> odd_;
  std::size_t firstOdd_ = 0;  // that no window has left behind
};

// The sums in order of finite samples, window by window.
void SumInOrder(std::span<const float> samples, std::span<const BoxWindow> windows, double* sums);

}  // namespace tallyscope
