// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

namespace tallyscope {

// The pairs of stations whose separation falls into one cell of a lag grid. Each pair enters two cells, one for each
// sense of its direction. Zeros without a pair.
struct LagCell {
  int count = 0;           // saturates
  double covariance = 0;   // mean of (a - mean)(b - mean), with the mean of the whole field
  double moment = 0;       // moment of inertia, or semivariance: half the mean of (a - b)^2
  std::int64_t pairs = 0;  // the count in full
};

// [level][row][column]: of a polar grid the dip, azimuth and lag, of a Cartesian one z, y and x.
using LagGrid = std::vector<std::vector<std::vector<LagCell>>>;

// What an int holds of a number of pairs.
inline int Saturate(std::int64_t pairs) {
  return static_cast<int>(std::min<std::int64_t>(pairs, std::numeric_limits<int>::max()));
}

}  // namespace tallyscope
