// SPDX-License-Identifier: MIT
// The curves of the scatter of two fields, and their legend.
#include <gtest/gtest.h>

#include <cmath>

#include "statistics/Stats_Univariate.h"
#include "tests/plots/ScatterTesting.h"

namespace tallyscope {
namespace {

using namespace testing_plots;

constexpr COLORREF kBlue = 0xff0000;
constexpr COLORREF kGreen = 0x00ff00;
constexpr COLORREF kMagenta = 0xff00ff;

std::vector<DrawPoint> CurveOf(const RecorderDC& dc, COLORREF colour) {
  for (const auto& line : dc.LinesOf(colour, 2)) {
    if (line.clip == ToDrawRect(kFrame)) return line.points;
  }
  return {};
}

CMadeTable Cloud(int stations) {
  auto x = made::Normal(stations, 128, 30, 1);
  auto y = made::Normal(stations, 0, 10, 2);
  for (int i = 0; i < stations; ++i) y.values[i] += 0.7 * x.values[i];
  return CMadeTable({made::WithNulls(std::move(x), made::Every(7)), made::WithNulls(std::move(y), made::Every(5))});
}

void ExpectPlace(const View& view, const DrawPoint& point, double x, double y) {
  const auto at = view.plot.World2Device(x, y);
  EXPECT_NEAR(point.x, at[0], 1e-6);
  EXPECT_NEAR(point.y, at[1], 1e-6);
}

TEST(ScatterCurves, StandWhereTheFiguresAre) {
  for (const bool links : {true, false}) {
    auto table = Cloud(3000);
    BiView view(table);
    CStats_Univariate x, y;
    x.Add(&table, 0);
    y.Add(&table, 1);
    if (links) view.pair.xLink = &x;
    if (links) view.pair.yLink = &y;
    view.Show(100, 50, 140, 130);  // zoomed: the line still runs from edge to edge
    const auto dc = view.Draw();

    const auto line = CurveOf(dc, kBlue);
    ASSERT_EQ(line.size(), 101U);
    for (int i = 0; i <= 100; ++i) {
      const double at = 100 + 0.4 * i;
      ExpectPlace(view, line[i], at, view.pair.displayLine[0] * at + view.pair.displayLine[1]);
    }
    const auto expectation = CurveOf(dc, kGreen);
    ASSERT_EQ(expectation.size(), view.pair.expectationX.size());
    ASSERT_GT(expectation.size(), 30U);
    for (std::size_t i = 0; i < expectation.size(); ++i) {
      ExpectPlace(view, expectation[i], view.pair.expectationX[i], view.pair.expectationYGivenX[i]);
    }
    x.Calculate(8, nullptr);
    y.Calculate(8, nullptr);
    const auto quantiles = CurveOf(dc, kMagenta);
    ASSERT_EQ(quantiles.size(), 19U);
    for (int i = 0; i < 19; ++i) {
      const double part = (i + 1) * 5 / 100.0;
      ExpectPlace(view, quantiles[i], x.binnedHistogram.GetPercentile(part), y.binnedHistogram.GetPercentile(part));
    }
  }
}

TEST(ScatterCurves, AreOnTopOfTheMarksInOrder) {
  auto table = Cloud(100);
  BiView view(table);
  const auto dc = view.Draw();
  std::vector<COLORREF> colours;
  for (const auto& line : dc.lines) colours.push_back(line.pen.colour);
  EXPECT_EQ(colours, (std::vector{kBlue, kGreen, kMagenta, kBlue, kGreen, kMagenta}));  // curves, legend
}

// In more than colour: the line is bare, the expectation has squares, the quantiles have diamonds.
TEST(ScatterCurves, AreToldApartByMarkers) {
  auto table = Cloud(3000);
  BiView view(table);
  const auto dc = view.Draw();
  EXPECT_TRUE(dc.FillsOf(kBlue).empty());
  EXPECT_EQ(dc.FillsOf(kGreen).size(), view.pair.expectationX.size() + 1);  // and in the legend
  EXPECT_EQ(dc.areas.size(), 20U);
  EXPECT_EQ(dc.areas.front().brush, kMagenta);
  view.Show(1e6, 1e6, 2e6, 2e6);  // points far off aren't marked
  EXPECT_EQ(view.Draw().areas.size(), 1U);
}

TEST(ScatterCurves, OfAConstantField) {
  auto constantX = TableFrom("U V\n5 1\n5 2\n5 3\n5 4\n");
  BiView upright(constantX);
  upright.Show(0, 0, 8, 8);
  auto line = CurveOf(upright.Draw(), kBlue);
  ASSERT_EQ(line.size(), 101U);
  ExpectPlace(upright, line.front(), 5, 0);
  ExpectPlace(upright, line.back(), 5, 8);

  auto constantY = TableFrom("U V\n1 5\n2 5\n3 5\n4 5\n");
  BiView level(constantY);
  level.Show(0, 0, 8, 8);
  line = CurveOf(level.Draw(), kBlue);
  ASSERT_EQ(line.size(), 101U);
  ExpectPlace(level, line.front(), 0, 5);
  ExpectPlace(level, line.back(), 8, 5);
}

TEST(ScatterCurves, NeedPairs) {
  for (const char* text : {"U V\n", "U V\n1 -\n- 2\n"}) {
    auto table = TableFrom(text);
    BiView view(table);
    const auto dc = view.Draw();
    EXPECT_TRUE(CurveOf(dc, kBlue).empty() && CurveOf(dc, kGreen).empty() && CurveOf(dc, kMagenta).empty()) << text;
  }
  // A line that can't be solved for Y has no points; the other curves stand.
  auto table = TableFrom("U V\n0 0\n1 1\n2 0\n");
  BiView view(table);
  view.pair.displayLine = {HUGE_VAL, -HUGE_VAL};
  const auto dc = view.Draw();
  EXPECT_TRUE(CurveOf(dc, kBlue).empty());
  EXPECT_EQ(CurveOf(dc, kMagenta).size(), 19U);
}

TEST(ScatterCurves, OnALogarithmicAxisTheLineIsEven) {
  auto table = TableFrom("U V\n1 1\n10 10\n100 100\n1000 1000\n");
  BiView view(table);
  view.plot.maps[0] = {AxisMap::kLogarithmic, 1};
  view.Show(0, 0, 4, 1000);
  const auto line = CurveOf(view.Draw(), kBlue);
  ASSERT_EQ(line.size(), 101U);
  EXPECT_NEAR(line[50].x - line[49].x, 2.56, 1e-9);
  ExpectPlace(view, line[50], 10, view.pair.displayLine[0] * 10 + view.pair.displayLine[1]);
}

TEST(ScatterCurves, LegendStandsAtThirds) {
  auto table = Cloud(100);
  BiView view(table);
  view.Show(0, 0, 256, 256);
  const auto dc = view.Draw();
  const CRect strip = view.plot.GetLegend();
  ASSERT_EQ(dc.texts.size(), 3U);
  const char* names[] = {"Linear regression", "Conditional expectation", "q-q quantile curve"};
  const COLORREF colours[] = {kBlue, kGreen, kMagenta};
  for (int i = 0; i < 3; ++i) {
    const double left = strip.left + i * strip.Width() / 3.0;
    EXPECT_EQ(dc.texts[i].text, names[i]);
    EXPECT_EQ(dc.texts[i].place, (DrawPoint{left + 40, strip.bottom - 2.0}));
    EXPECT_EQ(dc.texts[i].points, 7);
    EXPECT_EQ(dc.texts[i].face, "Arial");
    EXPECT_EQ(dc.texts[i].line, TextLine::kBottom);
    const auto sample = dc.LinesOf(colours[i], 2).back();
    EXPECT_EQ(sample.clip, view.plot.Clip2Client());
    EXPECT_EQ(sample.points, (std::vector{DrawPoint{left, 12}, DrawPoint{left + 32, 12}}));
  }
  // A map has neither.
  auto axes = TableFrom("X Y\n1 1\n2 2\n");
  StView map(axes);
  EXPECT_TRUE(map.Draw().lines.empty() && map.Draw().texts.empty());
  EXPECT_FALSE(map.plot.hasLegend);
}

}  // namespace
}  // namespace tallyscope
