// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <utility>

#include "statistics/Stats_Histogram.h"

namespace tallyscope {

namespace {

// Whole stations of a count; a count that no table can have (from a damaged archive) is none.
long GetWhole(double count) {
  return count > 0 && count < 0x1p31 ? static_cast<long>(count) : 0;
}

// Eats old bins from the front, whole or in part; a bin that is cut shrinks in place.
class BinEater {
 public:
  BinEater(std::vector<CHistogramBin>& old, int validCount) : old_(old), validCount_(validCount) {}

  bool IsEmpty() const { return at_ == old_.size(); }
  double GetUsed() const { return used_; }

  // A new bin of `need` stations, or of all that remain.
  CHistogramBin Take(double need, bool all) {
    CHistogramBin bin;
    bin.count = 0;
    if (IsEmpty()) {
      bin.binMin = bin.binMax = old_.back().binMax;
      return bin;
    }
    bin.binMin = old_[at_].binMin;
    bin.binMax = old_[at_].binMax;
    while (!IsEmpty() && (all || need > 0)) {
      auto& next = old_[at_];
      if (all || next.count <= need) {
        bin.count += next.count;
        bin.binMax = next.binMax;
        used_ += next.count;
        need -= next.count;
        ++at_;
      } else {
        const double cut = next.binMin + (next.binMax - next.binMin) * (need / next.count);
        bin.count += need;
        bin.binMax = cut;
        next.binMin = cut;
        next.count -= need;
        used_ += need;
        need = 0;
      }
    }
    return bin;
  }
  double GetNeed(double reach) const {
    return std::clamp(std::round(reach) - used_, 0.0, std::max(validCount_ - used_, 0.0));
  }

 private:
  std::vector<CHistogramBin>& old_;
  double validCount_;
  std::size_t at_ = 0;
  double used_ = 0;
};

}  // namespace

bool CStats_Histogram::Regroup(int count) {
  if (binMode_ != 0 || bins.empty() || count < 1) return false;
  std::vector<CHistogramBin> old = std::exchange(bins, {});
  BinEater eater(old, validCount_);
  const double per = static_cast<double>(validCount_) / count;
  long running = 0;
  for (int k = 0; k < count; ++k) {
    auto bin = eater.Take(eater.GetNeed((k + 1) * per), k == count - 1);
    bin.dataMin = bin.binMin;
    bin.dataMax = bin.binMax;
    running += GetWhole(bin.count);
    bin.cumulative = static_cast<double>(running) / validCount_;
    bins.push_back(bin);
  }
  SetMaxBins(count);
  return true;
}

}  // namespace tallyscope
