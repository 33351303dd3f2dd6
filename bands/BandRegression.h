// SPDX-License-Identifier: MIT
#pragma once

#include "bands/Stats_DSPData.h"
#include "statistics/Stats_Bivariate.h"

namespace tallyscope {

// value = slope * index + intercept, in the band's units.
struct BandRegression {
  double slope = 0;
  double intercept = 0;
};

// The regression of a band on its first co-ordinate, which along a line is the sample's index. Its slope comes from the
// covariance, whose divisor counts the nulls. Of a band with fewer than two samples that are no nulls both are what
// CStats_Bivariate gives for such a pair.
// REQUIRES: a band of the set, with samples.
inline BandRegression RegressOnIndex(CDSPData& data, int band) {
  constexpr int kRegressions = 2;
  CStats_DSPData table(&data);
  CStats_Bivariate pair;
  pair.Add(&table, -1);
  pair.Add(&table, band);
  pair.Calculate(kRegressions, nullptr);
  return {pair.yOnX[0], pair.yOnX[1]};
}

}  // namespace tallyscope
