// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

namespace tallyscope {

// A curve that was read from a lag grid: four vectors of one length, an entry for each lag with a pair.
struct VariogramCurve {
  std::vector<std::int64_t> pairCount;  // of the grid, where each pair counts twice; shares of a cell cut to an integer
  std::vector<double> lag;              // the middle of the lag, in the units of the co-ordinates
  std::vector<double> covariance;
  std::vector<double> momentOfInertia;  // semivariance
};

}  // namespace tallyscope
