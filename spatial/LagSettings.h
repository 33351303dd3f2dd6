// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "platform/core/Box.h"

namespace tallyscope {

// What a lag grid is to be: its cells, how far they reach, and which stations are paired.
struct LagSettings {
  enum LagFlag : unsigned {
    kLagX = 0x01,  // active axes
    kLagY = 0x02,
    kLagZ = 0x04,
    kPolar = 0x08,     // lag by azimuth by dip; clear: Cartesian, x by y by z
    kSample = 0x10,    // apply sampleLimit
    kUseSearch = 0x20  // walk the pairs leaf by leaf through the point search; clear: all by all
  };

  unsigned flags = 0;
  Point3 range{-1, -1, -1};              // polar: the first is the farthest lag; Cartesian: half widths of the grid
  std::array<int, 3> count{90, 90, 90};  // polar: lags, azimuths, dips; Cartesian: cells along x, y, z
  int sampleLimit = 20000;               // stations, of which every n-th is taken; negative: all
  std::array<int, 3> dims{-1, -2, -3};   // columns of the co-ordinates
  int dimCount = 2;                      // of these; fewer than 2 have no search

  bool IsPolar() const { return (flags & kPolar) != 0; }
  bool IsActive(int axis) const { return (flags >> axis & 1) != 0; }
};

}  // namespace tallyscope
