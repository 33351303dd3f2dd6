// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "platform/core/Box.h"
#include "spatial/PointIndex.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

// The tests of a query on the points of a leaf.
namespace tallyscope::leaf_tests {

inline constexpr double kPi = std::numbers::pi;
inline constexpr double kFarthestStart = 1e6;  // radians
inline constexpr double kFlat = 1e-6;          // a smaller dx counts as straight up or down

// Angle of a direction over the full circle, 0 to 2 pi; 0 for none.
inline double FullCircleAngle(double dx, double dy) {
  if (std::fabs(dx) > kFlat) {
    const double angle = std::atan(dy / dx);
    if (dx < 0) return angle + kPi;
    return dy < 0 ? angle + 2 * kPi : angle;
  }
  if (std::fabs(dy) < kFlat) return 0;
  return dy < 0 ? 3 * kPi / 2 : kPi / 2;
}

// The co-ordinates of a leaf's points, and the tests on the point at position p.
template <int kAxes>
class Columns {
 public:
  Columns(const PointIndex& index, const PointIndex::Node& leaf) {
    for (int axis = 0; axis < kAxes; ++axis) columns_[axis] = index.GetLeafCoordinates(leaf, axis);
  }
  // A part of a leaf.
  explicit Columns(const std::array<const double*, kAxes>& parts) { std::copy(parts.begin(), parts.end(), columns_); }

  double Get(int axis, int p) const { return axis < kAxes ? columns_[axis][p] : 0; }

  // Writes the positions inside the box, faces included, to `hits`; returns how many. Every compiler for x86-64 has the
  // two at a time; elsewhere all go the way of the odd one at the end.
  int ListInBox(int count, int* hits, const Box& box) const {
    int found = 0;
    int p = 0;
#ifdef __SSE2__
    __m128d low[kAxes];
    __m128d high[kAxes];
    for (int axis = 0; axis < kAxes; ++axis) {
      low[axis] = _mm_set1_pd(box.min[static_cast<std::size_t>(axis)]);
      high[axis] = _mm_set1_pd(box.max[static_cast<std::size_t>(axis)]);
    }
    for (; p + 2 <= count; p += 2) {
      __m128d inside = _mm_cmpeq_pd(low[0], low[0]);
      for (int axis = 0; axis < kAxes; ++axis) {
        const __m128d values = _mm_loadu_pd(columns_[axis] + p);
        inside = _mm_and_pd(inside, _mm_and_pd(_mm_cmple_pd(low[axis], values), _mm_cmple_pd(values, high[axis])));
      }
      const int mask = _mm_movemask_pd(inside);
      hits[found] = p;
      found += mask & 1;
      hits[found] = p + 1;
      found += mask >> 1;
    }
#endif
    for (; p < count; ++p) {
      hits[found] = p;
      found += static_cast<int>(IsInBox(p, box));
    }
    return found;
  }
  bool IsInBox(int p, const Box& box) const {
    bool inside = true;
    for (std::size_t axis = 0; axis < kAxes; ++axis) {
      inside = inside && box.min[axis] <= columns_[axis][p] && columns_[axis][p] <= box.max[axis];
    }
    return inside;
  }
  // Off the faces.
  bool IsWithinBox(int p, const Box& box) const {
    bool inside = true;
    for (std::size_t axis = 0; axis < kAxes; ++axis) {
      inside = inside && box.min[axis] < columns_[axis][p] && columns_[axis][p] < box.max[axis];
    }
    return inside;
  }
  double SquaredDistance(int p, const Point3& centre) const {
    double sum = 0;
    for (std::size_t axis = 0; axis < kAxes; ++axis) {
      const double difference = columns_[axis][p] - centre[axis];
      sum += difference * difference;
    }
    return sum;
  }

 private:
  const double* columns_[3];
};

struct Sector {
  Point3 centre;
  double outer;
  double inner;
  double start;
  double end;

  template <int kAxes>
  bool Holds(const Columns<kAxes>& columns, int p) const {
    const double distance = columns.SquaredDistance(p, centre);
    if (!(distance <= outer * outer && distance >= inner * inner)) return false;
    return kAxes != 2 || HoldsAngle(FullCircleAngle(columns.Get(0, p) - centre[0], columns.Get(1, p) - centre[1]));
  }
  // Whole turns are added one by one, as rounding has it, unless the sector starts absurdly far off.
  bool HoldsAngle(double angle) const {
    if (start > kFarthestStart) return false;
    while (angle < start) angle += 2 * kPi;
    return !(angle > end);
  }
};

struct Rectangle {
  Point3 origin;
  Point3 size;
  Box bounds;
  double cosine;
  double sine;

  template <int kAxes>
  bool Holds(const Columns<kAxes>& columns, int p) const {
    if (kAxes > 2 && !(bounds.min[2] <= columns.Get(2, p) && columns.Get(2, p) <= bounds.max[2])) return false;
    const double dx = columns.Get(0, p) - origin[0];
    const double dy = kAxes > 1 ? columns.Get(1, p) - origin[1] : 0;
    const double along = cosine * dx + sine * dy;
    const double across = cosine * dy - sine * dx;
    return along >= 0 && along <= size[0] && (kAxes < 2 || (across >= 0 && across <= size[1]));
  }
};

}  // namespace tallyscope::leaf_tests
