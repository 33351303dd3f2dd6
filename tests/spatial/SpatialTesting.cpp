// SPDX-License-Identifier: MIT
#include "SpatialTesting.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace tallyscope::testing_spatial {

namespace {

template <class Make>
Cloud MakeCloud(const std::string& name, int count, Make make) {
  Cloud cloud{name, {}};
  for (int i = 0; i < count; ++i) cloud.points.push_back(make(i));
  return cloud;
}

}  // namespace

CMadeTable Table(int axes, const std::vector<std::vector<double>>& columns) {
  std::vector<MadeColumn> list;
  for (const auto& column : columns) {
    list.push_back(made::WithNulls(made::Column(column),
                                   [&](int station) { return column[static_cast<std::size_t>(station)] == kNull; }));
  }
  return CMadeTable(std::move(list), axes);
}

CMadeTable Cloud::Table(int axes) const {
  std::vector<std::vector<double>> columns(static_cast<std::size_t>(axes) + 1);
  for (std::size_t i = 0; i < points.size(); ++i) {
    for (std::size_t axis = 0; axis < static_cast<std::size_t>(axes); ++axis) columns[axis].push_back(points[i][axis]);
    columns.back().push_back(static_cast<double>(i));
  }
  return testing_spatial::Table(axes, columns);
}

std::vector<Cloud> NastyClouds() {
  std::mt19937_64 random(20240611);
  std::uniform_real_distribution<double> unit(0, 1);
  std::normal_distribution<double> normal(0, 1);
  const auto anywhere = [&](int) { return Point3{unit(random), unit(random), unit(random)}; };
  std::vector<Cloud> clouds;
  clouds.push_back(MakeCloud("none", 0, anywhere));
  clouds.push_back(MakeCloud("one", 1, anywhere));
  clouds.push_back(MakeCloud("ninety-six", 96, anywhere));
  clouds.push_back(MakeCloud("ninety-seven", 97, anywhere));
  clouds.push_back(MakeCloud("uniform", 3000, anywhere));
  clouds.push_back(MakeCloud("on one line", 700, [&](int) { return Point3{3, unit(random), 5}; }));
  clouds.push_back(MakeCloud("in one place", 500, [](int) { return Point3{2, -7, 1e3}; }));
  clouds.push_back(MakeCloud("lattice", 1000, [](int i) {
    return Point3{i % 10 * 1.0, i / 10 % 10 * 1.0, i / 100 * 1.0};
  }));
  clouds.push_back(MakeCloud("clustered", 2000, [&](int i) {
    const double at = i % 7 * 10;
    return Point3{at + 0.01 * normal(random), -at + 0.01 * normal(random), at * at + normal(random)};
  }));
  clouds.push_back(MakeCloud("far off and close together", 600, [&](int) {
    return Point3{1e7 + 1e-8 * std::floor(unit(random) * 4), 1e7 + 1e-9 * unit(random), -1e7};
  }));
  clouds.push_back(MakeCloud("with nulls", 1500, [&](int i) {
    Point3 point = anywhere(i);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (random() % 5 == 0) point[axis] = kNull;
    }
    return point;
  }));
  clouds.push_back(MakeCloud("nulls only", 300, [](int) { return Point3{kNull, 1, 2}; }));
  // The cuts of the unit box: 1 / c and those of its halves, with repetitions.
  clouds.push_back(MakeCloud("on cuts", 900, [](int i) {
    const double cut = 1 / 2.0943951023931957;
    const double cuts[4] = {cut, cut / 2.0943951023931957, cut + (1 - cut) / 2.0943951023931957, i / 900.0};
    return Point3{cuts[i % 4], cuts[i / 4 % 4], cuts[i / 16 % 4]};
  }));
  clouds.push_back(MakeCloud("with NaN", 400, [&](int i) {
    Point3 point = anywhere(i);
    if (i % 11 == 0) point[static_cast<std::size_t>(i % 2)] = std::numeric_limits<double>::quiet_NaN();
    return point;
  }));
  clouds.push_back(MakeCloud("with infinities", 400, [&](int i) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    Point3 point = anywhere(i);
    if (i % 11 == 0) point[static_cast<std::size_t>(i % 2)] = i % 3 == 0 ? -kInfinity : kInfinity;
    return point;
  }));
  return clouds;
}

Box BoundsOf(const Cloud& cloud) {
  Box box;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    double low = 0;
    double high = 1;
    for (const Point3& point : cloud.points) {
      if (point[axis] == kNull || std::isinf(point[axis])) continue;
      low = std::min(low, point[axis]);
      high = std::max(high, point[axis]);
    }
    box.min[axis] = low;
    box.max[axis] = high;
  }
  return box;
}

}  // namespace tallyscope::testing_spatial
