// SPDX-License-Identifier: MIT
#include "host/VariogramStations.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/core/Box.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

// Visits the places of the stations with a value and finite co-ordinates; missing axes are 0.
template <class Visit>
void ForEachPlace(CStats_Data& table, int dim, const Visit& visit) {
  constexpr int kBlock = 512;
  double values[4][kBlock] = {};
  unsigned char valid[4][kBlock];
  const int axes = table.GetSpatialSize();
  const int total = table.GetSize();
  for (int first = 0; first < total; first += kBlock) {
    const int count = std::min(kBlock, total - first);
    for (int axis = 0; axis < axes; ++axis) table.ReadValues(-1 - axis, first, count, values[axis], valid[axis]);
    table.ReadValues(dim, first, count, values[3], valid[3]);
    for (int i = 0; i < count; ++i) {
      bool isPlaced = valid[3][i] != 0;
      for (int axis = 0; axis < axes; ++axis)
        isPlaced = isPlaced && valid[axis][i] != 0 && std::isfinite(values[axis][i]);
      if (isPlaced) visit(Point3{values[0][i], values[1][i], values[2][i]});
    }
  }
}

Point3 Subtract(const Point3& a, const Point3& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

double GetLength(const Point3& v) {
  return std::hypot(v[0], v[1], v[2]);
}

// Seen from a station: whether all lie in the direction of the farthest or opposite to it, each to within a billionth
// of its distance or the rounding of its co-ordinates.
bool LieOnLineFrom(CStats_Data& table, int dim, const Point3& start, Point3 along) {
  const double length = GetLength(along);
  for (double& x : along) x /= length;
  bool isLine = true;
  ForEachPlace(table, dim, [&](const Point3& place) {
    const Point3 v = Subtract(place, start);
    const Point3 across{v[1] * along[2] - v[2] * along[1], v[2] * along[0] - v[0] * along[2],
                        v[0] * along[1] - v[1] * along[0]};
    const double rounding = 8 * std::numeric_limits<double>::epsilon() * (GetLength(place) + GetLength(start));
    isLine = isLine && GetLength(across) <= 1e-9 * GetLength(v) + rounding;
  });
  return isLine;
}

}  // namespace

StationLayout FindStationLayout(CStats_Data& table, int dim) {
  long long count = 0;
  Point3 first{};
  Point3 last{};
  ForEachPlace(table, dim, [&](const Point3& place) {
    if (count++ == 0) first = place;
    last = place;
  });
  if (count < 3) return StationLayout::kFewOrSpread;
  // From both, since all others look alike to one that is far off.
  for (const Point3& start : {first, last}) {
    Point3 along{};
    ForEachPlace(table, dim, [&](const Point3& place) {
      const Point3 way = Subtract(place, start);
      if (GetLength(way) > GetLength(along)) along = way;
    });
    if (GetLength(along) == 0) return StationLayout::kOnePlace;
    if (!LieOnLineFrom(table, dim, start, along)) return StationLayout::kFewOrSpread;
  }
  return StationLayout::kOneLine;
}

}  // namespace tallyscope
