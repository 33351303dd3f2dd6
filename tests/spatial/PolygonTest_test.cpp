// SPDX-License-Identifier: MIT
#include "spatial/PolygonTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
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

TEST(PolygonTest, LooksUpTheEdgesThatAWalkOfAllWouldCount) {
  std::mt19937_64 random(3);
  for (int round = 0; round < 300; ++round) {
    // On a lattice edges run level, cross each other and pass through the points asked for.
    const bool lattice = round % 2 == 0;
    const auto coordinate = [&] {
      return lattice ? static_cast<double>(random() % 6) : static_cast<double>(random() % 100000) / 1e4;
    };
    std::vector<Point3> vertices(random() % 12);
    for (Point3& vertex : vertices) vertex = {coordinate(), coordinate(), 0};
    const PolygonTest polygon(vertices);
    for (int i = 0; i < 100; ++i) {
      const double nudge = (static_cast<int>(random() % 5) - 2) * 6e-11;
      const double x = coordinate() + nudge;
      const double y = coordinate() + (i % 2 == 0 ? nudge : 0);
      ASSERT_EQ(polygon.Classify(x, y), ClassifyPlainly(vertices, x, y))
          << "round " << round << " at " << x << ", " << y;
    }
    const Box box{{1, 1, 0}, {3, 2.5, 0}, 1};
    EXPECT_EQ(polygon.HasVertexIn(box), std::any_of(vertices.begin(), vertices.end(), [](const Point3& p) {
                return p[0] >= 1 && p[0] <= 3 && p[1] >= 1 && p[1] <= 2.5;
              }));
  }
}

TEST(PolygonTest, EdgesOfASquare) {
  const PolygonTest square({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}});
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
        Row{"beyond", 3, 1, PolygonTest::kOutside}, Row{"far above", 1, 1e300, PolygonTest::kOutside},
        Row{"NaN", 1, NAN, PolygonTest::kOutside}}) {
    EXPECT_EQ(square.Classify(row.x, row.y), row.place) << row.name;
  }
}

}  // namespace
}  // namespace tallyscope
