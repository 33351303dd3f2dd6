// SPDX-License-Identifier: MIT
#include "spatial/PolygonTest.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tallyscope {

namespace {

constexpr double kNear = 1e-10;
constexpr std::size_t kMostSlabs = 4096;

bool IsLower(const Point3& a, const Point3& b) {
  return a[1] < b[1];
}

}  // namespace

PolygonTest::PolygonTest(std::vector<Point3> vertices) {
  bounds_.valid = vertices.empty() ? 0 : 1;
  if (vertices.empty()) return;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    bounds_.min[axis] = bounds_.max[axis] = vertices[0][axis];
    for (const Point3& vertex : vertices) {
      bounds_.min[axis] = std::min(bounds_.min[axis], vertex[axis]);
      bounds_.max[axis] = std::max(bounds_.max[axis], vertex[axis]);
    }
  }
  slabs_.resize(std::min(4 * vertices.size(), kMostSlabs));
  const double height = bounds_.max[1] - bounds_.min[1];
  if (height > 0) slabsPerY_ = static_cast<double>(slabs_.size()) / height;
  for (std::size_t i = 0; i < vertices.size(); ++i) {
    const Point3& a = vertices[i];
    const Point3& b = vertices[(i + 1) % vertices.size()];
    // GetSlab never falls as y rises, so every y at which the edge can matter finds it.
    const std::size_t last = GetSlab(std::max(a[1], b[1]) + 2 * kNear);
    for (std::size_t slab = GetSlab(std::min(a[1], b[1]) - 2 * kNear); slab <= last; ++slab) {
      slabs_[slab].push_back({a[0], a[1], b[0], b[1]});
    }
  }
  vertices_ = std::move(vertices);
  // NaN has no place in the order, and is in no box.
  vertices_.erase(std::remove_if(vertices_.begin(), vertices_.end(), [](const Point3& p) { return std::isnan(p[1]); }),
                  vertices_.end());
  std::sort(vertices_.begin(), vertices_.end(), IsLower);
}

std::size_t PolygonTest::GetSlab(double y) const {
  const double slab = (y - bounds_.min[1]) * slabsPerY_;
  if (!(slab > 0)) return 0;
  const auto last = static_cast<double>(slabs_.size() - 1);
  return static_cast<std::size_t>(std::min(slab, last));
}

PolygonTest::Place PolygonTest::Classify(double x, double y) const {
  if (slabs_.empty()) return kOutside;
  bool inside = false;
  for (const Edge& edge : slabs_[GetSlab(y)]) {
    if (edge.ay == edge.by) {
      if (std::fabs(y - edge.ay) <= kNear && x >= std::min(edge.ax, edge.bx) && x <= std::max(edge.ax, edge.bx)) {
        return kOnEdge;
      }
      continue;
    }
    if (!(y > std::min(edge.ay, edge.by) && y <= std::max(edge.ay, edge.by))) continue;
    const double cross = (y - edge.ay) / (edge.by - edge.ay) * (edge.bx - edge.ax) + edge.ax;
    if (x > cross) continue;
    if (std::fabs(x - cross) <= kNear) return kOnEdge;
    inside = !inside;
  }
  return inside ? kInside : kOutside;
}

bool PolygonTest::HasVertexIn(const Box& box) const {
  for (auto vertex = std::lower_bound(vertices_.begin(), vertices_.end(), box.min, IsLower);
       vertex != vertices_.end() && (*vertex)[1] <= box.max[1]; ++vertex) {
    if ((*vertex)[0] >= box.min[0] && (*vertex)[0] <= box.max[0]) return true;
  }
  return false;
}

}  // namespace tallyscope
