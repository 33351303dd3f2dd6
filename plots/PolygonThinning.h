// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/core/Geometry.h"

namespace tallyscope {

// Which of a run of values stay when those are dropped that straight runs pass within `halfWidth` of: the first, the
// last, and where a run has to turn.
std::vector<bool> MarkSleeve(const std::vector<double>& values, double halfWidth);

// The corners of a polygon drawn by hand, without those that hardly bend it: x and y are thinned apart, each within a
// fortieth of its range, and what either keeps stays.
std::vector<CPoint> ThinPolygon(const std::vector<CPoint>& points);

}  // namespace tallyscope
