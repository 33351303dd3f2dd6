// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "bands/GapPredictor.h"
#include "bands/LocalSlopes.h"
#include "statistics/bvector.h"

namespace tallyscope {

struct LineFillSettings {
  bool pinEnds = true;    // a null at the first or last sample is an anchor
  double endValue = 0;    // of the anchors, in units of the amplitude about the trend; of a short line, as it stands
  bool normalise = true;  // by the root mean square about the trend
  bool predict = true;    // false: the gaps take the curve alone
};

// A straight line over the band's linear sample index, which sample t of the line has at first + t * stride.
struct LineTrend {
  double slope = 0;
  double intercept = 0;
  int first = 0;
  int stride = 1;

  double At(int t) const { return slope * (first + static_cast<double>(t) * stride) + intercept; }
};

// Fills the nulls of one line of samples: less trend and amplitude, gaps are predicted from both sides; a null behind a
// lone sample, or alone in front of an anchored end, takes a smooth curve through the samples.
//   LineFiller filler(settings);
//   filler.Fill(samples, nulls, {slope, intercept});
// Keeps its buffers, a float and two bits a sample, for the next line.
class LineFiller {
 public:
  explicit LineFiller(const LineFillSettings& settings) : settings_(settings) {}

  // In place, for floats or doubles; `nulls` has a bit for each of the samples. Those that are no null are left alone.
  template <class Sample>
  void Fill(std::span<Sample> samples, const bvector& nulls, const LineTrend& trend);

 private:
  template <class Sample>
  class Line;

  LineFillSettings settings_;
  GapPredictor predictor_;
  std::vector<float> values_;  // less the trend, in units of the amplitude
  bvector empty_;              // nulls without an anchor
  bvector gaps_;               // those of them that are predicted
};

}  // namespace tallyscope
