// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/core/Box.h"
#include "spatial/PointIndex.h"

namespace tallyscope {

// A query of an index of stations, and a cursor over those that pass: any number of queries may run over one index, on
// any threads.
//   StationQuery query(*index);   // which must outlive it
//   query.SearchSphere({x, y, 0}, 250);
//   for (int station; query.GetNext(station, 1);) ...
// Without an index nothing is found.
class StationQuery {
 public:
  using Node = PointIndex::Node;
  using Leaves = std::vector<const Node*>;

  StationQuery() = default;
  explicit StationQuery(const PointIndex& index) : index_(&index) {}
  bool IsOf(const PointIndex* index) const { return index_ == index; }

  void SearchAll();
  void SearchBox(const Box& box);  // faces included
  // A rectangle with a corner at `origin` that runs size x along the angle, in degrees from +x towards +y, and size y
  // to the left of it. In three dimensions z runs from that of the origin over size z.
  void SearchRotatedRectangle(const Point3& origin, const Point3& size, double angleDegrees);
  void SearchBetweenBoxes(const Box& outer, const Box& inner);  // the faces of both included
  void SearchSphere(const Point3& centre, double radius);
  // A ring in all dimensions; in two also the angles from start to end, in radians from +x towards +y, end at or above
  // start and start at or above 0. In three dimensions the whole ring.
  void SearchSector(const Point3& centre, double outerRadius, double innerRadius, double startAngle, double endAngle);
  // All stations of the leaves that the ray, or any of the rays, pierces. Three dimensions only.
  void SearchRay(const Point3& origin, const Point3& direction);
  void SearchRays(const std::vector<Point3>& origins, const std::vector<Point3>& directions);

  const Leaves& GetLeaves() const { return leaves_; }  // of the last query
  // The next station that passes; after a station that fails the walk goes on `step` positions further (less than 1
  // counts as 1). False at the end, with `index` -1; a further call starts the same query again.
  bool GetNext(int& index, int step) {
    if (hitCursor_ >= hitCount_ || step > 1) return FindNext(index, step);
    const int position = hits_[static_cast<std::size_t>(hitCursor_++)];
    pointCursor_ = position + 1;
    index = openPoints_[position];
    return true;
  }

 private:
  enum class Shape { kNone, kAll, kBox, kBetweenBoxes, kSphere, kSector, kRotatedRectangle };

  const Node* Start(Shape shape);
  bool FindNext(int& index, int step);
  void CloseLeaf();
  void PrefetchLeaf(std::size_t leaf) const;
  void OpenLeaf(int leaf);
  template <int kAxes>
  void FindHits(const Node& leaf);

  const PointIndex* index_ = nullptr;
  Leaves leaves_;
  Shape shape_ = Shape::kNone;
  int leafCursor_ = -1;
  int pointCursor_ = -1;
  Box box_;  // query box, outer box, or bounds of a rotated rectangle
  Box innerBox_;
  Point3 point_{};       // centre or origin
  Point3 size_{};        // of a rectangle
  double radius_ = 1.0;  // of a sphere; outer radius of a sector
  double innerRadius_ = 1.0;
  double angleA_ = 0;  // start and end of a sector; cosine and sine of a rectangle's angle
  double angleB_ = 0;

  // The leaf at hand, -1 for none: the positions that pass, in order, and how many of them have been given out.
  int openLeaf_ = -1;
  std::vector<int> hits_;
  int hitCount_ = 0;
  int hitCursor_ = 0;
  const int* openPoints_ = nullptr;
};

}  // namespace tallyscope
