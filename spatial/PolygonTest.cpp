// SPDX-License-Identifier: MIT
#include "spatial/PolygonTest.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>

namespace tallyscope {

namespace {

constexpr double kNear = 1e-10;
constexpr std::size_t kFewPoints = 96;  // looked at edge by edge
constexpr std::size_t kFewEdges = 16;   // so few aren't worth boxes of their own

using Two [[gnu::vector_size(16), gnu::may_alias, gnu::aligned(8)]] = double;
using Mask [[gnu::vector_size(16)]] = std::int64_t;

Mask IsNear(Two a, Two b) {
  constexpr std::int64_t kNoSign = std::numeric_limits<std::int64_t>::max();
  return __builtin_bit_cast(Two, __builtin_bit_cast(Mask, a - b) & kNoSign) <= kNear;
}

bool IsLower(const Point3& a, const Point3& b) {
  return a[1] < b[1];
}

Box GetBox(const double* x, const double* y, const int* points, std::size_t count) {
  constexpr double kFar = std::numeric_limits<double>::infinity();
  Box box{{kFar, kFar, 0}, {-kFar, -kFar, 0}, 1};
  for (std::size_t i = 0; i < count; ++i) {
    box.min = {std::min(box.min[0], x[points[i]]), std::min(box.min[1], y[points[i]]), 0};
    box.max = {std::max(box.max[0], x[points[i]]), std::max(box.max[1], y[points[i]]), 0};
  }
  return box;
}

}  // namespace

PolygonTest::PolygonTest(std::vector<Point3> vertices) {
  bounds_.valid = vertices.empty() ? 0 : 1;
  if (vertices.empty()) return;
  bounds_.min = bounds_.max = vertices[0];
  for (const Point3& vertex : vertices) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      bounds_.min[axis] = std::min(bounds_.min[axis], vertex[axis]);
      bounds_.max[axis] = std::max(bounds_.max[axis], vertex[axis]);
    }
  }
  edges_.reserve(vertices.size());
  for (std::size_t i = 0; i < vertices.size(); ++i) {
    edges_.push_back(MakeEdge(vertices[i], vertices[(i + 1) % vertices.size()]));
  }
  order_.resize(edges_.size());
  std::iota(order_.begin(), order_.end(), 0);
  vertices_ = std::move(vertices);
  // NaN has no place in the order, and is in no box.
  vertices_.erase(std::remove_if(vertices_.begin(), vertices_.end(), [](const Point3& p) { return std::isnan(p[1]); }),
                  vertices_.end());
  std::sort(vertices_.begin(), vertices_.end(), IsLower);
}

// Each step of GetCrossing, rounding included, never falls as y rises, or never rises; so the crossings at the ends of
// a range of y bound those between.
PolygonTest::Edge PolygonTest::MakeEdge(const Point3& a, const Point3& b) {
  Edge edge{};
  edge.ax = a[0];
  edge.ay = a[1];
  edge.dx = b[0] - a[0];
  edge.dy = a[1] == b[1] ? 0 : b[1] - a[1];
  edge.lowY = std::min(a[1], b[1]);
  edge.highY = std::max(a[1], b[1]);
  const double end = edge.dy == 0 ? b[0] : edge.dx + edge.ax;
  edge.lowX = std::min(edge.ax, end);
  edge.highX = std::max(edge.ax, end);
  if (edge.dy != 0 &&
      !(std::isfinite(edge.dx) && std::isfinite(edge.dy))) {  // crossings that aren't numbers lie anywhere
    edge.highX = std::numeric_limits<double>::infinity();
    edge.lowX = -edge.highX;
  }
  return edge;
}

// What an edge is to all points of the box: out of their way, to the right of each, or neither.
PolygonTest::Side PolygonTest::GetSide(const Edge& edge, const Box& box) {
  if (box.min[0] > edge.highX) return kNotMet;
  if (edge.dy == 0) {
    const bool isMet = box.max[0] >= edge.lowX && !(box.min[1] - edge.ay > kNear) && !(edge.ay - box.max[1] > kNear);
    return isMet ? kOpen : kNotMet;
  }
  if (!(box.max[1] > edge.lowY && box.min[1] <= edge.highY)) return kNotMet;
  const bool isAcross = box.min[1] > edge.lowY && box.max[1] <= edge.highY;
  if (isAcross && edge.lowX - box.max[0] > kNear) return kToTheRight;
  if (edge.highX - edge.lowX == std::numeric_limits<double>::infinity()) return kOpen;
  const double first = GetCrossing(edge, std::max(box.min[1], edge.lowY));
  const double last = GetCrossing(edge, std::min(box.max[1], edge.highY));
  if (box.min[0] > first && box.min[0] > last) return kNotMet;
  return isAcross && std::min(first, last) - box.max[0] > kNear ? kToTheRight : kOpen;
}

