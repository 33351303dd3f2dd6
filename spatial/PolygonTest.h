// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "platform/core/Box.h"

namespace tallyscope {

// Where a point lies with respect to a closed polygon in the plane, by counting the edges to its right. Edges are
// looked up by y, so a test costs those at the point's height, not all.
class PolygonTest {
 public:
  enum Place { kOutside, kInside, kOnEdge };

  explicit PolygonTest(std::vector<Point3> vertices);

  Place Classify(double x, double y) const;
  bool HasVertexIn(const Box& box) const;           // faces included; x and y only
  const Box& GetBounds() const { return bounds_; }  // of the vertices, in all three axes; invalid without any

 private:
  struct Edge {
    double ax, ay, bx, by;
  };
  std::size_t GetSlab(double y) const;

  std::vector<Point3> vertices_;  // by y
  Box bounds_;
  double slabsPerY_ = 0;
  std::vector<std::vector<Edge>> slabs_;
};

}  // namespace tallyscope
