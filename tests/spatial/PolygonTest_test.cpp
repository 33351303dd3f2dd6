// SPDX-License-Identifier: MIT
#include "spatial/PolygonTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <random>

namespace tallyscope {
namespace {

// Every edge in order.
PolygonTest::Place ClassifyPlainly(const std::vector<Point3>& vertices, double x, double y) {
  bool inside = false;
  for (std::size_t i = 0; i < vertices.size(); ++i) {
    const Point3& a = vertices[i];
    const Point3& b = vertices[(i + 1) % vertices.size()];
    if (a[1] == b[1]) {
      if (std::fabs(y - a[1]) <= 1e-10 && std::min(a[0], b[0]) <= x && x <= std::max(a[0], b[0]))
        return PolygonTest::kOnEdge;
    } else if (y > std::min(a[1], b[1]) && y <= std::max(a[1], b[1])) {
      const double cross = (y - a[1]) / (b[1] - a[1]) * (b[0] - a[0]) + a[0];
      if (x > cross) continue;
      if (std::fabs(x - cross) <= 1e-10) return PolygonTest::kOnEdge;
      inside = !inside;
    }
  }
  return inside ? PolygonTest::kInside : PolygonTest::kOutside;
}

PolygonTest::Place Classify(PolygonTest& polygon, double x, double y) {
  PolygonTest::Place place{};
  polygon.Classify(polygon.GetWhole(), &x, &y, 1, &place);
  return place;
}

// Boxes within boxes down to a few points, as a search has them, and all points at once.
void ExpectPlainPlaces(const std::vector<Point3>& vertices, std::vector<Point3> points) {
  PolygonTest polygon(vertices);
  std::sort(points.begin(), points.end());
  std::vector<double> x, y;
  for (const Point3& point : points) {
    x.push_back(point[0]);
    y.push_back(point[1]);
  }
  std::vector<PolygonTest::Place> expected, places(points.size()), boxed(points.size());
  for (const Point3& point : points) expected.push_back(ClassifyPlainly(vertices, point[0], point[1]));
  polygon.Classify(polygon.GetWhole(), x.data(), y.data(), points.size(), places.data());
  EXPECT_EQ(places, expected);
  const std::function<void(std::size_t, std::size_t, PolygonTest::Scope)> walk =
      [&](std::size_t first, std::size_t last, PolygonTest::Scope outer) {
        if (first == last) return;
        Box box{points[first], points[first], 1};
        for (std::size_t i = first; i < last; ++i) {
          for (std::size_t axis = 0; axis < 2; ++axis) {
            box.min[axis] = std::min(box.min[axis], points[i][axis]);
            box.max[axis] = std::max(box.max[axis], points[i][axis]);
          }
        }
        const auto scope = polygon.Narrow(outer, box);
        if (last - first < 4) {
          return polygon.Classify(scope, &x[first], &y[first], last - first, &boxed[first]);
        }
        walk(first, first + (last - first) / 3, scope);
        walk(first + (last - first) / 3, last, scope);
      };
  walk(0, points.size(), polygon.GetWhole());
  EXPECT_EQ(boxed, expected);
}

TEST(PolygonTest, AgreesWithAWalkOverAllEdges) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  std::mt19937_64 random(3);
  for (int round = 0; round < 300; ++round) {
    SCOPED_TRACE(round);
    // On a lattice edges run level, cross each other and pass through the points asked for; a tenth of the polygons
    // have corners where crossings aren't numbers.
    const bool lattice = round % 2 == 0;
    const auto coordinate = [&] {
      return lattice ? static_cast<double>(random() % 6) : static_cast<double>(random() % 100000) / 1e4;
    };
    std::vector<Point3> vertices(random() % (round % 7 == 0 ? 200 : 12));
    for (Point3& vertex : vertices) {
      vertex = {coordinate(), coordinate(), 0};
      if (round % 10 == 3 && random() % 4 == 0) {
        vertex[random() % 2] = std::array<double, 6>{kInfinity, -kInfinity, 1e308, -1e308, NAN, 5e-324}[random() % 6];
      }
    }
    std::vector<Point3> points;
    for (int i = 0; i < 200; ++i) {
      const double nudge = (static_cast<int>(random() % 5) - 2) * 6e-11;
      points.push_back({coordinate() + nudge, coordinate() + (i % 2 == 0 ? nudge : 0), 0});
    }
    ExpectPlainPlaces(vertices, points);
    const PolygonTest polygon(vertices);
    const Box box{{1, 1, 0}, {3, 2.5, 0}, 1};
    EXPECT_EQ(polygon.HasVertexIn(box), std::any_of(vertices.begin(), vertices.end(), [](const Point3& p) {
                return p[0] >= 1 && p[0] <= 3 && p[1] >= 1 && p[1] <= 2.5;
              }));
  }
}

// Thousands of edges at every height that all cross each other, long and short ones, far from the origin and near it.
TEST(PolygonTest, AgreesForThousandsOfCrossingEdges) {
  std::mt19937_64 random(4);
  std::uniform_real_distribution<double> unit(-1, 1);
  for (const double origin : {0.0, 5e6}) {
    for (const int step : {1, 500, 1000}) {
      std::vector<Point3> vertices;
      for (int i = 0; i < 2001; ++i) {
        const double angle = i * step * 2 * std::numbers::pi / 2001;
        vertices.push_back({origin + 100 * std::cos(angle), origin + 100 * std::sin(angle), 0});
      }
      std::vector<Point3> points;
      for (int i = 0; i < 1500; ++i) {
        const auto& a = vertices[random() % 2001];
        const auto& b = vertices[random() % 2001];
        const double size = std::pow(10.0, i % 4 - 1);
        points.push_back({origin + size * unit(random), origin + size * unit(random), 0});
        if (i % 3 == 0) points.back() = {(a[0] + b[0]) / 2, (a[1] + b[1]) / 2, 0};
        if (i % 50 == 0) points.back() = a;
      }
      ExpectPlainPlaces(vertices, points);
    }
  }
}

TEST(PolygonTest, EdgesOfASquare) {
  PolygonTest square({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}});
  struct Row {
    const char* name;
    double x, y;
    PolygonTest::Place place;
  };
  for (const Row& row :
       {Row{"middle", 1, 1, PolygonTest::kInside}, Row{"lower edge", 1, 0, PolygonTest::kOnEdge},
        Row{"upper edge", 1, 2, PolygonTest::kOnEdge}, Row{"left edge", 0, 1, PolygonTest::kOnEdge},
        Row{"right edge", 2, 1, PolygonTest::kOnEdge}, Row{"a hair right of it", 2 + 1e-11, 1, PolygonTest::kOutside},
        Row{"a hair left of it", 2 - 1e-11, 1, PolygonTest::kOnEdge}, Row{"corner", 2, 2, PolygonTest::kOnEdge},
        Row{"beyond", 3, 1, PolygonTest::kOutside}, Row{"far above", 1, 1e300, PolygonTest::kOutside}}) {
    EXPECT_EQ(Classify(square, row.x, row.y), row.place) << row.name;
  }
}

}  // namespace
}  // namespace tallyscope
