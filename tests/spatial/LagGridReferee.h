// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "spatial/Stats_Spatial.h"

namespace tallyscope::testing_spatial {

// A lag grid by the plain formula: pair by pair, with single reads, a search that is taken apart as it is walked, and
// sums in long double.
struct RefereeCell {
  long long count = 0;
  long double covariance = 0;
  long double moment = 0;
};
using RefereeGrid = std::vector<std::vector<std::vector<RefereeCell>>>;

RefereeGrid MakeRefereeGrid(CStats_Spatial& settings, CStats_Data& data, int field);

// Empty if the two agree: counts exactly, moments within 1e-12, covariances within 1e-12 of the larger of themselves
// and the variance.
std::string Compare(const LagGrid& grid, const RefereeGrid& referee, double variance);

}  // namespace tallyscope::testing_spatial
