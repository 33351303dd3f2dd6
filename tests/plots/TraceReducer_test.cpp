// SPDX-License-Identifier: MIT
// The trace of many stations, column by column of pixels, against its plain drawing station by station.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

#include "plots/UPlotX_Uni_Scatter.h"
#include "statistics/Stats_RgnIndexList.h"
#include "statistics/Stats_RgnIndexRange.h"
#include "tests/plots/TraceCoverage.h"
#include "tests/plots/UnivariateScene.h"
#include "tests/support/Made.h"

namespace tallyscope {
namespace {

constexpr COLORREF kRed = 0xff;
constexpr int kStations = 40000;

using Scene = UnivariateScene<CUPlotX_Uni_Scatter>;

MadeColumn Walk(int stations) {
  std::mt19937 random(11);
  std::normal_distribution<double> step;
  std::vector<double> values;
  double value = 0;
  for (int i = 0; i < stations; ++i) values.push_back(value += step(random));
  return made::Column(std::move(values));
}

std::function<bool(int)> Sometimes(double part, unsigned seed) {
  std::vector<bool> is(kStations);
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> chance;
  for (int i = 0; i < kStations; ++i) is[static_cast<std::size_t>(i)] = chance(random) < part;
  return [is = std::move(is)](int station) { return is[static_cast<std::size_t>(station)]; };
}

// Runs of about `length` stations that are null, and as many that aren't.
std::function<bool(int)> InRuns(int length) {
  return [length](int station) { return station / length % 2 == 1; };
}

void Select(Scene& scene, const std::function<bool(int)>& is) {
  auto region = std::make_unique<CStats_RgnIndexList>();
  for (int i = 0; i < kStations; ++i) {
    if (is(i)) region->stations.push_back(i);
  }
  scene.plot.AddSelRegion(std::move(region));
}

// What a drawing covers; of a colour, or of all.
TraceCoverage Cover(const Scene& scene, const RecorderDC& dc, long colour = -1) {
  TraceCoverage coverage(scene.plot.Clip2Data());
  for (const auto& line : dc.lines) {
    if (colour < 0 || line.pen.colour == static_cast<COLORREF>(colour)) coverage.AddLine(line);
  }
  for (const auto& fill : dc.fills) {
    if (colour < 0 || fill.colour == static_cast<COLORREF>(colour)) coverage.AddFill(fill);
  }
  return coverage;
}

RecorderDC DrawPlain(Scene& scene) {
  RecorderDC dc(scene.GetSize());
  scene.plot.Prepare(nullptr);
  scene.plot.RenderPlain(dc);
  return dc;
}

void ExpectSamePixels(Scene& scene, const std::string& what) {
  const auto plain = DrawPlain(scene);
  for (const bool again : {false, true}) {  // the second time from what is kept
    const auto reduced = scene.Draw();
    EXPECT_TRUE(reduced.lines.empty()) << what;
    EXPECT_LE(reduced.fills.size(), 4u * 1000) << what;
    EXPECT_EQ(Cover(scene, reduced).GetColumns(), Cover(scene, plain).GetColumns()) << what << again;
    EXPECT_EQ(Cover(scene, reduced, kRed).GetColumns(), Cover(scene, plain, kRed).GetColumns()) << what << again;
  }
}

TEST(TraceReducer, CoversThePixelsOfThePlainDrawing) {
  const auto none = [](int) { return false; };
  struct Case {
    const char* what;
    MadeColumn column;
    std::function<bool(int)> isNull;
  };
  for (const auto& each : {
           Case{"noise", made::Normal(kStations, 10, 3), none},
           Case{"a walk", Walk(kStations), none},
           Case{"a ramp", made::Ramp(kStations, 0.1, 777.3), none},
           Case{"a tenth of nulls", made::Normal(kStations, 10, 3), Sometimes(0.1, 1)},
           Case{"mostly nulls", Walk(kStations), Sometimes(0.99, 2)},
           Case{"runs within a column", Walk(kStations), InRuns(7)},
           Case{"runs about as wide as a column", Walk(kStations), InRuns(53)},
           Case{"long runs", Walk(kStations), InRuns(3000)},
       }) {
    CMadeTable table({made::WithNulls(each.column, each.isNull)});
    Scene scene(table);
    const std::string what = each.what;
    ExpectSamePixels(scene, what);
    scene.Show(1234.5, 9876.5, scene.figures.minimum, scene.figures.maximum);
    ExpectSamePixels(scene, what + ", zoomed");
    if (scene.figures.invalid == 0) {  // a gap within a column is filled, and may be all of it that lies in the frame
      scene.Show(-20000, 60000, scene.figures.mean, scene.figures.maximum * 0.7);
      ExpectSamePixels(scene, what + ", from afar, cut at top and bottom");
    }
    scene.plot.maps[1] = {AxisMap::kLogarithmic, 2.0};
    scene.Show(100, 39000, scene.figures.minimum, scene.figures.maximum);
    ExpectSamePixels(scene, what + ", logarithmic");
  }
}

TEST(TraceReducer, ShowsSelectedStretchesInRed) {
  struct Case {
    const char* what;
    std::function<bool(int)> isSelected;
  };
  for (const auto& each : {
           Case{"one station", [](int station) { return station == 20011; }},
           Case{"the ends", [](int station) { return station == 0 || station == kStations - 1; }},
           Case{"all", [](int) { return true; }},
           Case{"a stretch", [](int station) { return station >= 5000 && station < 17000; }},
           Case{"runs of chunks", InRuns(512)},
           Case{"runs within a column", InRuns(11)},
           Case{"every other", InRuns(1)},
           Case{"a few", Sometimes(0.001, 3)},
           Case{"half", Sometimes(0.5, 4)},
       }) {
    CMadeTable table({made::WithNulls(Walk(kStations), Sometimes(0.05, 5))});
    Scene scene(table);
    Select(scene, each.isSelected);
    ExpectSamePixels(scene, each.what);
    scene.plot.maps[1] = {AxisMap::kLogarithmic, 2.0};
    ExpectSamePixels(scene, std::string(each.what) + ", logarithmic");
    const auto dc = scene.Draw();
    bool wasRed = false;
    for (const auto& fill : dc.fills) {
      EXPECT_TRUE(fill.colour == kRed || !wasRed) << each.what << ": red comes last";
      wasRed = fill.colour == kRed;
    }
  }
}

// A column has the colour of the mean of its stations that show.
TEST(TraceReducer, ColoursAColumnByTheMeanOfItsStations) {
  auto shown = made::Normal(kStations, 0, 1);
  auto colour = made::Ramp(kStations, 0, 255);
  for (int i = 0; i < kStations; i += 3) {
    shown.SetNull(i);
    colour.values[static_cast<std::size_t>(i)] = i % 2 == 0 ? 0 : 255;  // counts for nothing
  }
  CMadeTable table({shown, colour});
  Scene scene(table);
  scene.plot.SetColourDim(2);
  const auto dc = scene.Draw();
  int columns = 0;
  for (const auto& fill : dc.fills) {
    const double station = scene.plot.Device2World(fill.rect.left, 0)[0] - 1;
    const auto entry = std::find(scene.plot.colourTable.begin(), scene.plot.colourTable.end(), fill.colour);
    ASSERT_NE(entry, scene.plot.colourTable.end());
    const double index = static_cast<double>(entry - scene.plot.colourTable.begin());
    EXPECT_NEAR(index, station / kStations * 256, 1.5);
    ++columns;
  }
  EXPECT_GT(columns, 700);
}

TEST(TraceReducer, InfinitiesAndNaNAreGaps) {
  auto column = Walk(kStations);
  for (int i = 5; i < kStations; i += 97) {
    column.values[static_cast<std::size_t>(i)] =
        i % 2 == 0 ? std::numeric_limits<double>::quiet_NaN() : std::numeric_limits<double>::infinity();
  }
  CMadeTable table({column});
  Scene scene(table);
  ExpectSamePixels(scene, "not numbers");
}

// Once seen, a long trace is not read again.
TEST(TraceReducer, APanReadsLittle) {
  class Counting : public CMadeTable {
   public:
    using CMadeTable::CMadeTable;
    int ReadValues(int field, int first, int count, double* values, unsigned char* valid) override {
      read += count;
      return CMadeTable::ReadValues(field, first, count, values, valid);
    }
    long read = 0;
  };
  constexpr int kMany = 4'000'000;
  Counting table({made::Ramp(kMany, 0, 1)});
  Scene scene(table);
  scene.Draw();
  table.read = 0;
  scene.plot.Pan(-100, 0, 1);
  scene.Draw();
  EXPECT_LT(table.read, kMany / 4);
}

}  // namespace
}  // namespace tallyscope
