// SPDX-License-Identifier: MIT
// Which station a scatter finds under the pointer.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "spatial/Stats_PointSearch.h"
#include "tests/plots/ScatterTesting.h"

namespace tallyscope {
namespace {

using namespace testing_plots;

// All that the search has, one by one.
int ClosestReferee(View& view, const XVector& world, CSize tolerance) {
  const auto [dimX, dimY] = DimsOf(view);
  auto* search = view.table.GetPointSearch();
  search->SetFields(dimX, dimY, -3, 2);
  view.table.PreparePointSearch(nullptr);
  search->SearchAll();
  const auto at = view.plot.World2Device(world[0], world[1]);
  int closest = -1;
  double best = 1e20;
  for (int station; search->GetNext(station, 1);) {
    const auto place = view.plot.World2Device(view.table.GetValue(dimX, station), view.table.GetValue(dimY, station));
    const double dx = place[0] - at[0], dy = place[1] - at[1];
    if (!(std::fabs(dx) <= tolerance.cx && std::fabs(dy) <= tolerance.cy)) continue;
    if (dx * dx + dy * dy < best) best = dx * dx + dy * dy, closest = station;
  }
  return closest;
}

TEST(ScatterPick, AgreesWithAPlainLoop) {
  std::mt19937 random(3);
  for (const int stations : {1, 50, 300, 20000}) {
    auto table = NastyTable(stations, static_cast<unsigned>(stations) + 1);
    BiView plane(table);
    StView map(table);
    for (View* view : {static_cast<View*>(&plane), static_cast<View*>(&map)}) {
      for (const bool logarithmic : {false, true}) {
        for (auto& axis : view->plot.maps) axis = {logarithmic ? AxisMap::kLogarithmic : AxisMap::kLinear, 16};
        // A unit is a power of two of pixels, so that both ways are exact on linear axes.
        const double width = logarithmic ? 2.5 : 64 << random() % 4;
        view->Show(0, 0, width, width);
        int found = 0;
        for (int i = 0; i < 300; ++i) {
          const CPoint point{static_cast<int>(kFrame.left + random() % 256),
                             static_cast<int>(kFrame.top + random() % 256)};
          const int wanted = ClosestReferee(*view, view->plot.Device2World(point.x, point.y), {8, 8});
          const int picked = view->plot.PickAt(point);
          found += picked >= 0;
          if (picked == wanted) continue;
          // On a logarithmic axis rounding may choose among what is equally near.
          ASSERT_TRUE(logarithmic && picked >= 0 && wanted >= 0) << picked << " and not " << wanted;
          const auto [dimX, dimY] = DimsOf(*view);
          for (const int dim : {dimX, dimY}) {
            ASSERT_NEAR(std::fabs(table.GetValue(dim, picked)), std::fabs(table.GetValue(dim, wanted)), 1e-9);
          }
        }
        EXPECT_TRUE(stations < 20000 || found > 30) << found;
      }
    }
  }
}

TEST(ScatterPick, TheToleranceIsABoxAndIncludesItsEdge) {
  auto table = TableFrom("X Y U V\n64 64 64 64\n");
  BiView plane(table);
  StView map(table);
  const CPoint at{112, 224};
  struct Case {
    int dx, dy;
    bool found;
  };
  const Case cases[] = {{0, 0, true},  {8, 8, true},  {-8, 8, true},   {8, -8, true}, {-8, -8, true},
                        {9, 0, false}, {0, 9, false}, {-9, -9, false}, {8, 0, true},  {8, 9, false}};
  for (View* view : {static_cast<View*>(&plane), static_cast<View*>(&map)}) {
    for (const Case& each : cases) {
      EXPECT_EQ(view->plot.PickAt({at.x + each.dx, at.y + each.dy}), each.found ? 0 : -1) << each.dx << ' ' << each.dy;
    }
    // In pixels, whatever the zoom.
    view->Show(60, 60, 68, 68);
    EXPECT_EQ(view->plot.GetClosestStation({64.25, 63.75, 0}, {8, 8}), 0);
    EXPECT_EQ(view->plot.GetClosestStation({64.5, 64, 0}, {8, 8}), -1);
    EXPECT_EQ(view->plot.GetClosestStation({64.5, 64, 0}, {16, 0}), 0);
  }
}

// Equally near: what the search yields first, whether it is one place or four round the pointer.
TEST(ScatterPick, OfEquallyNearStationsTheSearchDecides) {
  std::vector<double> x, y;
  for (int i = 0; i < 1000; ++i) {
    x.push_back(100 + (i * 37 % 2 == 0 ? 3 : -3));
    y.push_back(100 + (i * 37 % 4 < 2 ? 3 : -3));
  }
  CMadeTable table({made::Column(x, "U"), made::Column(y, "V")});
  BiView view(table);
  const int picked = view.plot.GetClosestStation({100, 100, 0}, {8, 8});
  EXPECT_EQ(picked, ClosestReferee(view, {100, 100, 0}, {8, 8}));
  auto* search = table.GetPointSearch();
  search->SearchAll();
  int first = -1;
  search->GetNext(first, 1);
  EXPECT_EQ(picked, first);
}

TEST(ScatterPick, FindsNothingWithoutPlaces) {
  auto table = TableFrom("X Y U V\n1 - - 1\n");
  BiView plane(table);
  StView map(table);
  const double nan = std::nan("");
  for (View* view : {static_cast<View*>(&plane), static_cast<View*>(&map)}) {
    EXPECT_EQ(view->plot.PickAt({100, 100}), -1);
    EXPECT_EQ(view->plot.GetClosestStation({nan, nan, 0}, {8, 8}), -1);
    EXPECT_EQ(view->plot.GetClosestStation({1e308, -1e308, 0}, {8, 8}), -1);
  }
}

}  // namespace
}  // namespace tallyscope
