// SPDX-License-Identifier: MIT
// What the trace draws, station by station: pieces between middles, gaps at nulls, colours, marks, selection.
#include <gtest/gtest.h>

#include <limits>

#include "plots/UPlotX_Uni_Scatter.h"
#include "statistics/Stats_RgnInvert.h"
#include "tests/plots/UnivariateScene.h"
#include "tests/support/Made.h"

namespace tallyscope {
namespace {

constexpr COLORREF kBlack = 0;
constexpr COLORREF kRed = 0xff;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

using Points = std::vector<DrawPoint>;
using Scene = UnivariateScene<CUPlotX_Uni_Scatter>;

// Five stations in a frame of 500 x 200 pixels that shows stations 0 to 10 and values 0 to 10: 50 and 20 pixels a unit.
class FiveStations : public ::testing::Test {
 protected:
  FiveStations() { scene.Show(0, 10, 0, 10); }

  CMadeTable table = TableFrom(R"(zinc code
                                  2    5
                                  4    -
                                  -    7
                                  6    6
                                  7    15)");
  Scene scene{table, 0, 500, 200};
};

// As the points of each line.
std::vector<Points> LinesOf(const RecorderDC& dc, COLORREF colour) {
  std::vector<Points> lines;
  for (const auto& line : dc.LinesOf(colour, 0)) lines.push_back(line.points);
  return lines;
}

TEST_F(FiveStations, OwnTheTraceToTheMiddlesAndHalfADashElsewhere) {
  const auto dc = scene.Draw();
  EXPECT_EQ(LinesOf(dc, kBlack), (std::vector<Points>{
                                     {{125, 210}, {150, 210}, {175, 190}, {200, 170}, {225, 170}},
                                     {{275, 130}, {300, 130}, {325, 120}, {350, 110}, {375, 110}},
                                 }));
  EXPECT_EQ(dc.lines.front().clip, (DrawRect{100, 50, 600, 250}));
}

TEST_F(FiveStations, AreRedWhereSelectedAndUndoBringsBlackBack) {
  scene.SelectBetween(2, 2.4);  // cut to station 2 alone
  EXPECT_EQ(LinesOf(scene.Draw(), kRed), (std::vector<Points>{{{175, 190}, {200, 170}, {225, 170}}}));
  EXPECT_EQ(LinesOf(scene.Draw(), kBlack).front(), (Points{{125, 210}, {150, 210}, {175, 190}}));
  scene.plot.ClearLastSelRegion();
  EXPECT_TRUE(scene.Draw().LinesOf(kRed).empty());
  scene.plot.RestoreLastSelRegion();
  EXPECT_EQ(scene.Draw().LinesOf(kRed).size(), 1u);
}

// Colours by the table's steps; null colours and selected stations are black.
TEST_F(FiveStations, TakeTheColoursOfASecondField) {
  scene.plot.SetColourDim(2);
  const auto& colours = scene.plot.colourTable;
  auto dc = scene.Draw();
  EXPECT_EQ(LinesOf(dc, colours[0]), (std::vector<Points>{{{125, 210}, {150, 210}, {175, 190}}}));
  EXPECT_EQ(LinesOf(dc, kBlack), (std::vector<Points>{{{175, 190}, {200, 170}, {225, 170}}}));
  EXPECT_EQ(LinesOf(dc, colours[25]), (std::vector<Points>{{{275, 130}, {300, 130}, {325, 120}}}));
  EXPECT_EQ(LinesOf(dc, colours[255]), (std::vector<Points>{{{325, 120}, {350, 110}, {375, 110}}}));
  scene.SelectBetween(5, 5.4);
  dc = scene.Draw();
  EXPECT_EQ(LinesOf(dc, kBlack).size(), 2u);
  EXPECT_TRUE(LinesOf(dc, colours[255]).empty());
}

TEST_F(FiveStations, AreMarkedByAnUprightLine) {
  struct Case {
    int hover;
    int glance;
    std::vector<Points> thick;
    std::vector<Points> thin;
  };
  const Points second{{200, 50}, {200, 250}};
  const Points third{{250, 50}, {250, 250}};
  for (const auto& each : {Case{-1, -1, {}, {}}, Case{1, -1, {second}, {}}, Case{1, 2, {second}, {third}},
                           Case{1, 1, {second}, {}}, Case{5, -1, {}, {}}}) {
    scene.plot.hover = each.hover;
    scene.plot.glance = each.glance;
    std::vector<Points> thick;
    std::vector<Points> thin;
    const auto dc = scene.Draw();
    for (const auto& line : dc.LinesOf(kRed, 2)) thick.push_back(line.points);
    for (const auto& line : dc.LinesOf(kRed, 1)) thin.push_back(line.points);
    EXPECT_EQ(thick, each.thick) << each.hover << " " << each.glance;
    EXPECT_EQ(thin, each.thin) << each.hover << " " << each.glance;
  }
}

TEST_F(FiveStations, ArePickedByTheNearestNumber) {
  CPoint left{174, 100};    // 1.48
  CPoint right{176, 100};   // 1.52
  CPoint beyond{376, 100};  // 5.52
  EXPECT_FALSE(scene.plot.SelectMove(left, true)) << "no gesture yet";
  EXPECT_FALSE(scene.plot.Select(beyond, true));
  EXPECT_EQ(scene.plot.hover, -1);
  EXPECT_TRUE(scene.plot.Select(left, true));
  EXPECT_EQ(scene.plot.hover, 0);
  EXPECT_TRUE(scene.plot.SelectMove(right, true));
  EXPECT_EQ(scene.plot.hover, 1);
  scene.plot.SelectMove(beyond, true);
  EXPECT_EQ(scene.plot.hover, 1) << "the last station stays";
  scene.plot.CancelSelect(beyond, true);
  EXPECT_EQ(scene.plot.hover, -1);
  EXPECT_EQ(scene.plot.PickAt({200, 100}), 1);
  EXPECT_EQ(scene.plot.PickAt({200, 260}), -1) << "below the frame";
}

TEST_F(FiveStations, AreSelectedByARectangleAsAPlainLoopWould) {
  for (const auto& [left, right] : {std::pair{0.0, 10.0}, {1.0, 3.0}, {1.5, 3.5}, {2.2, 2.8}, {4.9, 9.0}}) {
    for (const bool include : {true, false}) {
      scene.plot.ClearAllSelRegion();
      scene.SelectBetween(1, 4);
      scene.SelectBetween(left, right, include);
      for (int station = 0; station < 5; ++station) {
        // Whole numbers from the cut-off sides, from 0.
        const bool inside = station >= static_cast<int>(std::max(left - 1, 0.0)) &&
                            station <= static_cast<int>(std::max(right - 1, 0.0));
        const bool before = station <= 3;
        EXPECT_EQ(scene.IsSelected(station), inside ? include : before) << left << " " << right << " " << station;
      }
    }
  }
}

TEST_F(FiveStations, AreDescribedAndCopied) {
  double x = 0;
  double y = 0;
  EXPECT_TRUE(scene.plot.GetPlace(3, x, y));
  EXPECT_EQ(std::pair(x, y), std::pair(4.0, 6.0));
  EXPECT_FALSE(scene.plot.GetPlace(2, x, y)) << "a null has no place";
  EXPECT_EQ(scene.plot.Describe(3), "station 4: zinc 6");
  EXPECT_EQ(scene.plot.GetDataText(), "Station Index\tzinc\n1\t2\n2\t4\n3\t\n4\t6\n5\t7\n");
}

TEST_F(FiveStations, AreDrawnInThePapersColours) {
  auto& colours = scene.container.colours;
  colours.paper = 0x202020;
  colours.text = 0xe0e0e0;
  scene.SelectBetween(2, 2.4);
  const auto dc = scene.Draw();
  EXPECT_TRUE(dc.LinesOf(kBlack).empty()) << "black on dark paper";
  EXPECT_FALSE(dc.LinesOf(colours.text, 0).empty());
  EXPECT_FALSE(dc.LinesOf(colours.ForPaper(kRed), 0).empty());
}

// A view between two stations shows the line that passes through it.
TEST_F(FiveStations, ReachIntoAViewBetweenThem) {
  scene.Show(4.4, 4.6, 6, 7);
  const auto dc = scene.Draw();
  ASSERT_EQ(dc.lines.size(), 1u);
  const auto& points = dc.lines.front().points;
  EXPECT_LE(points.front().x, 100);
  EXPECT_GE(points.back().x, 600);
}

TEST(UniScatter, AFinerDeviceShowsFractions) {
  class FineDC : public RecorderDC {
   public:
    using RecorderDC::RecorderDC;
    double GetScale() const override { return 2; }
  };
  auto table = TableFrom("v\n1\n1.025\n1\n");
  Scene scene(table, 0, 500, 200);
  scene.Show(0, 10, 0, 10);
  FineDC dc(scene.GetSize());
  scene.plot.Render_OwnerDraw(dc);
  EXPECT_EQ(dc.lines.front().points,
            (Points{{125, 230}, {150, 230}, {175, 230}, {200, 229.5}, {225, 230}, {250, 230}, {275, 230}}));
}

// Tables in which nothing, or not everything, can be drawn.
TEST(UniScatter, DrawsWhatHasAPlace) {
  struct Case {
    const char* what;
    std::vector<double> values;
    bool allNull;
    std::size_t lines;
    const char* reason;
  };
  for (const auto& each : {
           Case{"empty", {}, false, 0, "The table has no stations"},
           Case{"all null", {1, 2, 3}, true, 0, "No valid values in om"},
           Case{"one station", {5}, false, 1, ""},
           Case{"constant", {5, 5, 5}, false, 1, ""},
           Case{"constant and large", {1e9, 1e9}, false, 1, ""},
           Case{"NaN breaks the trace", {1, 2, kNaN, 3, 4}, false, 2, ""},
           Case{"infinities too", {1, kInfinity, 3, -kInfinity, 4}, false, 3, ""},
           Case{"nothing but infinities", {kInfinity, -kInfinity}, false, 0, ""},
       }) {
    auto column = made::Column(each.values, "om");
    if (each.allNull) column = made::WithNulls(column, made::Every(1));
    CMadeTable table({column});
    Scene scene(table);
    const auto dc = scene.Draw();
    EXPECT_EQ(dc.lines.size(), each.lines) << each.what;
    EXPECT_EQ(scene.plot.GetEmptyReason(), each.reason) << each.what;
    for (const auto& line : dc.lines) {
      for (const auto& point : line.points) {
        EXPECT_TRUE(std::isfinite(point.x) && point.y >= 50 && point.y <= 450) << each.what;
      }
    }
  }
}

TEST(UniScatter, DoesNothingWithoutACalculator) {
  CUPlotX_Uni_Scatter plot;
  RecorderDC dc({800, 600});
  CRect rect{0, 0, 10, 10};
  CPoint point;
  plot.Render_OwnerDraw(dc);
  EXPECT_TRUE(dc.lines.empty());
  EXPECT_FALSE(plot.Select(rect, true));
  EXPECT_FALSE(plot.Select(point, true));
  EXPECT_FALSE(plot.Select(true)) << "a polygon selects nothing on a trace";
  EXPECT_EQ(plot.GetDataText(), "");
}

}  // namespace
}  // namespace tallyscope