PolygonTest::Scope PolygonTest::Narrow(const Scope& outer, const Box& box) {
  Scope inner{0, outer.inside};
  for (std::size_t i = 0; i < outer.edges; ++i) {
    const Side side = GetSide(edges_[static_cast<std::size_t>(order_[i])], box);
    if (side == kToTheRight) inner.inside = !inner.inside;
    if (side == kOpen) std::swap(order_[i], order_[inner.edges++]);
  }
  return inner;
}

void PolygonTest::Classify(const Scope& scope, const double* x, const double* y, std::size_t count, Place* places) {
  if (scope.edges == 0) {
    std::fill(places, places + count, scope.inside ? kInside : kOutside);
    return;
  }
  if (count > kFewPoints && scope.edges > kFewEdges) {
    std::vector<int> points(count);
    std::iota(points.begin(), points.end(), 0);
    return ClassifySome(scope, x, y, points.data(), count, places);
  }
  for (std::size_t first = 0; first < count; first += kFewPoints) {
    ClassifyFew(scope, x + first, y + first, std::min(kFewPoints, count - first), places + first);
  }
}

// Halves them until they are few, or lie close enough together to meet few edges.
void PolygonTest::ClassifySome(const Scope& outer, const double* x, const double* y, int* points, std::size_t count,
                               Place* places) {
  const Box box = GetBox(x, y, points, count);
  const Scope scope = Narrow(outer, box);
  if (count > kFewPoints && scope.edges > kFewEdges) {
    const double* by = box.max[0] - box.min[0] < box.max[1] - box.min[1] ? y : x;
    const std::size_t half = count / 2;
    std::nth_element(points, points + half, points + count, [by](int a, int b) { return by[a] < by[b]; });
    ClassifySome(scope, x, y, points, half, places);
    return ClassifySome(scope, x, y, points + half, count - half, places);
  }
  double fewX[kFewPoints];
  double fewY[kFewPoints];
  Place found[kFewPoints];
  for (std::size_t first = 0; first < count; first += kFewPoints) {
    const std::size_t few = std::min(kFewPoints, count - first);
    for (std::size_t i = 0; i < few; ++i) fewX[i] = x[points[first + i]];
    for (std::size_t i = 0; i < few; ++i) fewY[i] = y[points[first + i]];
    ClassifyFew(scope, fewX, fewY, few, found);
    for (std::size_t i = 0; i < few; ++i) places[points[first + i]] = found[i];
  }
}

// Two points at a time, without a branch.
void PolygonTest::ClassifyFew(const Scope& scope, const double* x, const double* y, std::size_t count,
                              Place* places) const {
  alignas(16) double xs[kFewPoints + 1] = {};
  alignas(16) double ys[kFewPoints + 1] = {};
  std::copy(x, x + count, xs);
  std::copy(y, y + count, ys);
  Mask inside[kFewPoints / 2];
  Mask onEdge[kFewPoints / 2];
  const std::size_t pairs = (count + 1) / 2;
  const std::int64_t start = scope.inside ? -1 : 0;
  std::fill(inside, inside + pairs, Mask{start, start});
  std::fill(onEdge, onEdge + pairs, Mask{});
  const auto pair = [](const double* values, std::size_t k) { return *reinterpret_cast<const Two*>(values + 2 * k); };
  for (std::size_t i = 0; i < scope.edges; ++i) {
    const Edge edge = edges_[static_cast<std::size_t>(order_[i])];
    for (std::size_t k = 0; k < pairs && edge.dy == 0; ++k) {
      const Two px = pair(xs, k);
      onEdge[k] |= IsNear(pair(ys, k), Two{edge.ay, edge.ay}) & (px >= edge.lowX) & (px <= edge.highX);
    }
    for (std::size_t k = 0; k < pairs && edge.dy != 0; ++k) {
      const Two px = pair(xs, k);
      const Two py = pair(ys, k);
      const Two cross = (py - edge.ay) / edge.dy * edge.dx + edge.ax;
      const Mask counts = (py > edge.lowY) & (py <= edge.highY) & ~(px > cross);
      const Mask near = IsNear(px, cross);
      onEdge[k] |= counts & near;
      inside[k] ^= counts & ~near;
    }
  }
  for (std::size_t p = 0; p < count; ++p) {
    const bool isIn = inside[p / 2][p % 2] != 0;
    places[p] = onEdge[p / 2][p % 2] != 0 ? kOnEdge : isIn ? kInside : kOutside;
  }
}

bool PolygonTest::HasVertexIn(const Box& box) const {
  for (auto vertex = std::lower_bound(vertices_.begin(), vertices_.end(), box.min, IsLower);
       vertex != vertices_.end() && (*vertex)[1] <= box.max[1]; ++vertex) {
    if ((*vertex)[0] >= box.min[0] && (*vertex)[0] <= box.max[0]) return true;
  }
  return false;
}

}  // namespace tallyscope
