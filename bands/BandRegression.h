// SPDX-License-Identifier: MIT
#pragma once

#include "bands/Stats_DSPData.h"
#include "statistics/Stats_Bivariate.h"

namespace tallyscope {

struct BandRegression {
  double slope = 0;
  double intercept = 0;
};

// The regression of a band on its first co-ordinate, which along a line is the sample's index. Its slope comes from the
// covariance, whose divisor counts the nulls.
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
