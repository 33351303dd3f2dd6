// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "platform/core/Box.h"

namespace tallyscope {

// Where points lie with respect to a closed polygon in the plane, by counting the edges to their right. Points are
// asked for by the boxful: most edges are the same to all points of a small box, and only the others are looked at
// point by point.
//   PolygonTest polygon(vertices);
//   const auto scope = polygon.Narrow(polygon.GetWhole(), box);
//   polygon.Classify(scope, x, y, count, places);   // points of the box
// Memory is linear in the vertices.
class PolygonTest {
 public:
  enum Place : unsigned char { kOutside, kInside, kOnEdge };

  // What holds for all points of a box: so many edges are left to be looked at; without them each point is inside, or
  // each is outside.
  struct Scope {
    std::size_t edges = 0;
    bool inside = false;
  };

  explicit PolygonTest(std::vector<Point3> vertices);

  Scope GetWhole() const { return {edges_.size(), false}; }
  // For a box within that of `outer`, faces included; x and y only. Uses up what was narrowed from `outer` before, but
  // not `outer` itself.
  Scope Narrow(const Scope& outer, const Box& box);
  // The place of each of `count` points of the scope's box, whose co-ordinates are finite.
  void Classify(const Scope& scope, const double* x, const double* y, std::size_t count, Place* places);

  bool HasVertexIn(const Box& box) const;           // faces included; x and y only
  const Box& GetBounds() const { return bounds_; }  // of the vertices, in all three axes; invalid without any

 private:
  // From (ax, ay), as (dx, dy) further. A level one has dy 0.
  struct Edge {
    double ax, ay, dx, dy;
    double lowX, highX;  // of all crossings, as they are computed
    double lowY, highY;
  };
  enum Side { kNotMet, kToTheRight, kOpen };

  static Edge MakeEdge(const Point3& a, const Point3& b);
  static double GetCrossing(const Edge& edge, double y) { return (y - edge.ay) / edge.dy * edge.dx + edge.ax; }
  static Side GetSide(const Edge& edge, const Box& box);
  void ClassifyFew(const Scope& scope, const double* x, const double* y, std::size_t count, Place* places) const;
  void ClassifySome(const Scope& outer, const double* x, const double* y, int* points, std::size_t count,
                    Place* places);

  std::vector<Point3> vertices_;  // by y
  Box bounds_;
  std::vector<Edge> edges_;
  std::vector<int> order_;  // of the edges: those of a scope stand in front
};

}  // namespace tallyscope
