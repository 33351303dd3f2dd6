// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

namespace tallyscope {

struct CHistogramBin;

// Counts values into bins of equal width (all into the first where that is 0, as NaN is) between a minimum and a
// maximum, beyond which the end bins reach.
class BinCounter {
 public:
  BinCounter(double minimum, double maximum, int bins);
  bool IsEmpty() const { return tallies_.empty(); }  // no bins
  void Add(std::span<const double> values);
  // The bins so far: edges, counts, data ranges, and cumulative fractions of `validCount`.
  std::vector<CHistogramBin> GetBins(int validCount) const;

 private:
  struct Tally {
    double dataMin = 1e10;
    double dataMax = -1e10;
    long count = 0;
  };

  double minimum_;
  double width_;
  std::vector<Tally> tallies_;
};

}  // namespace tallyscope
