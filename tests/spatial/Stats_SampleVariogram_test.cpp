// SPDX-License-Identifier: MIT
#include "spatial/Stats_SampleVariogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "LagGridReferee.h"
#include "SpatialTesting.h"
#include "spatial/Stats_LagGridData.h"
#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_VariogramData.h"
#include "statistics/ProgressSink.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope::testing_spatial {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

CMadeTable MakeField(int axes, int stations, double side) {
  std::vector<std::vector<double>> columns(static_cast<std::size_t>(axes) + 1);
  for (int axis = 0; axis < axes; ++axis) {
    const auto column = made::Normal(stations, 0, side, static_cast<unsigned>(axis) + 1);
    columns[static_cast<std::size_t>(axis)] = column.values;
  }
  for (int i = 0; i < stations; ++i) {
    const auto s = static_cast<std::size_t>(i);
    columns.back().push_back(std::sin(columns[0][s] / side) + 0.1 * (i % 9));
  }
  return Table(axes, columns);
}

// The curves, bin by bin and lag by lag.
struct PlainCurve {
  std::vector<double> lag, weight, covariance, moment;
};

double GetWeight(std::size_t bin, double step, double angle, double tolerance) {
  double weight = 0;
  for (int turn = -1; turn <= 1; ++turn) {
    const double low = std::max(static_cast<double>(bin) * step, angle + turn * 2 * kPi - tolerance);
    const double high = std::min(static_cast<double>(bin + 1) * step, angle + turn * 2 * kPi + tolerance);
    if (high > low) weight = (high - low) / step;
  }
  return weight;
}

PlainCurve ReadPlainly(CStats_SampleVariogram& variogram, double direction, double dip, double tolerance) {
  PlainCurve curve;
  const auto& grid = variogram.grid;
  const double t = tolerance * kPi / 180;
  for (std::size_t lag = 0; lag < grid[0][0].size(); ++lag) {
    double weights = 0, covariance = 0, moment = 0;
    for (std::size_t level = 0; level < grid.size(); ++level) {
      double ofLevel = level == 0 ? 1 : 0;
      if (variogram.GetSpatialDimCount() == 3) {
        ofLevel = GetWeight(level, kPi / static_cast<double>(grid.size()), (90 - dip) * kPi / 180, t);
      }
      for (std::size_t row = 0; row < grid[level].size(); ++row) {
        const double step = 2 * kPi / static_cast<double>(grid[level].size());
        const LagCell& cell = grid[level][row][lag];
        const double weight = cell.count * GetWeight(row, step, (90 - direction) * kPi / 180, t) * ofLevel;
        weights += weight;
        covariance += cell.covariance * weight;
        moment += cell.moment * weight;
      }
    }
    if (!(weights > 0)) continue;
    curve.lag.push_back((static_cast<double>(lag) + 0.5) * variogram.lagRange[0] / variogram.lagCount[0]);
    curve.weight.push_back(weights);
    curve.covariance.push_back(covariance / weights);
    curve.moment.push_back(moment / weights);
  }
  return curve;
}

class SampleVariogram : public ::testing::Test {
 protected:
  void Compute(CMadeTable& table, double range, int limit = 0) {
    variogram.Clear();
    variogram.Add(&table, 0);
    variogram.ResetSpatialDims();
    variogram.CalcVariogram(0, range, limit, nullptr);
    ASSERT_EQ(variogram.GetFlags(0), 4);
  }
  void Put(const std::array<std::size_t, 3>& at, const LagCell& cell) {
    LagGrid::Cells cells = variogram.grid.GetCells();
    cells[at[0]][at[1]][at[2]] = cell;
    variogram.grid = LagGrid(variogram.grid.GetSettings(), std::move(cells));
  }

  CStats_SampleVariogram variogram;
  CStats_VariogramData curve;
};

