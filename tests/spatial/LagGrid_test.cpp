// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "LagGridReferee.h"
#include "SpatialTesting.h"
#include "spatial/LagBinning.h"
#include "spatial/LagGridWalk.h"
#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/ProgressSink.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope::testing_spatial {
namespace {

constexpr int kLagGrid = 4;
constexpr unsigned kPlane = CStats_Spatial::kLagX | CStats_Spatial::kLagY;
constexpr unsigned kSolid = kPlane | CStats_Spatial::kLagZ;
constexpr unsigned kPolarFlag = CStats_Spatial::kPolar;
constexpr unsigned kSample = CStats_Spatial::kSample;
constexpr unsigned kSearch = CStats_Spatial::kUseSearch;

struct Settings {
  unsigned flags;
  double range;
  std::array<int, 3> count;
  int limit = -1;
};

void Apply(const Settings& settings, CStats_Spatial& spatial) {
  spatial.lagFlags = settings.flags;
  spatial.lagRange.fill(settings.range);
  spatial.lagCount = settings.count;
  spatial.sampleLimit = settings.limit;
}

// Enough for many leaves, few enough for the referee.
std::vector<Cloud> SomeNastyClouds() {
  std::vector<Cloud> clouds = NastyClouds();
  for (Cloud& cloud : clouds) cloud.points.resize(std::min<std::size_t>(cloud.points.size(), 450));
  return clouds;
}

// A noisy field with every seventh value missing.
CMadeTable TableOf(const Cloud& cloud, int axes) {
  std::vector<std::vector<double>> columns(static_cast<std::size_t>(axes) + 1);
  std::mt19937_64 random(7);
  std::normal_distribution<double> noise(100, 3);
  for (std::size_t i = 0; i < cloud.points.size(); ++i) {
    for (std::size_t axis = 0; axis < static_cast<std::size_t>(axes); ++axis) {
      columns[axis].push_back(cloud.points[i][axis]);
    }
    columns.back().push_back(i % 7 == 3 ? kNull : noise(random));
  }
  return Table(axes, columns);
}

double GetVariance(CStats_Data& table) {
  CStats_Univariate figures;
  figures.Add(&table, 0);
  figures.Calculate(1, nullptr);
  return figures.variance;
}

// By the calculator, and at each level of vector code.
void ExpectRefereesGrid(CMadeTable& table, const Settings& settings, const std::string& name) {
  SCOPED_TRACE(name + ", flags " + std::to_string(settings.flags) + ", range " + std::to_string(settings.range));
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  spatial.ResetSpatialDims();
  Apply(settings, spatial);
  const RefereeGrid referee = MakeRefereeGrid(spatial, table, 0);
  const double variance = GetVariance(table);
  ASSERT_TRUE(spatial.CalculateItem(0, kLagGrid, nullptr));
  EXPECT_EQ(Compare(spatial.grid, referee, variance), "");
  if ((settings.flags & kSearch) == 0) return;
  CStats_Univariate figures;
  figures.Add(&table, 0);
  figures.Calculate(1, nullptr);
  const LagBinning binning(spatial.GetLagSettings());
  const int stride =
      (settings.flags & kSample) == 0 || settings.limit < 0 ? 1 : std::max(1, table.GetSize() / settings.limit);
  for (const auto level : {pair_kernel::Level::kPlain, pair_kernel::Level::kAvx2, pair_kernel::Level::kAvx512}) {
    ASSERT_TRUE(table.PreparePointSearch(nullptr));
    const StationIndex index = GetStationIndex(table);
    if (!index) return;
    LagGridWalk walk({&table, 0, figures.mean, {-1, -2, (settings.flags & 4) != 0 ? -3 : LagGridWalk::kNoColumn}},
                     binning, stride, level);
    PairProgress progress(nullptr);
    ASSERT_TRUE(walk.WalkLeaves(index, spatial.lagRange, progress));
    EXPECT_EQ(Compare(LagGrid(spatial.GetLagSettings(), walk.Finish()), referee, variance), "")
        << "level " << static_cast<int>(level);
  }
}

Cloud Scale(Cloud cloud, double factor, double shift) {
  cloud.name += " x " + std::to_string(factor) + " + " + std::to_string(shift);
  for (Point3& point : cloud.points) {
    for (double& x : point) x = x == kNull ? x : x * factor + shift;
  }
  return cloud;
}

// Pairs that lie on the borders of cells, as near as doubles come.
std::vector<Cloud> BorderClouds() {
  std::vector<Cloud> clouds;
  Cloud rays{"exact multiples of 5 degrees and of the lag", {{0, 0, 0}}};
  for (int azimuth = 0; azimuth < 72; ++azimuth) {
    const double angle = azimuth * 5 * std::numbers::pi / 180;
    for (int lag = 1; lag <= 12; ++lag) {
      const double dip = (lag % 5 - 2) * 10 * std::numbers::pi / 180;
      rays.points.push_back(
          {lag * std::cos(angle) * std::cos(dip), lag * std::sin(angle) * std::cos(dip), lag * std::sin(dip)});
    }
  }
  clouds.push_back(rays);
  Cloud hairs{"a hair beside the borders", {{0, 0, 0}}};
  for (int i = 0; i < 900; ++i) {
    const double hair = std::ldexp(i % 2 == 0 ? 1.0 : -1.0, -(i % 50) - 4);
    const double angle = (i % 72) * 5 * std::numbers::pi / 180 + hair / 10;
    const double distance = i % 13 + hair;
    hairs.points.push_back({distance * std::cos(angle), distance * std::sin(angle), hair * (i % 3)});
  }
  clouds.push_back(hairs);
  Cloud columns{"columns", {}};
  for (int i = 0; i < 600; ++i) {
    columns.points.push_back({i % 5 * 2.0, i % 3 * 1e-7, i / 15 * 0.25 + (i % 2) * 1e-12});
  }
  clouds.push_back(columns);
  Cloud needle{"directions too short for the angle formula", {}};
  for (int i = 0; i < 500; ++i) needle.points.push_back({i % 7 * 4e-7, i / 7 * 3e-7, i % 2 * 1e-13});
  clouds.push_back(needle);
  return clouds;
}

TEST(LagGrid, AgreesWithThePlainFormulaOnNastyClouds) {
  auto clouds = SomeNastyClouds();
  for (Cloud& cloud : BorderClouds()) clouds.push_back(std::move(cloud));
  for (const Cloud& cloud : clouds) {
    CMadeTable flat = TableOf(cloud, 2);
    CMadeTable solid = TableOf(cloud, 3);
    for (const double range : {0.3, 12.0}) {
      ExpectRefereesGrid(flat, {kPlane | kPolarFlag | kSearch, range, {50, 72, 36}}, cloud.name);
      ExpectRefereesGrid(flat, {kPlane | kSearch, range, {40, 40, 40}}, cloud.name);
      ExpectRefereesGrid(solid, {kSolid | kPolarFlag | kSearch, range, {25, 36, 18}}, cloud.name);
      ExpectRefereesGrid(solid, {kSolid | kSearch, range, {12, 10, 8}}, cloud.name);
    }
  }
}

// Stations that lie nowhere or very far off, alone or among others, and what the pairs of the others come to without
// them, at every level of vector code and without the search.
TEST(LagGrid, StationsWithoutAFinitePlaceHaveNoPart) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  auto base = SomeNastyClouds()[4];
  base.points.resize(260);
  for (const std::vector<double>& strangers : {std::vector<double>{kInfinity},
                                               {-kInfinity, kInfinity},
                                               {kInfinity, NAN, -kInfinity},
                                               {1e300},
                                               {1e300, -1e300, 1e308, kInfinity},
                                               {1e308, -1e308},
                                               {3e7, -1e12}}) {
    for (const std::size_t axis : {0u, 1u, 2u}) {
      Cloud cloud{"strangers of " + std::to_string(strangers[0]) + " on " + std::to_string(axis), base.points};
      for (std::size_t i = 0; i < cloud.points.size(); i += strangers.size() == 1 ? 1000 : 7) {
        cloud.points[i][axis] = strangers[i / 7 % strangers.size()];
      }
      CMadeTable flat = TableOf(cloud, 2);
      CMadeTable solid = TableOf(cloud, 3);
      for (const unsigned search : {kSearch, 0u}) {
        for (const double range : {0.3, 1e9, 1e301}) {
          ExpectRefereesGrid(flat, {kPlane | kPolarFlag | search, range, {50, 72, 36}}, cloud.name);
          ExpectRefereesGrid(solid, {kSolid | kPolarFlag | search, range, {25, 36, 18}}, cloud.name);
          ExpectRefereesGrid(solid, {kSolid | search, range, {12, 10, 8}}, cloud.name);
        }
        ExpectRefereesGrid(flat, {kPlane | search | kSample, 1, {12, 10, 8}, 150}, cloud.name);
      }
    }
  }
}

