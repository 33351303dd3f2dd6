// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "statistics/Stats_Rgn.h"

namespace tallyscope {

// The stations inside a closed line of vertices, in the first two of the region's dims. Those on an edge belong to a
// polygon that includes, and not to one that excludes.
class CStats_RgnPoly : public CStats_Rgn {
 public:
  std::vector<Point3> points;

  int GetType() override { return kPoly; }
  int GetPointCount() override { return static_cast<int>(points.size()); }
  const Point3& GetPoint(int index) override { return points[static_cast<std::size_t>(index)]; }
  std::unique_ptr<CStats_Rgn> Clone() const override { return std::make_unique<CStats_RgnPoly>(*this); }
};

}  // namespace tallyscope