TEST_F(SampleVariogram, CurvesWeighBinsByTheirShareOfTheWindow) {
  for (const int axes : {2, 3}) {
    CMadeTable table = MakeField(axes, 400, 10);
    Compute(table, 25);
    EXPECT_EQ(variogram.lagCount, axes == 3 ? (std::array<int, 3>{25, 36, 18}) : (std::array<int, 3>{50, 72, 36}));
    for (const double direction : {0.0, 33.0, 90.0, 271.5, -400.0}) {
      for (const double dip : {0.0, 45.0, -90.0, 90.0}) {
        for (const double tolerance : {0.0, 1.0, 22.5, 90.0, 200.0}) {
          SCOPED_TRACE(testing::Message() << direction << " " << dip << " " << tolerance);
          const PlainCurve plain = ReadPlainly(variogram, direction, dip, tolerance);
          ASSERT_TRUE(variogram.GetVariogramData(curve, direction, dip, tolerance));
          ASSERT_EQ(curve.GetSize(), static_cast<int>(plain.lag.size()));
          for (std::size_t i = 0; i < plain.lag.size(); ++i) {
            EXPECT_DOUBLE_EQ(curve.lag[i], plain.lag[i]);
            EXPECT_NEAR(curve.pairCount[i], plain.weight[i] - 0.5, 0.5 + 1e-9);
            EXPECT_NEAR(curve.covariance[i], plain.covariance[i], 1e-12);
            EXPECT_NEAR(curve.momentOfInertia[i], plain.moment[i], 1e-12);
          }
        }
      }
    }
  }
}

TEST_F(SampleVariogram, OmnidirectionalCurveCountsEachPairTwice) {
  CMadeTable table = Table(2, {{0, 3, 0}, {0, 0, 4}, {1, 2, 4}});
  Compute(table, 50);  // distances 3, 4 and 5 in lags of 1
  ASSERT_TRUE(variogram.GetVariogramData(curve));
  EXPECT_EQ(curve.lag, (std::vector<double>{3.5, 4.5, 5.5}));
  EXPECT_EQ(curve.pairCount, (std::vector<int>{2, 2, 2}));
  EXPECT_EQ(curve.momentOfInertia, (std::vector<double>{0.5, 4.5, 2}));
  EXPECT_EQ(curve.GetValue(2, 0), 2);
  const double mean = 7.0 / 3;
  EXPECT_DOUBLE_EQ(curve.covariance[1], (1 - mean) * (4 - mean));
  // East is met from both ends of the circle; north is the pair 4 apart alone.
  ASSERT_TRUE(variogram.GetVariogramData(curve, 90, 0, 5));
  EXPECT_EQ(curve.lag, (std::vector<double>{3.5}));
  ASSERT_TRUE(variogram.GetVariogramData(curve, 0, 0, 5));
  EXPECT_EQ(curve.lag, (std::vector<double>{4.5}));
  EXPECT_EQ(curve.GetValue(-1, 0), 4.5);
  EXPECT_EQ(curve.GetValue(0, 0), 4.5);
  // A Cartesian grid has no curves and leaves the data alone.
  LagSettings settings = variogram.grid.GetSettings();
  settings.flags &= ~static_cast<unsigned>(CStats_Spatial::kPolar);
  variogram.grid = LagGrid(settings, variogram.grid.GetCells());
  EXPECT_FALSE(variogram.GetVariogramData(curve));
  EXPECT_FALSE(variogram.GetVariogramData(curve, 0, 0, 5));
  EXPECT_EQ(curve.GetSize(), 1);
}

// 50,000 stations have more pairs than an int counts: each cell or the sum of some.
TEST_F(SampleVariogram, PairCountsGoBeyondAnInt) {
  constexpr int kMost = std::numeric_limits<int>::max();
  CMadeTable table = Table(2, {{0, 3}, {0, 0}, {1, 2}});
  Compute(table, 50);
  constexpr std::int64_t kMany = 3'000'000'000;
  Put({0, 0, 3}, {kMost, -0.5, 2, kMany});
  Put({0, 36, 3}, {kMost, -0.5, 4, 2 * kMany});
  const VariogramCurve full = variogram.GetCurve();
  EXPECT_EQ(full.pairCount, std::vector<std::int64_t>{3 * kMany});
  EXPECT_DOUBLE_EQ(full.momentOfInertia[0], 10.0 / 3);
  ASSERT_TRUE(variogram.GetVariogramData(curve));
  EXPECT_EQ(curve.pairCount, std::vector<int>{kMost});
  EXPECT_EQ(variogram.GetCurve(90, 0, 5).pairCount, std::vector<std::int64_t>{kMany});
  ASSERT_TRUE(variogram.GetVariogramData(curve, 90, 0, 5));
  EXPECT_EQ(curve.pairCount, std::vector<int>{kMost});
  EXPECT_EQ(CStats_LagGridData(&variogram).GetValue(2, 3), 3e9);
}

