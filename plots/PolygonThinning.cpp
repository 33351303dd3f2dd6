// SPDX-License-Identifier: MIT
#include "plots/PolygonThinning.h"

#include <algorithm>
#include <cmath>

namespace tallyscope {

namespace {

constexpr double kTolerance = 25.0;  // thousandths of the range

std::vector<bool> MarkAxis(const std::vector<CPoint>& points, int CPoint::*axis) {
  std::vector<double> values;
  values.reserve(points.size());
  for (const CPoint& point : points) values.push_back(point.*axis);
  const auto ends = std::minmax_element(values.begin(), values.end());
  return MarkSleeve(values, std::fabs(*ends.second - *ends.first) * kTolerance / 1000);
}

// From the anchor on, slopes narrow to those whose line passes all values between within the half width. Gives the
// furthest value that such a line meets before no slope is left; the end when there is one to the end.
template <class Position>
std::size_t FindTurn(const std::vector<double>& v, Position position, std::size_t anchor, double h) {
  const std::size_t n = v.size();
  const double from = v[anchor];
  std::size_t last = anchor + 1;
  const double first = position(last) - position(anchor);
  if (!(first > 0)) return last;
  double low = (v[last] - (from + h)) / first;
  double high = (v[last] - (from - h)) / first;
  for (std::size_t j = anchor + 2; j < n; ++j) {
    const double steps = position(j) - position(anchor);
    low = std::max(low, (v[j] - from - h) / steps);
    high = std::min(high, (v[j] - from + h) / steps);
    if (low > high) return last;
    const double slope = (v[j] - from) / steps;
    if (low <= slope && slope <= high) last = j;
  }
  return n - 1;
}

template <class Position>
std::vector<bool> MarkTurns(const std::vector<double>& values, Position position, double halfWidth) {
  std::vector<bool> marks(values.size(), false);
  if (values.empty()) return marks;
  marks.front() = true;
  for (std::size_t anchor = 0; anchor + 1 < values.size();) {
    anchor = FindTurn(values, position, anchor, halfWidth);
    marks[anchor] = true;
  }
  return marks;
}

}  // namespace

std::vector<bool> MarkSleeve(const std::vector<double>& values, double halfWidth) {
  return MarkTurns(
      values, [](std::size_t i) { return static_cast<double>(i); }, halfWidth);
}

std::vector<DrawPoint> ThinCurve(const std::vector<DrawPoint>& points, double halfWidth) {
  std::vector<double> heights;
  heights.reserve(points.size());
  for (const DrawPoint& point : points) heights.push_back(point.y);
  const auto marks = MarkTurns(
      heights, [&](std::size_t i) { return points[i].x; }, halfWidth);
  std::vector<DrawPoint> kept;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (marks[i]) kept.push_back(points[i]);
  }
  return kept;
}

std::vector<CPoint> ThinPolygon(const std::vector<CPoint>& points) {
  if (points.empty()) return {};
  const auto inX = MarkAxis(points, &CPoint::x);
  const auto inY = MarkAxis(points, &CPoint::y);
  std::vector<CPoint> kept;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (i == 0 || i + 1 == points.size() || inX[i] || inY[i]) kept.push_back(points[i]);
  }
  return kept;
}

}  // namespace tallyscope
