// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/core/Geometry.h"
#include "platform/ui/DC.h"

namespace tallyscope {

// Which of a run of values stay when those are dropped that straight runs pass within `halfWidth` of: the first, the
// last, and where a run has to turn.
std::vector<bool> MarkSleeve(const std::vector<double>& values, double halfWidth);

// The corners of a polygon drawn by hand, without those that hardly bend it: x and y are thinned apart, each within a
// fortieth of its range, and what either keeps stays.
std::vector<CPoint> ThinPolygon(const std::vector<CPoint>& points);

// The points of a curve whose x rise, without those that straight runs pass within `halfWidth` above or below. The last
// run may miss twice that, as it has to end on the last point.
std::vector<DrawPoint> ThinCurve(const std::vector<DrawPoint>& points, double halfWidth);

}  // namespace tallyscope