// A dip is positive downwards: the pair from (0, 0, 0) to (0.05, 1, -1.1) dips 48 degrees to the north.
TEST_F(SampleVariogram, DipsPointDown) {
  CMadeTable table = Table(3, {{0, 0.05}, {0, 1}, {0, -1.1}, {1, 2}});
  Compute(table, 50);
  variogram.GetVariogramData(curve, 0, 45, 8);
  EXPECT_EQ(curve.GetSize(), 1);
  variogram.GetVariogramData(curve, 0, -45, 8);
  EXPECT_EQ(curve.GetSize(), 0);
  variogram.GetVariogramData(curve, 180, -45, 8);  // the other sense
  EXPECT_EQ(curve.GetSize(), 1);
}

TEST_F(SampleVariogram, DefaultRange) {
  // One leaf of four stations on a square of 30: its box is 30.06 wide, so a spacing of 2 sqrt(30.06^2 / 4 / pi).
  CMadeTable square = Table(2, {{0, 30, 0, 30}, {0, 0, 30, 30}, {1, 2, 3, 4}});
  Compute(square, 0);
  EXPECT_EQ(variogram.lagRange[0], 170);  // 169.6
  EXPECT_EQ(variogram.lagRange[2], 170);
  CMadeTable single = Table(2, {{5}, {5}, {1}});
  Compute(single, -1);
  EXPECT_EQ(variogram.lagRange[0], 1000);
  CMadeTable none = Table(2, {{}, {}, {}});
  Compute(none, 0);
  EXPECT_EQ(variogram.lagRange[0], 1000);
  // One axis: a quarter of the spread.
  CMadeTable line = Table(1, {{0, 4936, 100}, {1, 2, 3}});
  Compute(line, 0);
  EXPECT_EQ(variogram.lagRange[0], 1200);  // of 1234
  CMadeTable constant = Table(1, {{7, 7, 7}, {1, 2, 3}});
  Compute(constant, 0);
  EXPECT_EQ(variogram.lagRange[0], 1000);
  CMadeTable short_ = Table(1, {{0, 0.1, 0.2}, {1, 2, 3}});
  Compute(short_, 0);
  EXPECT_DOUBLE_EQ(variogram.lagRange[0], 0.05);
  // The axes are far apart, but the calculator's own dims are fields.
  CMadeTable fields = Table(2, {{0, 9e6, 0, 9e6}, {0, 0, 9e6, 9e6}, {0, 30, 0, 30}, {0, 0, 30, 30}, {1, 2, 3, 4}});
  variogram.Clear();
  variogram.Add(&fields, 2);
  variogram.SetSpatialDims(0, 1, -3, 2);
  variogram.CalcVariogram(0, 0, 0, nullptr);
  EXPECT_EQ(variogram.lagRange[0], 170);
  // A co-ordinate that isn't finite counts for nothing.
  CMadeTable infinite = Table(2, {{0, 30, kInfinity, 0, 30, 8}, {0, 0, 5, 30, 30, -kInfinity}, {1, 2, 3, 3, 4, 5}});
  Compute(infinite, 0);
  EXPECT_EQ(variogram.lagRange[0], 170);
  CMadeTable infiniteLine = Table(1, {{0, 4936, kInfinity, 100}, {1, 2, 3, 3}});
  Compute(infiniteLine, 0);
  EXPECT_EQ(variogram.lagRange[0], 1200);
  CMadeTable noAxes = Table(0, {{1, 2, 3}});
  Compute(noAxes, 0);
  EXPECT_EQ(variogram.lagRange[0], 1000);
  EXPECT_EQ(variogram.grid[0][0][0].count, 6);  // all in one place
}