TEST(LagGrid, AgreesWherePlacesAreHugeTinyOrFarOff) {
  const auto clouds = SomeNastyClouds();
  const auto borders = BorderClouds();
  for (const Cloud* cloud : {&clouds[4], &clouds[7], &borders[0], &borders[1]}) {
    for (const double factor : {1e-200, 1e-7, 1e3, 1e30, 1e150}) {
      CMadeTable table = TableOf(Scale(*cloud, factor, 0), 2);
      ExpectRefereesGrid(table, {kPlane | kPolarFlag | kSearch, 10 * factor, {50, 72, 36}}, cloud->name);
      ExpectRefereesGrid(table, {kPlane | kSearch, 10 * factor, {40, 40, 40}}, cloud->name);
    }
    CMadeTable table = TableOf(Scale(*cloud, 50, 5e6), 3);
    ExpectRefereesGrid(table, {kSolid | kPolarFlag | kSearch, 400, {25, 36, 18}}, cloud->name + " far off");
    ExpectRefereesGrid(table, {kSolid | kSearch, 400, {40, 40, 40}}, cloud->name + " far off");
  }
}

// Numbers of bins of which the mirror isn't its own mirror, or that are many, few or none.
TEST(LagGrid, AgreesForAnyNumberOfCells) {
  const auto clouds = SomeNastyClouds();
  CMadeTable flat = TableOf(clouds[7], 2);
  CMadeTable solid = TableOf(clouds[6], 3);
  for (const std::array<int, 3>& count : {std::array<int, 3>{7, 5, 3},
                                          {1, 1, 1},
                                          {3, 2, 5},
                                          {2000, 720, 2},
                                          {13, 9, 6},
                                          {4, 8, 1},
                                          {0, 4, 4},
                                          {4, 0, 2}}) {
    ExpectRefereesGrid(flat, {kPlane | kPolarFlag | kSearch, 4, count}, "plane");
    ExpectRefereesGrid(solid, {kSolid | kPolarFlag | kSearch, 40, {count[0] % 100, count[1] % 100, count[2]}}, "solid");
    ExpectRefereesGrid(flat, {kPlane | kSearch, 4, count}, "boxes");
    ExpectRefereesGrid(solid, {kSolid | kSearch, 40, {count[0] % 100, count[1] % 100, count[2]}}, "boxes");
  }
}

