// SPDX-License-Identifier: MIT
#include "bands/DSPHistogram.h"

#include <cmath>
#include <cstddef>
#include <map>
#include <utility>
#include <vector>

#include "bands/BandWalk.h"
#include "bands/Stats_DSPData.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

constexpr int kSortedMade = 4;
constexpr int kSortedOrBinned = 16;
constexpr int kBinned = 32;

CStats_Histogram MakeHistogram(CDSPData& data, int band, bool sorted) {
  CStats_DSPData table(&data);
  CStats_Univariate figures;
  figures.Add(&table, band);
  figures.Calculate(sorted ? kSortedOrBinned : kBinned, nullptr);
  return sorted && (figures.GetFlags(0) & kSortedMade) != 0 ? figures.sortedHistogram : figures.binnedHistogram;
}

// What GetCumulative of a histogram of equal widths answers, from a table of what it works out at each call.
class BinnedCurve {
 public:
  BinnedCurve() = default;
  explicit BinnedCurve(const std::vector<CHistogramBin>& bins) {
    if (bins.empty()) return;
    const double count = static_cast<double>(bins.size());
    origin_ = bins.front().binMin;
    width_ = (bins.back().binMax - origin_) / count;
    last_ = count - 1;
    double before = 0;
    for (const CHistogramBin& bin : bins) {
      const double width = bin.binMax - bin.binMin;
      const bool flat = std::fabs(width) <= 1e-10 * std::fabs(width);
      steps_.push_back({bin.binMin, flat ? 1.0 : width, before, bin.cumulative - before});
      before = bin.cumulative;
    }
  }

  bool IsEmpty() const { return steps_.empty(); }
  double At(double value) const {
    double index = (value - origin_) / width_;
    index = index > 0 ? index : 0;  // NaN too
    const Step& step = steps_[static_cast<std::size_t>(static_cast<int>(index < last_ ? index : last_))];
    const double fraction = step.before + step.rise * ((value - step.start) / step.width);
    return fraction > 0 ? (fraction < 1 ? fraction : 1) : 0;
  }

 private:
  struct Step {
    double start;
    double width;
    double before;
    double rise;
  };

  double origin_ = 0;
  double width_ = 1;
  double last_ = 0;
  std::vector<Step> steps_;
};

class Equaliser {
 public:
  explicit Equaliser(CStats_Histogram histogram) : histogram_(std::move(histogram)) {
    if (histogram_.GetBinMode() == 1) curve_ = BinnedCurve(histogram_.bins);
  }

  void Map(const DSPLine& line) {
    if (curve_.IsEmpty()) {
      MapLine(line, [&](double x) { return histogram_.GetCumulative(x); });
    } else {
      MapLine(line, [&](double x) { return curve_.At(x); });
    }
  }

 private:
  CStats_Histogram histogram_;
  BinnedCurve curve_;
};

}  // namespace

bool CDSPHistogram::ProcessAny(CDSPProgress* progress) {
  std::map<std::pair<int, int>, Equaliser> equalisers;  // by input and band
  for (const DSPOverlap& overlap : GetOverlaps(*this)) {
    for (const DSPBandPair& pair : overlap.bands) {
      equalisers.emplace(std::pair{overlap.index, pair.band}, MakeHistogram(*overlap.input->data, pair.band, sorted));
    }
  }
  return WalkLines(*this, 0, progress, [&](const DSPLine& line) {
    equalisers.at({line.overlap->index, line.pair->band}).Map(line);
  });
}

}  // namespace tallyscope