TEST_F(SampleVariogram, StationsOnALine) {
  CMadeTable table = Table(1, {{0, 3, 10, kNull, 11}, {1, 2, 4, 100, kNull}});
  Compute(table, 50);
  ASSERT_EQ(variogram.grid.size(), 1u);
  ASSERT_EQ(variogram.grid[0].size(), 1u);
  variogram.GetVariogramData(curve);
  EXPECT_EQ(curve.lag, (std::vector<double>{3.5, 7.5, 10.5}));
  EXPECT_EQ(curve.pairCount, (std::vector<int>{2, 2, 2}));
  EXPECT_EQ(curve.momentOfInertia, (std::vector<double>{0.5, 2, 4.5}));
}

TEST_F(SampleVariogram, SampleLimit) {
  CMadeTable table = MakeField(2, 1000, 10);
  Compute(table, 25, 300);
  EXPECT_NE(variogram.lagFlags & CStats_Spatial::kSample, 0u);
  EXPECT_EQ(variogram.sampleLimit, 300);
  EXPECT_EQ(Compare(variogram.grid, MakeRefereeGrid(variogram, table, 0), 1), "");
  Compute(table, 25, -1);
  EXPECT_EQ(variogram.lagFlags & CStats_Spatial::kSample, 0u);
  EXPECT_EQ(variogram.sampleLimit, 1000);
  const CStats_SampleVariogram copy = variogram;
  EXPECT_EQ(copy.grid[0][3][7].count, variogram.grid[0][3][7].count);
}

TEST_F(SampleVariogram, ErrorVariance) {
  for (const int axes : {2, 3}) {
    CMadeTable table = MakeField(axes, 700, 10);
    Compute(table, 25);
    CStats_Univariate figures;
    figures.Add(&table, 0);
    figures.Calculate(1, nullptr);
    ASSERT_TRUE(variogram.CalcErrorVariance(0, 1.5, nullptr));
    int count = 0;
    double moment = 0, covariance = 0;
    table.GetPointSearch()->SearchAll();
    for (const auto* leaf : table.GetPointSearch()->GetLeaves()) {
      for (std::size_t i = 0; i < leaf->points.size(); ++i) {
        for (std::size_t j = i + 1; j < leaf->points.size(); ++j) {
          double squares = 0;
          for (int axis = -1; axis >= -axes; --axis) {
            squares += std::pow(table.GetValue(axis, leaf->points[j]) - table.GetValue(axis, leaf->points[i]), 2);
          }
          if (!(std::sqrt(squares) < 1.5)) continue;
          const double a = table.GetValue(0, leaf->points[i]), b = table.GetValue(0, leaf->points[j]);
          ++count;
          moment += (a - b) * (a - b);
          covariance += (a - figures.mean) * (b - figures.mean);
        }
      }
    }
    ASSERT_GT(count, 10);
    EXPECT_EQ(variogram.errorPairCount, count);
    EXPECT_DOUBLE_EQ(variogram.errorMoment, moment / count / 2);
    EXPECT_DOUBLE_EQ(variogram.errorCovariance, covariance / count);
    EXPECT_TRUE(variogram.CalcErrorVariance(0, 0, nullptr));
    EXPECT_EQ(variogram.errorPairCount, 0);
    EXPECT_EQ(variogram.errorMoment, 0);
  }
  CMadeTable line = Table(1, {{0, 1}, {1, 2}});
  Compute(line, 5);
  EXPECT_FALSE(variogram.CalcErrorVariance(0, 5, nullptr));
}

