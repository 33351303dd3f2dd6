// SPDX-License-Identifier: MIT
// What the histogram draws from its bins, how it groups them, and its red parts through a history of selections.
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <numeric>
#include <random>

#include "outside/plot/PlotListener.h"
#include "platform/core/NumberText.h"
#include "plots/UPlotX_Uni_Histogram.h"
#include "statistics/Stats_RgnIndexList.h"
#include "statistics/Stats_RgnInvert.h"
#include "statistics/Stats_RgnSelAll.h"
#include "tests/plots/UnivariateScene.h"
#include "tests/support/Made.h"

namespace tallyscope {
namespace {

constexpr COLORREF kBlack = 0;
constexpr COLORREF kRed = 0xff;
constexpr COLORREF kGreen = 0xff00;
constexpr COLORREF kBlue = 0xff0000;

using Points = std::vector<DrawPoint>;
using Rects = std::vector<DrawRect>;
using Scene = UnivariateScene<CUPlotX_Uni_Histogram>;

Rects RectsOf(const RecorderDC& dc, COLORREF colour) {
  Rects rects;
  for (const auto& fill : dc.FillsOf(colour)) rects.push_back(fill.rect);
  return rects;
}

// Four bins of width 1 with 1, 2, 0 and 1 stations in a frame of 400 x 200 pixels, 100 pixels a unit.
class FourBins : public ::testing::Test {
 protected:
  CMadeTable table = TableFrom("zinc\n0\n1\n1.5\n-\n4\n");
  Scene scene{table, 0, 400, 200};
};

TEST_F(FourBins, AreBarsOfTheValuesThatTheyHold) {
  const auto dc = scene.Draw();
  EXPECT_EQ(scene.plot.binsPerBar, 1);
  EXPECT_EQ(scene.plot.scale, 0.5);
  EXPECT_EQ(RectsOf(dc, kBlue), (Rects{{100, 150, 101, 250}, {200, 50, 250, 250}, {499, 150, 500, 250}}));
  EXPECT_TRUE(RectsOf(dc, kRed).empty());
  EXPECT_EQ(dc.fills.front().clip, (DrawRect{100, 50, 500, 250}));
}

TEST_F(FourBins, AreOverlaidByTheCumulativeCurveAndTheQuartiles) {
  const auto dc = scene.Draw();
  const auto curves = dc.LinesOf(kGreen, 2);
  ASSERT_EQ(curves.size(), 2u) << "the curve and its sample in the legend";
  EXPECT_EQ(curves[0].points, (Points{{150, 200}, {250, 100}, {350, 100}, {450, 50}}));
  EXPECT_EQ(curves[1].points, (Points{{100, 35}, {132, 35}}));
  EXPECT_TRUE(dc.HasText("Cumulative histogram"));
  const auto quartiles = dc.LinesOf(kBlack, 2);
  ASSERT_EQ(quartiles.size(), 2u);
  EXPECT_EQ(scene.figures.upperQuartile, 1.5);
  EXPECT_EQ(quartiles[0].points, (Points{{100, 200}, {100, 200}, {100, 250}}));
  EXPECT_EQ(quartiles[1].points, (Points{{100, 100}, {250, 100}, {250, 250}}));
}

TEST_F(FourBins, AreRedFromBelowAsFarAsTheyAreSelected) {
  scene.SelectBetween(0.9, 1.2);
  const auto dc = scene.Draw();
  EXPECT_EQ(scene.plot.selectedCounts, (std::vector<int>{0, 1, 0, 0}));
  EXPECT_EQ(RectsOf(dc, kRed), (Rects{{200, 150, 250, 250}}));
  EXPECT_EQ(RectsOf(dc, kBlue), (Rects{{100, 150, 101, 250}, {200, 50, 250, 150}, {499, 150, 500, 250}}));
}

// The mark stands on the middle of a bar's values, or of an empty bin's edges.
TEST_F(FourBins, AreMarkedByAnUprightLine) {
  for (const auto& [bin, x] : {std::pair{0, 100.0}, {1, 225.0}, {2, 350.0}, {3, 500.0}}) {
    scene.plot.hover = bin;
    scene.plot.glance = -1;
    auto dc = scene.Draw();
    ASSERT_EQ(dc.LinesOf(kRed, 2).size(), 1u);
    EXPECT_EQ(dc.LinesOf(kRed, 2).front().points, (Points{{x, 50}, {x, 250}}));
    scene.plot.hover = -1;
    scene.plot.glance = bin;
    dc = scene.Draw();
    ASSERT_EQ(dc.LinesOf(kRed, 1).size(), 1u);
    EXPECT_EQ(dc.LinesOf(kRed, 1).front().points, (Points{{x, 50}, {x, 250}}));
  }
  scene.plot.glance = 4;
  EXPECT_TRUE(scene.Draw().LinesOf(kRed).empty());
}

TEST_F(FourBins, AreDrawnInThePapersColours) {
  auto& colours = scene.container.colours;
  colours.paper = 0x202020;
  colours.text = 0xe0e0e0;
  scene.SelectBetween(0.9, 1.2);
  const auto dc = scene.Draw();
  EXPECT_NE(colours.ForPaper(kBlue), kBlue) << "too dark there";
  EXPECT_EQ(RectsOf(dc, colours.ForPaper(kBlue)).size(), 3u);
  EXPECT_EQ(RectsOf(dc, colours.ForPaper(kRed)).size(), 1u);
  EXPECT_EQ(dc.LinesOf(colours.text, 2).size(), 2u);
}

TEST_F(FourBins, ArePicked) {
  CPoint second{299, 100};
  CPoint third{300, 100};
  CPoint beyond{500, 100};
  EXPECT_FALSE(scene.plot.SelectMove(second, true)) << "no gesture yet";
  EXPECT_FALSE(scene.plot.Select(beyond, true));
  EXPECT_TRUE(scene.plot.Select(second, true));
  EXPECT_EQ(scene.plot.hover, 1);
  EXPECT_TRUE(scene.plot.SelectMove(third, true));
  EXPECT_EQ(scene.plot.hover, 2);
  scene.plot.CancelSelect(third, true);
  EXPECT_EQ(scene.plot.hover, -1);
  EXPECT_EQ(scene.plot.PickAt({299, 260}), -1) << "below the frame";
}

TEST_F(FourBins, AreDescribedAndCopied) {
  EXPECT_EQ(scene.plot.Describe(0), "bin 1: 0 to 1, 1 station");
  scene.SelectBetween(0.9, 1.2);
  EXPECT_EQ(scene.plot.Describe(1), "bin 2: 1 to 2, 2 stations, 1 selected");
  EXPECT_EQ(scene.plot.Describe(4), "");
  const auto before = GetNumberCharacters();
  SetNumberCharacters({",", "."});
  const CString text = scene.plot.GetDataText();
  SetNumberCharacters(before);
  EXPECT_EQ(text.substr(0, text.find('\n')),
            "Bin\tBinMin\tBinCentre\tBinMax\tDataMin\tDataCentre\tDataMax\tCount\tCumulative\tSelected");
  EXPECT_NE(text.find("\n2\t1\t1,5\t2\t1\t1,25\t1,5\t2\t0,75\t1\n3\t2\t2,5\t3\t\t\t\t0\t0,75\t0\n"), CString::npos)
      << text;
}

// The frame's width decides how many bins share a bar; a scale goes with it.
TEST(UniHistogram, GroupsBinsThatAreTooNarrow) {
  auto column = made::Normal(256, 50, 10);
  CMadeTable table({column});
  struct Case {
    int width;
    int binsPerBar;
  };
  for (const auto& each :
       {Case{800, 1}, Case{384, 1}, Case{383, 2}, Case{300, 2}, Case{255, 3}, Case{100, 7}, Case{1, 384}}) {
    Scene scene(table, 0, each.width);
    const auto& bins = scene.figures.binnedHistogram.bins;
    ASSERT_EQ(bins.size(), 256u);
    scene.plot.AddSelRegion(std::make_unique<CStats_RgnSelAll>());
    const auto dc = scene.Draw();
    EXPECT_EQ(scene.plot.binsPerBar, each.binsPerBar) << each.width;
    double highest = 0;
    std::size_t groups = 0;
    for (int first = 0; first < 256; first += each.binsPerBar) {
      double count = 0;
      for (int bin = first; bin < std::min(first + each.binsPerBar, 256); ++bin) {
        count += bins[static_cast<std::size_t>(bin)].count;
      }
      highest = std::max(highest, count);
      groups += count > 0 ? 1 : 0;
    }
    EXPECT_EQ(scene.plot.scale, 1 / highest) << each.width;
    EXPECT_EQ(dc.LinesOf(kBlack, 0).size(), each.binsPerBar > 1 ? groups : 0) << each.width;
    EXPECT_TRUE(RectsOf(dc, kBlue).empty()) << "all are selected";
  }
}

// Left, top and right of each bar, the filling between them, the red part by the group's selected stations.
TEST(UniHistogram, DrawsGroupsInOutlines) {
  // Eight bins of width 1 in eight pixels: three to a bar at 24 / 9 = 2.
  auto table = TableFrom("v\n0\n0\n0\n0.5\n1\n3\n4\n8\n");
  Scene scene(table, 0, 8, 200);
  scene.SelectBetween(0.9, 3.1);
  const auto dc = scene.Draw();
  ASSERT_EQ(scene.plot.binsPerBar, 2);
  EXPECT_EQ(scene.plot.scale, 0.2);
  const auto outlines = dc.LinesOf(kBlack, 0);
  ASSERT_EQ(outlines.size(), 4u);
  EXPECT_EQ(outlines[0].points, (Points{{100, 250}, {100, 50}, {102, 50}, {102, 250}}));
  EXPECT_EQ(outlines[1].points, (Points{{102, 250}, {102, 210}, {104, 210}, {104, 250}}));
  EXPECT_EQ(RectsOf(dc, kRed), (Rects{{101, 210, 102, 250}, {103, 211, 104, 250}}));
  EXPECT_EQ(RectsOf(dc, kBlue), (Rects{{101, 51, 102, 210}, {105, 211, 106, 250}, {107, 211, 108, 250}}));
}

// A station among very many still shows, black and red, a pixel high.
TEST(UniHistogram, ShowsSingleStations) {
  std::vector<double> values(9998, 0.0);
  values.push_back(50);
  values.push_back(100);
  CMadeTable table({made::Column(values)});
  Scene scene(table, 0, 8000, 200);
  scene.SelectBetween(99, 100);
  const auto dc = scene.Draw();
  EXPECT_EQ(RectsOf(dc, kRed), (Rects{{8099, 249, 8100, 250}}));
  const auto blue = RectsOf(dc, kBlue);
  ASSERT_EQ(blue.size(), 2u);
  EXPECT_EQ(blue[1].bottom - blue[1].top, 1);
}

TEST(UniHistogram, ANearerViewUngroupsBinsAndDrawsOnlyTheVisible) {
  CMadeTable table({made::Ramp(256, 0, 256)});
  Scene scene(table, 0, 100);
  scene.Draw();
  EXPECT_EQ(scene.plot.binsPerBar, 7);
  EXPECT_EQ(scene.plot.scale, 1.0 / 7);
  scene.Show(100, 110, 0, 1);
  auto dc = scene.Draw();
  EXPECT_EQ(scene.plot.binsPerBar, 1);
  EXPECT_EQ(scene.plot.scale, 1);
  EXPECT_EQ(dc.fills.size(), 11u) << "bins 100 to 110";
  const auto curve = dc.LinesOf(kGreen, 2).front().points;
  EXPECT_LT(curve.front().x, 100) << "the curve comes in from outside";
  EXPECT_GT(curve.back().x, 200);
  scene.Show(-1000, -900, 0, 1);
  EXPECT_LE(scene.Draw().fills.size(), 2u);
}

class SelectedCounts : public ::testing::Test {
 protected:
  static constexpr int kStations = 5000;

