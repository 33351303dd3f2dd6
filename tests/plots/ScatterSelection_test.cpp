// SPDX-License-Identifier: MIT
// Selections by rectangle and polygon on the scatters, against a plain loop over the table.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "plots/PolygonThinning.h"
#include "statistics/Stats_Rgn.h"
#include "tests/outside/PlotTesting.h"
#include "tests/plots/ScatterTesting.h"

namespace tallyscope {
namespace {

using namespace testing_plots;

// Stations whose pixel passes.
template <class Inside>
std::vector<bool> PlainSelection(View& view, const Inside& inside) {
  const auto [dimX, dimY] = DimsOf(view);
  std::vector<bool> chosen;
  for (int i = 0; i < view.table.GetSize(); ++i) {
    double x = 0, y = 0;
    const bool valid = view.table.CStats_Data::GetValue(dimX, i, x) && view.table.CStats_Data::GetValue(dimY, i, y);
    const auto at = view.plot.World2Device(x, y);
    chosen.push_back(valid && inside(at[0], at[1]));
  }
  return chosen;
}

std::vector<bool> Selected(const View& view) {
  std::vector<bool> chosen;
  for (int i = 0; i < view.table.GetSize(); ++i) chosen.push_back(view.spatial.bitmaps.at(0).Get(i));
  return chosen;
}

bool IsInPolygon(const std::vector<CPoint>& corners, double x, double y) {
  bool inside = false;
  for (std::size_t i = 0, j = corners.size() - 1; i < corners.size(); j = i++) {
    const auto &a = corners[i], &b = corners[j];
    if ((a.y > y) != (b.y > y) && x < (b.x - a.x) * (y - a.y) / double(b.y - a.y) + a.x) inside = !inside;
  }
  return inside;
}

void DrawPolygon(View& view, const std::vector<CPoint>& corners, int mode) {
  view.container.SetCursorMode(mode);
  for (const CPoint corner : corners) {
    view.container.OnLButtonDown(corner);
    view.container.OnLButtonUp(corner);
  }
  view.container.OnRButtonDown(corners.back());
}

// Values are halves: shown an odd bit off, no station lies on an edge of a gesture.
void ShowOffGrid(View& view) {
  constexpr double kOff = 0.1234567;
  view.Show(-kOff, -kOff * 1.7, 256 - kOff, 256 - kOff * 1.7);
}

TEST(ScatterSelection, RectanglesAgreeWithAPlainLoop) {
  std::mt19937 random(5);
  auto table = NastyTable(3000, 9);
  BiView plane(table);
  StView map(table);
  for (View* view : {static_cast<View*>(&plane), static_cast<View*>(&map)}) {
    std::vector<bool> wanted(static_cast<std::size_t>(table.GetSize()), false);
    ShowOffGrid(*view);
    for (int round = 0; round < 30; ++round) {
      const auto place = [&] {
        return CPoint{static_cast<int>(kFrame.left + random() % 256), static_cast<int>(kFrame.top + random() % 256)};
      };
      CRect rect = CRect::Between(place(), place());
      const bool include = round % 3 != 2;
      EXPECT_TRUE(view->plot.Select(rect, include));
      const auto inside = PlainSelection(*view, [&](double x, double y) {
        return rect.left <= x && x <= rect.right && rect.top <= y && y <= rect.bottom;
      });
      for (std::size_t i = 0; i < wanted.size(); ++i) wanted[i] = inside[i] ? include : wanted[i];
      ASSERT_EQ(Selected(*view), wanted) << "round " << round;
    }
    auto& last = view->spatial.regions.Get(view->spatial.regions.GetCount() - 1);
    EXPECT_EQ(last.GetType(), CStats_Rgn::kRect);
    EXPECT_EQ(std::pair(last.GetDim1(), last.GetDim2()), DimsOf(*view));
    EXPECT_EQ(last.GetDimCount(), 2);
  }
}

TEST(ScatterSelection, PolygonsAgreeWithAPlainLoop) {
  std::mt19937 random(6);
  auto table = NastyTable(3000, 10);
  BiView plane(table);
  StView map(table);
  for (View* view : {static_cast<View*>(&plane), static_cast<View*>(&map)}) {
    std::vector<bool> wanted(static_cast<std::size_t>(table.GetSize()), false);
    ShowOffGrid(*view);
    for (int round = 0; round < 20; ++round) {
      std::vector<CPoint> corners;
      const int count = 3 + static_cast<int>(random() % 20);
      for (int i = 0; i < count; ++i) {
        corners.push_back(
            {static_cast<int>(kFrame.left + 5 + random() % 246), static_cast<int>(kFrame.top + 5 + random() % 246)});
      }
      const bool include = round % 3 != 2;
      DrawPolygon(*view, corners, include ? CUPlotX_Container::ePolygon : CUPlotX_Container::ePolygonExclude);
      auto& region = view->spatial.regions.Get(view->spatial.regions.GetCount() - 1);
      ASSERT_EQ(region.GetType(), CStats_Rgn::kPoly);
      ASSERT_EQ(view->spatial.regions.GetCount(), round + 1);
      const auto thinned = ThinPolygon(corners);
      ASSERT_EQ(region.GetPointCount(), static_cast<int>(thinned.size()));
      const auto inside = PlainSelection(*view, [&](double x, double y) { return IsInPolygon(thinned, x, y); });
      for (std::size_t i = 0; i < wanted.size(); ++i) wanted[i] = inside[i] ? include : wanted[i];
      ASSERT_EQ(Selected(*view), wanted) << "round " << round;
    }
  }
}

// Decades on both axes: the gesture's corners go through the axes' maps.
TEST(ScatterSelection, WorksOnLogarithmicAxes) {
  std::vector<double> decades;
  for (int i = 0; i < 200; ++i) decades.push_back(std::pow(10.0, i / 50.0));
  CMadeTable table({made::Column(decades, "U"), made::Column(decades, "V")});
  BiView view(table);
  for (auto& axis : view.plot.maps) axis = {AxisMap::kLogarithmic, 1};
  view.Show(1, 1, 5, 5);  // 1 to 10000
  CRect rect{kFrame.left + 65, kFrame.top + 63, kFrame.left + 129, kFrame.top + 191};
  EXPECT_TRUE(view.plot.Select(rect, true));
  EXPECT_EQ(Selected(view), PlainSelection(view, [&](double x, double y) {
              return rect.left <= x && x <= rect.right && rect.top <= y && y <= rect.bottom;
            }));
  EXPECT_EQ(view.spatial.bitmaps[0].Count(), 50);
}

TEST(ScatterSelection, IsToldOnce) {
  auto table = NastyTable(300, 9);
  BiView view(table);
  NotingWindow window;
  view.container.SetWindow(&window);
  view.container.SetCursorMode(CUPlotX_Container::eRectangle);
  view.container.OnLButtonDown({60, 60});
  view.container.OnMouseMove({200, 200}, true);
  view.container.OnLButtonUp({200, 200});
  EXPECT_EQ(window.Take(), "As");
  DrawPolygon(view, {{60, 60}, {200, 60}, {200, 200}}, CUPlotX_Container::ePolygonExclude);
  EXPECT_EQ(window.Take(), "As");
  view.plot.ClearLastSelRegion();
  EXPECT_EQ(window.Take(), "As");
  view.plot.RestoreLastSelRegion();
  view.plot.ClearAllSelRegion();
  EXPECT_EQ(window.Take(), "AsAs");
  view.plot.SetHover(3);
  EXPECT_EQ(window.Take(), "h3");
}

TEST(ScatterSelection, WithoutAPolygonNothingIsDone) {
  auto table = TableFrom("U V\n1 1\n");
  BiView view(table);
  EXPECT_FALSE(view.plot.Select(true));
  EXPECT_TRUE(view.spatial.regions.IsEmpty());
}

}  // namespace
}  // namespace tallyscope
