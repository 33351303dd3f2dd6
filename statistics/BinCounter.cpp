// SPDX-License-Identifier: MIT
#include "statistics/BinCounter.h"

#include <algorithm>

#include "statistics/Stats_Histogram.h"

namespace tallyscope {

BinCounter::BinCounter(double minimum, double maximum, int bins)
    : minimum_(minimum), width_((maximum - minimum) / bins), tallies_(static_cast<std::size_t>(bins)) {}

void BinCounter::Add(std::span<const double> all) {
  const double* values = all.data();
  const int count = static_cast<int>(all.size());
  constexpr int kChunk = 64;
  int indices[kChunk];
  const double last = static_cast<double>(tallies_.size() - 1);
  for (int first = 0; first < count; first += kChunk) {
    const int n = std::min(kChunk, count - first);
    for (int i = 0; i < n; ++i) {
      double index = (values[first + i] - minimum_) / width_;
      index = index > 0 ? index : 0;  // NaN too
      indices[i] = static_cast<int>(index < last ? index : last);
    }
    if (width_ == 0) std::fill_n(indices, n, 0);
    for (int i = 0; i < n; ++i) {
      auto& tally = tallies_[static_cast<std::size_t>(indices[i])];
      const double value = values[first + i];
      ++tally.count;
      tally.dataMin = value < tally.dataMin ? value : tally.dataMin;
      tally.dataMax = value > tally.dataMax ? value : tally.dataMax;
    }
  }
}

std::vector<CHistogramBin> BinCounter::GetBins(int validCount) const {
  std::vector<CHistogramBin> bins(tallies_.size());
  long running = 0;
  for (std::size_t i = 0; i < bins.size(); ++i) {
    const double index = static_cast<double>(i);
    bins[i].binMin = index * width_ + minimum_;
    bins[i].binMax = (index + 1) * width_ + minimum_;
    bins[i].dataMin = tallies_[i].dataMin;
    bins[i].dataMax = tallies_[i].dataMax;
    bins[i].count = static_cast<double>(tallies_[i].count);
    running += tallies_[i].count;
    bins[i].cumulative = static_cast<double>(running) / validCount;
  }
  return bins;
}

}  // namespace tallyscope