TEST_F(SampleVariogram, GridAsATable) {
  CMadeTable table = MakeField(2, 300, 10);
  Compute(table, 25);
  Put({0, 2, 49}, {7, 0.25, 3.5, 7});
  CStats_LagGridData cells(&variogram);
  EXPECT_EQ(cells.GetSize(), 3600);
  EXPECT_EQ(cells.GetSpatialSize(), 2);
  EXPECT_EQ(cells.GetValueSize(), 3);
  EXPECT_EQ(cells.GetValue(0, 149), 3.5);
  EXPECT_EQ(cells.GetValue(1, 149), 0.25);
  EXPECT_EQ(cells.GetValue(2, 149), 7);
  EXPECT_EQ(cells.GetValue(-1, 149), 0);
  EXPECT_EQ(cells.GetValueName(0), "Moment of Intertia");
  EXPECT_EQ(cells.GetValueName(1), "Covariance");
  EXPECT_EQ(cells.GetValueName(2), "Pair Count");
  EXPECT_EQ(cells.GetValueName(-3), "LagZ");
  EXPECT_EQ(cells.GetValueName(3), "");

  CMadeTable solid = MakeField(3, 300, 10);
  Compute(solid, 25);
  Put({4, 2, 24}, {9, 0, 0, 9});
  CStats_LagGridData solidCells(&variogram);
  EXPECT_EQ(solidCells.GetSize(), 25 * 36 * 18);
  EXPECT_EQ(solidCells.GetValue(2, 4 * 900 + 2 * 25 + 24), 9);
}

// A grid stands until another one has been computed, and all that is read from it is its own.
TEST_F(SampleVariogram, ACancelledGridLeavesTheFormerOneWhole) {
  CMadeTable table = MakeField(2, 400, 10);
  EXPECT_EQ(CStats_LagGridData(&variogram).GetSize(), 0) << "never computed";
  EXPECT_FALSE(variogram.GetVariogramData(curve));
  Compute(table, 100);
  CStats_LagGridData cells(&variogram);
  ASSERT_TRUE(variogram.GetVariogramData(curve));
  const LagSettings settings = variogram.GetLagSettings();
  for (int asks = 0; asks < 12; ++asks) {
    class Sink : public CProgressSink {
     public:
      explicit Sink(int asks) : left_(asks) {}
      bool OnProgress(int) override { return left_-- > 0; }
      void SetTask(const char*, int) override {}

     private:
      int left_;
    } sink(asks);
    EXPECT_FALSE(variogram.CalcVariogram(0, asks % 2 == 0 ? 50 : 0, 100, &sink));
    EXPECT_EQ(variogram.GetFlags(0), 4);
    EXPECT_EQ(variogram.lagRange, settings.range);
    EXPECT_EQ(variogram.lagFlags, settings.flags);
    CStats_VariogramData again;
    ASSERT_TRUE(variogram.GetVariogramData(again));
    EXPECT_EQ(again.lag, curve.lag);
    EXPECT_EQ(again.pairCount, curve.pairCount);
  }
  // Settings of the next grid change nothing, and a table keeps the grid that it was built on.
  variogram.lagRange.fill(7);
  variogram.lagCount = {3, 4, 5};
  CStats_VariogramData again;
  ASSERT_TRUE(variogram.GetVariogramData(again));
  EXPECT_EQ(again.lag, curve.lag);
  CStats_LagGridData later(&variogram);
  EXPECT_EQ(later.GetSize(), 50 * 72);
  CMadeTable solid = MakeField(3, 100, 10);
  Compute(solid, 5);
  EXPECT_EQ(later.GetSize(), 50 * 72);
  EXPECT_EQ(later.GetValue(2, 50 * 72 - 1), cells.GetValue(2, 50 * 72 - 1));
}

// Moments of 0 to 99, a cell each, and as many empty cells: half of the distribution is zeros.
TEST_F(SampleVariogram, ColourRangeCountsEmptyCells) {
  EXPECT_EQ(GetLagGridColourRange(LagGrid(), 0), (std::array<double, 2>{0, 0}));
  LagSettings settings;
  settings.flags = CStats_Spatial::kLagX | CStats_Spatial::kLagY;
  LagGrid::Cells cells(1, LagGrid::Level(10, LagGrid::Row(20)));
  for (std::size_t i = 0; i < 100; ++i) cells[0][i / 20][i % 20] = {1, 0, static_cast<double>(i)};
  const auto [low, high] = GetLagGridColourRange(LagGrid(settings, cells), 0);
  EXPECT_NEAR(low, 0, 0.5);
  EXPECT_NEAR(high, 90, 1);
}

}  // namespace
}  // namespace tallyscope::testing_spatial
