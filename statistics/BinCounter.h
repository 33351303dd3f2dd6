// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace tallyscope {

struct CHistogramBin;

// Counts values into bins of equal width between a minimum and a maximum, which the end bins take beyond.
class BinCounter {
 public:
  BinCounter(double minimum, double maximum, int bins);
  void Add(const double* values, int count);
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