TEST(LagGrid, TakesEveryNthStationAcrossLeaves) {
  for (const Cloud& cloud : SomeNastyClouds()) {
    CMadeTable flat = TableOf(cloud, 2);
    CMadeTable solid = TableOf(cloud, 3);
    for (const int limit : {1, 30, 150, 170, 100000, -1, std::numeric_limits<int>::max()}) {
      ExpectRefereesGrid(flat, {kPlane | kPolarFlag | kSearch | kSample, 0.4, {50, 72, 36}, limit}, cloud.name);
      ExpectRefereesGrid(solid, {kSolid | kSearch | kSample, 6, {10, 10, 10}, limit}, cloud.name);
    }
  }
}

TEST(LagGrid, WalksAllPairsWithoutTheSearch) {
  for (const Cloud& cloud : SomeNastyClouds()) {
    if (cloud.name == "with nulls" || cloud.name == "nulls only") continue;  // places that are null have no part
    CMadeTable table = TableOf(cloud, 3);
    for (const int limit : {-1, 50}) {
      for (const unsigned axes : {kPlane, kSolid, 1u}) {
        ExpectRefereesGrid(table, {axes | kPolarFlag | kSample, 4, {25, axes == 1 ? 1 : 36, 18}, limit}, cloud.name);
        ExpectRefereesGrid(table, {axes | kSample, 4, {25, 9, 8}, limit}, cloud.name);
      }
    }
  }
}

TEST(LagGrid, TakesDimsAsAxesAndFlagsAsTheyStand) {
  // Three axes of which two are searched: the lag counts z all the same.
  CMadeTable table = TableOf(SomeNastyClouds()[4], 3);
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  Apply({kSolid | kPolarFlag | kSearch, 0.5, {50, 72, 36}}, spatial);
  const auto differences = [&] {
    const RefereeGrid referee = MakeRefereeGrid(spatial, table, 0);  // takes the search apart
    EXPECT_TRUE(spatial.CalculateItem(0, kLagGrid, nullptr));
    return Compare(spatial.grid, referee, GetVariance(table));
  };
  spatial.SetSpatialDims(-1, -2, -3, 2);
  EXPECT_EQ(differences(), "");
  // Axes in another order, one of them a field.
  spatial.ClearFlags(0, kLagGrid);
  spatial.SetSpatialDims(-3, -1, 0, 2);
  EXPECT_EQ(differences(), "");
  // The walk leaves the search to others.
  EXPECT_TRUE(table.GetPointSearch()->IsPartitioned());
  // A column that isn't there is a search that can't be had.
  spatial.ClearFlags(0, kLagGrid);
  spatial.SetSpatialDims(-1, -7, -3, 2);
  EXPECT_FALSE(spatial.CalculateItem(0, kLagGrid, nullptr));
}

