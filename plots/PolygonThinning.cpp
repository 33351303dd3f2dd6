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
std::size_t FindTurn(const std::vector<double>& v, std::size_t anchor, double h) {
  const std::size_t n = v.size();
  const double from = v[anchor];
  std::size_t last = anchor + 1;
  double low = v[last] - (from + h);
  double high = v[last] - (from - h);
  for (std::size_t j = anchor + 2; j < n; ++j) {
    const auto steps = static_cast<double>(j - anchor);
    low = std::max(low, (v[j] - from - h) / steps);
    high = std::min(high, (v[j] - from + h) / steps);
    if (low > high) return last;
    const double slope = (v[j] - from) / steps;
    if (low <= slope && slope <= high) last = j;
  }
  return n - 1;
}

}  // namespace

std::vector<bool> MarkSleeve(const std::vector<double>& values, double halfWidth) {
  std::vector<bool> marks(values.size(), false);
  if (values.empty()) return marks;
  marks.front() = true;
  for (std::size_t anchor = 0; anchor + 1 < values.size();) {
    anchor = FindTurn(values, anchor, halfWidth);
    marks[anchor] = true;
  }
  return marks;
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
