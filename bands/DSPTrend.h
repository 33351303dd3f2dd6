// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "bands/DSPOperation.h"

namespace tallyscope {

struct DSPLine;

// Subtracts a trend that is fitted to each band's samples. Running the same object again puts it back: `restore` flips
// at the end of each run. Nulls have no part in the fit and stay null. A cube has no linear trend and passes through.
class CDSPTrend : public CDSPOperation {
 public:
  static constexpr int kConstant = 0;
  static constexpr int kLinear = 1;
  enum Statistic { kMean = 0, kMedian = 1, kMode = 2, kMinimum = 3, kMaximum = 4 };

  CDSPTrend();

  int restore = 0;  // other than 0: add the trend that an earlier run subtracted
  int method = kConstant;
  int statistic = kMean;  // the constant; median and mode are the binned histogram's
  // By the input's band. The constant; slope and intercept over the linear sample index; for a plane the surface fit's
  // a, b, c, then start and range of the two co-ordinates and of the value.
  std::vector<std::vector<double>> coefficients;

  bool ProcessAny(CDSPProgress* progress) override;

 private:
  void FitBands();
  std::vector<double> FitBand(CDSPData& data, int band, int spanned) const;
  void ApplyTo(const DSPLine& line) const;
};

}  // namespace tallyscope