// One pair of stations with the values 1 and 4: mean 2.5, so -2.25 and 4.5.
TEST(LagGrid, PlacesOfPairs) {
  struct Row {
    const char* name;
    bool polar;
    Point3 from, to;
    std::array<int, 3> cell, mirror;  // level, row, column
    int count;                        // in each
  };
  constexpr std::array<int, 3> kNone{-1, -1, -1};
  const Row rows[] = {
      {"19.99 of lags of 20", true, {0, 0, 0}, {19.99, 0, 0}, {9, 0, 0}, {8, 36, 0}, 1},
      {"at a lag", true, {0, 0, 0}, {20, 0, 0}, {9, 0, 1}, {8, 36, 1}, 1},
      {"at the range", true, {0, 0, 0}, {0, 1000, 0}, kNone, kNone, 0},
      {"in one place", true, {5, 5, 5}, {5, 5, 5}, {9, 0, 0}, {8, 36, 0}, 1},
      {"straight up", true, {0, 0, 0}, {0, 0, 30}, {17, 0, 1}, {0, 36, 1}, 1},
      {"straight down", true, {0, 0, 0}, {0, 0, -30}, {0, 0, 1}, {17, 36, 1}, 1},
      {"back to the south", true, {0, 0, 0}, {0, -50, 0}, {9, 54, 2}, {8, 18, 2}, 1},
      {"no dx", false, {0, 0, 0}, {0, 10, 10}, {10, 20, 20}, {9, 19, 19}, 1},
      {"a little back", false, {0, 0, 0}, {-0.1, 10, 10}, {10, 20, 19}, {9, 19, 20}, 1},
      {"at the end", false, {0, 0, 0}, {1000, 10, 10}, kNone, kNone, 0},
      {"at the start", false, {0, 0, 0}, {-1000, 10, 10}, {10, 20, 0}, {9, 19, 39}, 1},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    std::vector<std::vector<double>> columns(3);
    for (std::size_t axis = 0; axis < 3; ++axis) columns[axis] = {row.from[axis], row.to[axis]};
    columns.push_back({1, 4});
    CMadeTable table = Table(3, columns);
    CStats_Spatial spatial;
    spatial.Add(&table, 0);
    spatial.ResetSpatialDims();
    if (row.polar) Apply({kSolid | kPolarFlag, 1000, {50, 72, 18}}, spatial);
    if (!row.polar) Apply({kSolid, 1000, {40, 40, 20}}, spatial);
    ASSERT_TRUE(spatial.CalculateItem(0, kLagGrid, nullptr));
    int count = 0;
    for (const auto& level : spatial.grid) {
      for (const auto& cells : level) {
        for (const LagCell& cell : cells) count += cell.count;
      }
    }
    EXPECT_EQ(count, 2 * row.count);
    for (const auto& at : {row.cell, row.mirror}) {
      if (row.count == 0) continue;
      const LagCell& cell =
          spatial
              .grid[static_cast<std::size_t>(at[0])][static_cast<std::size_t>(at[1])][static_cast<std::size_t>(at[2])];
      EXPECT_EQ(cell.count, 1);
      EXPECT_EQ(cell.covariance, -2.25);
      EXPECT_EQ(cell.moment, 4.5);
    }
  }
}

// Differences of 0.3 or none: plain sums over a million of them drift off.
TEST(LagGrid, SumsDontDriftOverMillionsOfEqualPairs) {
  std::vector<std::vector<double>> columns(3);
  for (int i = 0; i < 2500; ++i) {
    columns[0].push_back(i % 2);
    columns[1].push_back(i % 3 * 1e-4);
    columns[2].push_back(i % 2 == 0 ? 0.1 : 0.4);
  }
  CMadeTable table = Table(2, columns);
  ExpectRefereesGrid(table, {kPlane | kPolarFlag | kSearch, 2, {2, 4, 1}}, "two values");
}

