// SPDX-License-Identifier: MIT
#include "spatial/Stats_PointSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>

#include "SpatialTesting.h"

namespace tallyscope {
namespace {

using testing_spatial::BoundsOf;
using testing_spatial::Cloud;
using testing_spatial::kNull;
using testing_spatial::NastyClouds;
using testing_spatial::Table;

constexpr double kPi = 3.14159265358979323846;

std::vector<int> Walk(CStats_PointSearch& search) {
  std::vector<int> stations;
  for (int station = 0; search.GetNext(station, 1);) stations.push_back(station);
  return stations;
}

// All stations of the index in the order of leaves, those kept that pass.
std::vector<int> WalkPlainly(CStats_PointSearch& search, const std::function<bool(const Point3&)>& passes) {
  CStats_PointSearch::Leaves leaves;
  search.CollectLeaves(leaves, false);
  std::vector<int> stations;
  for (const auto* leaf : leaves) {
    for (int station : leaf->points) {
      const bool flat = search.GetDimensions() < 3;
      if (passes({search.GetX(station), search.GetY(station), flat ? 0 : search.GetZ(station)}))
        stations.push_back(station);
    }
  }
  return stations;
}

double PlainAngle(double dx, double dy) {
  if (std::fabs(dx) > 1e-6) {
    double angle = std::atan(dy / dx);
    if (dx < 0) angle += kPi;
    if (dx >= 0 && dy < 0) angle += 2 * kPi;
    return angle;
  }
  if (std::fabs(dy) < 1e-6) return 0;
  return dy < 0 ? 3 * kPi / 2 : kPi / 2;
}

TEST(Stats_PointSearch, EveryQueryAgreesWithAPlainLoop) {
  std::mt19937_64 random(5);
  for (const Cloud& cloud : NastyClouds()) {
    for (int dimensions = 2; dimensions <= 3; ++dimensions) {
      SCOPED_TRACE(cloud.name + " in " + std::to_string(dimensions));
      CMadeTable table = cloud.Table(dimensions);
      CStats_PointSearch& search = *table.GetPointSearch();
      ASSERT_TRUE(table.PreparePointSearch(nullptr));
      ASSERT_TRUE(search.IsPartitioned());
      search.SearchAll();
      std::vector<int> all = Walk(search), valid;
      EXPECT_EQ(all, WalkPlainly(search, [](const Point3&) { return true; }));
      for (int i = 0; i < table.GetSize(); ++i) {
        if (search.IsPointValid(i)) valid.push_back(i);
      }
      EXPECT_TRUE(std::is_permutation(all.begin(), all.end(), valid.begin(), valid.end()));

      const Box bounds = BoundsOf(cloud);
      const auto axes = static_cast<std::size_t>(dimensions);
      // Half of the places are a station's own, so that faces, radii and angles are met exactly.
      const auto anywhere = [&] {
        Point3 point{};
        for (std::size_t a = 0; a < axes; ++a) {
          point[a] = bounds.min[a] + static_cast<double>(random() % 1000) / 999 * (bounds.max[a] - bounds.min[a]);
          if (all.empty() || random() % 2 == 0) continue;
          const double own = table.GetValue(-1 - static_cast<int>(a), all[random() % all.size()]);
          if (!std::isnan(own)) point[a] = own;
        }
        return point;
      };
      const auto boxBetween = [](const Point3& p, const Point3& q) {
        Box box;
        for (std::size_t a = 0; a < 3; ++a) {
          box.min[a] = std::min(p[a], q[a]);
          box.max[a] = std::max(p[a], q[a]);
        }
        return box;
      };
      for (int query = 0; query < 40; ++query) {
        const Point3 from = anywhere(), to = anywhere();
        const Box outer = boxBetween(from, to), inner = boxBetween(anywhere(), anywhere());
        const auto inBox = [&](const Point3& p) {
          for (std::size_t a = 0; a < axes; ++a) {
            if (!(outer.min[a] <= p[a] && p[a] <= outer.max[a])) return false;
          }
          return true;
        };
        const auto squared = [&](const Point3& p) {
          double sum = 0;
          for (std::size_t a = 0; a < axes; ++a) sum += (p[a] - from[a]) * (p[a] - from[a]);
          return sum;
        };
        search.SearchBox(outer);
        ASSERT_EQ(Walk(search), WalkPlainly(search, inBox));
        search.SearchBetweenBoxes(outer, inner);
        ASSERT_EQ(Walk(search), WalkPlainly(search, [&](const Point3& p) {
                    bool within = true;
                    for (std::size_t a = 0; a < axes; ++a)
                      within = within && inner.min[a] < p[a] && p[a] < inner.max[a];
                    return inBox(p) && !within;
                  }));
        const double radius = std::sqrt(squared(to));
        search.SearchSphere(from, radius);
        ASSERT_EQ(Walk(search), WalkPlainly(search, [&](const Point3& p) { return squared(p) <= radius * radius; }));

        const double start = query % 8 * kPi / 4, end = start + static_cast<double>(random() % 9) * kPi / 3;
        search.SearchSector(from, radius, radius / 3, start, end);
        ASSERT_EQ(Walk(search), WalkPlainly(search,
                                            [&](const Point3& p) {
                                              const double d2 = squared(p);
                                              if (!(d2 <= radius * radius && d2 >= radius / 3 * (radius / 3)))
                                                return false;
                                              if (axes != 2) return true;
                                              double angle = PlainAngle(p[0] - from[0], p[1] - from[1]);
                                              while (angle < start) angle += 2 * kPi;
                                              return angle <= end;
                                            }))
            << "from " << start << " to " << end;

        const Point3 size{radius, radius / 2, outer.max[2] - outer.min[2]};
        const double degrees = query % 12 * 30;
        const double c = std::cos(degrees * kPi / 180), s = std::sin(degrees * kPi / 180);
        search.SearchRotatedRectangle(from, size, degrees);
        ASSERT_EQ(Walk(search), WalkPlainly(search,
                                            [&](const Point3& p) {
                                              if (axes > 2 && !(from[2] <= p[2] && p[2] <= from[2] + size[2]))
                                                return false;
                                              const double dx = p[0] - from[0], dy = p[1] - from[1];
                                              const double along = c * dx + s * dy, across = c * dy - s * dx;
                                              return 0 <= along && along <= size[0] && 0 <= across && across <= size[1];
                                            }))
            << "at " << degrees << " degrees";
      }
    }
  }
}

TEST(Stats_PointSearch, FacesOfBothBoxesAreDelivered) {
  CMadeTable table = Table(2, {{0, 1, 2, 3, 4}, {0, 1, 2, 3, 4}});
  CStats_PointSearch& search = *table.GetPointSearch();
  ASSERT_TRUE(table.PreparePointSearch(nullptr));
  Box outer{{0, 0, 0}, {4, 4, 0}, 1}, inner{{1, 1, 0}, {3, 3, 0}, 1};
  search.SearchBox(outer);
  EXPECT_EQ(Walk(search).size(), 5u);
  search.SearchBetweenBoxes(outer, inner);
  EXPECT_EQ(Walk(search), (std::vector<int>{0, 1, 3, 4}));
}

TEST(Stats_PointSearch, SectorsRunPastTheFullTurn) {
  const double angle = 5 * kPi / 180;
  CMadeTable table = Table(2, {{0, std::cos(angle), -1}, {0, std::sin(angle), 0}});
  CStats_PointSearch& search = *table.GetPointSearch();
  ASSERT_TRUE(table.PreparePointSearch(nullptr));
  search.SearchSector({0, 0, 0}, 1.5, 0.5, 350 * kPi / 180, 370 * kPi / 180);
  EXPECT_EQ(Walk(search), std::vector<int>{1});
  search.SearchSector({0, 0, 0}, 1.5, 0, 0, 0.01);
  EXPECT_EQ(Walk(search), std::vector<int>{0}) << "the centre itself is at angle 0";
  search.SearchSector({0, 0, 0}, 1.5, 0, 1e300, 2e300);
  EXPECT_TRUE(Walk(search).empty()) << "and it ends";
}

TEST(Stats_PointSearch, RaysGiveWholeLeaves) {
  CMadeTable table = NastyClouds()[4].Table(3);
  CStats_PointSearch& search = *table.GetPointSearch();
  ASSERT_TRUE(table.PreparePointSearch(nullptr));
  search.SearchRay({-1, 0.5, 0.5}, {1, 0, 0});
  const int leaves = search.GetLeafCount();
  const std::vector<int> one = Walk(search);
  std::size_t held = 0;
  for (const auto* leaf : search.GetLeaves()) held += leaf->points.size();
  EXPECT_GT(leaves, 1);
  EXPECT_EQ(one.size(), held);
  search.SearchRays({{9, 9, 9}, {-1, 0.5, 0.5}}, {{1, 0, 0}, {1, 0, 0}});
  EXPECT_EQ(Walk(search), one);
}

TEST(Stats_PointSearch, CursorRestartsAndSteps) {
  CMadeTable table = NastyClouds()[4].Table(2);
  CStats_PointSearch& search = *table.GetPointSearch();
  int station = 7;
  EXPECT_FALSE(search.GetNext(station, 1)) << "no query yet";
  search.SearchBox(Box());
  EXPECT_FALSE(search.GetNext(station, 1)) << "no tree yet";
  ASSERT_TRUE(table.PreparePointSearch(nullptr));
  Box box{{0.2, 0.2, 0}, {0.7, 0.4, 0}, 1};
  search.SearchBox(box);
  const std::vector<int> once = Walk(search);
  EXPECT_EQ(Walk(search), once) << "the same query again";

  // After a station that fails the walk skips two; a leaf's overshoot is carried into the next.
  std::vector<int> stepped, expected;
  while (search.GetNext(station, 3)) stepped.push_back(station);
  std::size_t p = 0;
  for (const auto* leaf : search.GetLeaves()) {
    while (p < leaf->points.size()) {
      const int at = leaf->points[p];
      const double x = table.GetValue(-1, at), y = table.GetValue(-2, at);
      const bool passes = 0.2 <= x && x <= 0.7 && 0.2 <= y && y <= 0.4;
      if (passes) expected.push_back(at);
      p += passes ? 1 : 3;
    }
    p -= leaf->points.size();
  }
  EXPECT_EQ(stepped, expected);
  ASSERT_TRUE(search.GetNext(station, 1));
  search.SetFields(-2, -1, -3, 2);
  EXPECT_FALSE(search.GetNext(station, 1)) << "a change of fields ends the query";
  EXPECT_FALSE(search.IsPartitioned());
}

TEST(Stats_PointSearch, FieldsServeAsCoordinates) {
  CMadeTable table = Table(1, {{9, 8, 7}, {1, 2, kNull}, {5, 5, 5}});
  CStats_PointSearch& search = *table.GetPointSearch();
  EXPECT_EQ(search.GetDimensions(), 1);
  EXPECT_TRUE(table.PreparePointSearch(nullptr));
  EXPECT_FALSE(search.IsPartitioned()) << "one axis is never built";
  search.SetFields(0, 1, -3, 2);
  ASSERT_TRUE(table.PreparePointSearch(nullptr));
  // The box sticks out by a thousandth of the range, and of the value itself where that is constant.
  EXPECT_EQ(search.GetTree()->GetRoot()->box.min, (Point3{1 - 0.001, 5 - 0.005, 0}));
  EXPECT_EQ(search.GetTree()->GetRoot()->box.max, (Point3{2 + 0.001, 5 + 0.005, 1}));
  search.SearchBox({{0, 5, 0}, {3, 5, 0}, 1});
  EXPECT_EQ(Walk(search), (std::vector<int>{0, 1})) << "without the null";
  search.SetFields(0, 1, -3, 2);
  EXPECT_TRUE(search.IsPartitioned()) << "nothing changed";
  table.DestroyPointSearch();
  EXPECT_FALSE(table.GetPointSearch()->IsPartitioned());
}

}  // namespace
}  // namespace tallyscope
