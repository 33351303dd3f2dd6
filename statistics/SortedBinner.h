// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "statistics/Stats_Histogram.h"

namespace tallyscope {

// Fills bins of equal count with ascending values: a bin is full where the share of `validCount` values taken reaches
// its share of the bins. The bins, not owned, are new ones, at least one; Finish closes the last.
class SortedBinner {
 public:
  SortedBinner(std::vector<CHistogramBin>& bins, int validCount) : bins_(bins), validCount_(validCount) {}

  void Add(double value) {
    if (at_ >= bins_.size()) return;  // more values than were counted: the table has changed under us
    auto& bin = bins_[at_];
    if (opens_) {
      bin.count = 0;
      bin.binMin = bin.dataMin = bin.dataMax = value;
      if (at_ > 0) {
        bins_[at_ - 1].binMax = value;
        bins_[at_ - 1].cumulative = GetTaken();
      }
      opens_ = false;
    } else {
      bin.dataMax = value;
    }
    last_ = value;
    ++bin.count;
    ++taken_;
    if (GetTaken() >= static_cast<double>(at_ + 1) / static_cast<double>(bins_.size())) {
      ++at_;
      opens_ = true;
    }
  }
  void Finish() {
    bins_.back().binMax = last_;
    bins_.back().cumulative = 1.0;
  }

 private:
  double GetTaken() const { return static_cast<double>(taken_) / validCount_; }

  std::vector<CHistogramBin>& bins_;
  int validCount_;
  std::size_t at_ = 0;
  int taken_ = 0;
  bool opens_ = true;
  double last_ = 0;
};

}  // namespace tallyscope