  // Counted one by one.
  std::vector<int> PlainCounts() {
    auto& histogram = scene.figures.binnedHistogram;
    std::vector<int> counts(histogram.bins.size());
    for (int station = 0; station < kStations; ++station) {
      double value = 0;
      if (!scene.IsSelected(station) || !table.CStats_Data::GetValue(0, station, value)) continue;
      ++counts[static_cast<std::size_t>(histogram.GetBinIndex(value))];
    }
    return counts;
  }
  int Count() { return std::accumulate(scene.plot.selectedCounts.begin(), scene.plot.selectedCounts.end(), 0); }

  CMadeTable table{{made::WithNulls(made::Rounded(made::Normal(kStations, 40, 12), 0.25), made::Every(7))}};
  Scene scene{table};
};

TEST_F(SelectedCounts, FollowTheSelectionThroughUndoAndRedo) {
  auto& plot = scene.plot;
  std::vector<std::vector<int>> history;
  const auto note = [&] {
    EXPECT_EQ(plot.selectedCounts, PlainCounts());
    history.push_back(plot.selectedCounts);
  };
  plot.ResetSelCount();
  note();
  scene.SelectBetween(30, 50);
  note();
  scene.SelectBetween(35, 37, false);
  note();
  plot.AddSelRegion(std::make_unique<CStats_RgnInvert>());
  note();
  const int all = static_cast<int>(scene.figures.valid);
  EXPECT_EQ(std::accumulate(history[2].begin(), history[2].end(), 0) + Count(), all);
  for (int back : {2, 1, 0}) {
    plot.ClearLastSelRegion();
    EXPECT_EQ(plot.selectedCounts, history[static_cast<std::size_t>(back)]);
  }
  for (int forth : {1, 2, 3}) {
    plot.RestoreLastSelRegion();
    EXPECT_EQ(plot.selectedCounts, history[static_cast<std::size_t>(forth)]);
  }
  plot.ClearAllSelRegion();
  EXPECT_EQ(Count(), 0);
}

TEST_F(SelectedCounts, AreThereWhenASelectionIsTold) {
  struct Window : CPlotListener {
    void OnSelectionMade() override { check(); }
    std::function<void()> check;
  } window;
  int told = 0;
  window.check = [&] {
    EXPECT_EQ(scene.plot.selectedCounts, PlainCounts());
    ++told;
  };
  scene.container.SetWindow(&window);
  scene.SelectBetween(30, 50);
  scene.plot.ClearLastSelRegion();
  scene.plot.RestoreLastSelRegion();
  EXPECT_EQ(told, 3);
  EXPECT_GT(Count(), 0);
}

TEST_F(SelectedCounts, OfScatteredStationsAreThoseOfAPlainLoop) {
  std::mt19937 random(3);
  for (const int step : {1, 2, 9, 700, kStations}) {
    scene.plot.ClearAllSelRegion();
    auto region = std::make_unique<CStats_RgnIndexList>();
    for (int station = static_cast<int>(random() % static_cast<unsigned>(step)); station < kStations;
         station += 1 + static_cast<int>(random() % static_cast<unsigned>(step))) {
      region->stations.push_back(station);
    }
    scene.plot.AddSelRegion(std::move(region));
    EXPECT_EQ(scene.plot.selectedCounts, PlainCounts()) << step;
  }
}

TEST_F(SelectedCounts, ARectangleTakesTheValuesBetweenItsSides) {
  for (const auto& [left, right] : {std::pair{30.1, 50.1}, {-100.0, 35.05}, {60.2, 1000.0}, {40.05, 40.15}}) {
    scene.plot.ClearAllSelRegion();
    scene.SelectBetween(left, right);
    const auto side = [&](double at) {
      return scene.plot.Device2World(std::round(scene.plot.World2Device(at, 0)[0]), 0)[0];
    };
    for (int station = 0; station < kStations; ++station) {
      double value = 0;
      const bool inside = table.CStats_Data::GetValue(0, station, value) && value >= side(left) && value <= side(right);
      ASSERT_EQ(scene.IsSelected(station), inside) << station << " " << value;
    }
  }
}

// Values repeat and stand on the edges of bins.
TEST_F(SelectedCounts, TheRegionOfABinHoldsItsStations) {
  for (int bin = 0; bin < scene.plot.GetHoverCount(); bin += 17) {
    scene.plot.ClearAllSelRegion();
    auto region = scene.plot.MakeRegionOf(bin);
    const double count = scene.figures.binnedHistogram.bins[static_cast<std::size_t>(bin)].count;
    ASSERT_EQ(region != nullptr, count > 0) << bin;
    if (region == nullptr) continue;
    scene.plot.AddSelRegion(std::move(region));
    EXPECT_EQ(Count(), count) << bin;
    scene.plot.AddSelRegion(scene.plot.MakeRegionOf(bin));
    EXPECT_EQ(Count(), 0) << "again takes them out";
  }
}

// Fields of which no histogram can be drawn say why.
TEST(UniHistogram, SaysWhyThereIsNothingToSee) {
  struct Case {
    std::vector<double> values;
    bool allNull;
    const char* reason;
  };
  for (const auto& each : {
           Case{{}, false, "The table has no stations"},
           Case{{1, 2}, true, "No valid values in om"},
           Case{{7, 7, 7}, false, "All valid values in om are 7"},
           Case{{7}, false, "All valid values in om are 7"},
           Case{{1, std::numeric_limits<double>::infinity()}, false, "No bins in om: it has infinite values"},
           Case{{-1e308, 1e308, 0}, false, "No bins in om: its values lie too far apart"},
           Case{{1, 2}, false, ""},
       }) {
    auto column = made::Column(each.values, "om");
    if (each.allNull) column = made::WithNulls(column, made::Every(1));
    CMadeTable table({column});
    Scene scene(table);
    const auto dc = scene.Draw();
    EXPECT_EQ(scene.plot.GetEmptyReason(), each.reason);
    EXPECT_EQ(dc.fills.empty() && dc.lines.empty(), *each.reason != '\0') << each.reason;
    CPoint point{300, 100};
    EXPECT_EQ(scene.plot.Select(point, true), *each.reason == '\0');
    EXPECT_TRUE(std::isfinite(scene.plot.GetVisible().max[0]));
  }
}

TEST(UniHistogram, DoesNothingWithoutACalculator) {
  CUPlotX_Uni_Histogram plot;
  RecorderDC dc({800, 600});
  CRect rect{0, 0, 10, 10};
  plot.Render_OwnerDraw(dc);
  EXPECT_TRUE(dc.lines.empty());
  EXPECT_FALSE(plot.Select(rect, true));
  EXPECT_FALSE(plot.Select(true)) << "a polygon selects nothing on a histogram";
  plot.ResetSelCount();
  EXPECT_TRUE(plot.selectedCounts.empty());
}

}  // namespace
}  // namespace tallyscope