TEST(LagGrid, SettingsOutOfReason) {
  CMadeTable table = TableOf(SomeNastyClouds()[7], 2);
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr int kMost = std::numeric_limits<int>::max();
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  spatial.ResetSpatialDims();
  for (const unsigned polar : {kPolarFlag, 0u}) {
    for (const double range : {-5.0, 0.0, kNaN, kInfinity, 1e300, 1e-300}) {
      Apply({kPlane | polar | kSearch | kSample, range, {5, 6, 7}, 0}, spatial);
      spatial.ClearFlags(0, kLagGrid);
      EXPECT_TRUE(spatial.CalculateItem(0, kLagGrid, nullptr));
    }
    for (const std::array<int, 3>& count : {std::array<int, 3>{kMost, kMost, kMost}, {kMost, 1, 1}, {-3, kMost, 1}}) {
      Apply({kPlane | polar | kSearch, 5, count}, spatial);
      spatial.ClearFlags(0, kLagGrid);
      EXPECT_FALSE(spatial.CalculateItem(0, kLagGrid, nullptr));
    }
    Apply({kPlane | polar | kSearch, 5, {-3, 5, 1}}, spatial);
    spatial.ClearFlags(0, kLagGrid);
    EXPECT_TRUE(spatial.CalculateItem(0, kLagGrid, nullptr));
  }
}

class Sink : public CProgressSink {
 public:
  explicit Sink(int cancelAt) : cancelAt_(cancelAt) {}
  bool OnProgress(int percent) override {
    const auto now = std::chrono::steady_clock::now();
    if (!tasks.empty() && tasks.back().rfind("Computing ", 0) == 0) percents.push_back(percent);
    if (asks++ > 0) longest = std::max(longest, now - last_);
    last_ = now;
    return percents.empty() || static_cast<int>(percents.size()) <= cancelAt_;
  }
  void SetTask(const char* text, int) override { tasks.emplace_back(text); }

  std::vector<std::string> tasks;
  std::vector<int> percents;
  int asks = 0;
  std::chrono::steady_clock::duration longest{};

 private:
  int cancelAt_;
  std::chrono::steady_clock::time_point last_;
};

TEST(LagGrid, CancelledGridsAreComputedAfresh) {
  for (const unsigned search : {kSearch, 0u}) {
    CMadeTable table = TableOf(NastyClouds()[4], 2);
    CStats_Spatial spatial;
    spatial.Add(&table, 0);
    spatial.ResetSpatialDims();
    Apply({kPlane | kPolarFlag | search, 0.4, {50, 72, 36}}, spatial);
    const RefereeGrid referee = MakeRefereeGrid(spatial, table, 0);
    for (const int cancelAt : {0, 1, 7}) {
      Sink sink(cancelAt);
      EXPECT_FALSE(spatial.CalculateItem(0, kLagGrid, &sink));
      EXPECT_EQ(spatial.GetFlags(0), 0);
      EXPECT_EQ(sink.percents.size(), static_cast<std::size_t>(cancelAt) + 1);
    }
    Sink sink(1 << 30);
    EXPECT_TRUE(spatial.CalculateItem(0, kLagGrid, &sink));
    EXPECT_EQ(Compare(spatial.grid, referee, GetVariance(table)), "");
    EXPECT_EQ(sink.tasks.back(), "Computing Made sample variogram grid...");
    EXPECT_TRUE(std::is_sorted(sink.percents.begin(), sink.percents.end()));
    EXPECT_GT(sink.percents.size(), 20u);
    EXPECT_LE(sink.percents.back(), 99);
  }
}

// One leaf, so the outer loop has one step: the sink is asked all the same.
TEST(LagGrid, AsksTheSinkWithinALongStep) {
  Cloud cloud{"in one place", std::vector<Point3>(9000, Point3{1, 1, 1})};
  for (std::size_t i = 0; i < cloud.points.size(); ++i) cloud.points[i][0] += 1e-7 * static_cast<double>(i % 10);
  CMadeTable table = TableOf(cloud, 2);
  CStats_Spatial spatial;
  spatial.Add(&table, 0);
  spatial.ResetSpatialDims();
  Apply({kPlane | kPolarFlag | kSearch, 1e-5, {50, 72, 36}}, spatial);
  Sink sink(2);
  EXPECT_FALSE(spatial.CalculateItem(0, kLagGrid, &sink));
  EXPECT_EQ(sink.percents.size(), 3u);
}

}  // namespace
}  // namespace tallyscope::testing_spatial
