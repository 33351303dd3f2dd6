// SPDX-License-Identifier: MIT
// Lag grids of random stations with a smooth field in a square or cube of 1000, each beside a floor and a plain loop.
// The floor is what the work can't do without: the same vector estimate of bins over tiles of stations in float,
// without borders looked at twice, without a table, a search or nulls. The plain loop takes each pair with sqrt and
// atan2. Floor and grid run in turn, in processor time; counters give the best of each, in milliseconds, and their
// ratios.
#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "VariogramFloor.h"
#include "spatial/LagBinning.h"
#include "spatial/LagGridWalk.h"
#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_SampleVariogram.h"
#include "spatial/Stats_VariogramData.h"
#include "statistics/Stats_Univariate.h"
#include "tests/support/Made.h"

namespace tallyscope {
namespace {

using bench_variogram::Floor;
using bench_variogram::Stations;

struct Row {
  const char* name;
  int axes;
  int stations;
  double range;
  bool lattice;
  bool cartesian;
  bool plain;  // run the plain loop, which is quadratic
  pair_kernel::Level level;
};

constexpr auto kBest = pair_kernel::Level::kAvx512;
constexpr auto kBaseline = pair_kernel::Level::kPlain;
constexpr auto kAvx2 = pair_kernel::Level::kAvx2;

const Row kRows[] = {
    {"plane 20,000 range 500", 2, 20'000, 500, false, false, true, kBest},
    {"plane 20,000 range 500, AVX2", 2, 20'000, 500, false, false, false, kAvx2},
    {"plane 20,000 range 500, baseline", 2, 20'000, 500, false, false, false, kBaseline},
    {"plane 10,000 range 500", 2, 10'000, 500, false, false, true, kBest},
    {"plane 20,000 range 100", 2, 20'000, 100, false, false, true, kBest},
    {"plane 20,000 range 100, AVX2", 2, 20'000, 100, false, false, false, kAvx2},
    {"plane 100,000 range 40", 2, 100'000, 40, false, false, false, kBest},
    {"plane 100,000 range 40, AVX2", 2, 100'000, 40, false, false, false, kAvx2},
    {"lattice 20,000 range 500", 2, 20'000, 500, true, false, true, kBest},
    {"lattice 20,000 range 500, AVX2", 2, 20'000, 500, true, false, false, kAvx2},
    {"map of 40 x 40, 20,000", 2, 20'000, 500, false, true, true, kBest},
    {"map of 40 x 40, 20,000, AVX2", 2, 20'000, 500, false, true, false, kAvx2},
    {"solid 10,000 range 500", 3, 10'000, 500, false, false, true, kBest},
    {"solid 10,000 range 500, AVX2", 3, 10'000, 500, false, false, false, kAvx2},
};

Stations MakeStations(const Row& row) {
  Stations stations;
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> anywhere(0, 1000);
  const int side = static_cast<int>(std::ceil(std::sqrt(row.stations)));
  for (int i = 0; i < row.stations; ++i) {
    double at[3] = {anywhere(random), anywhere(random), row.axes > 2 ? anywhere(random) : 0};
    if (row.lattice) {
      at[0] = i % side * 7.0;
      at[1] = i / side * 7.0;
    }
    for (int axis = 0; axis < 3; ++axis) stations.at[axis].push_back(at[axis]);
    stations.values.push_back(std::sin(at[0] / 150) + std::cos(at[1] / 90) + std::sin(at[2] / 100));
  }
  return stations;
}

CMadeTable MakeTable(const Row& row, const Stations& stations) {
  std::vector<MadeColumn> columns;
  for (int axis = 0; axis < row.axes; ++axis) columns.push_back(made::Column(stations.at[axis]));
  columns.push_back(made::Column(stations.values));
  return CMadeTable(std::move(columns), row.axes);
}

// The grid as a session computes it. At another level than the best the walk is called by itself, on a search built
// anew.
std::int64_t CountGrid(CMadeTable& table, const Row& row) {
  CStats_SampleVariogram variogram;
  variogram.Add(&table, 0);
  variogram.ResetSpatialDims();
  variogram.lagFlags = CStats_Spatial::kUseSearch | CStats_Spatial::kLagX | CStats_Spatial::kLagY;
  variogram.lagRange.fill(row.range);
  variogram.lagCount = {40, 40, 40};
  if (row.level != kBest) {
    if (!row.cartesian)
      variogram.lagCount = row.axes == 3 ? std::array<int, 3>{25, 36, 18} : std::array<int, 3>{50, 72, 36};
    if (!row.cartesian) variogram.lagFlags |= CStats_Spatial::kPolar;
    if (row.axes == 3) variogram.lagFlags |= CStats_Spatial::kLagZ;
    CStats_Univariate figures;
    figures.Add(&table, 0);
    figures.Calculate(1, nullptr);
    table.GetPointSearch()->SetDefaultFields();
    table.PreparePointSearch(nullptr);
    const LagBinning binning(variogram.GetLagSettings());
    LagGridWalk walk({&table, 0, figures.mean, {-1, -2, row.axes == 3 ? -3 : LagGridWalk::kNoColumn}}, binning, 1,
                     row.level);
    PairProgress progress(nullptr);
    walk.WalkLeaves(GetStationIndex(table), variogram.lagRange, progress);
    variogram.grid = LagGrid(variogram.GetLagSettings(), walk.Finish());
  } else if (row.cartesian) {
    variogram.CalculateItem(0, 4, nullptr);
  } else {
    variogram.CalcVariogram(0, row.range, 0, nullptr);
  }
  table.GetPointSearch()->SetPartitioned(false);  // so that each grid builds it
  std::int64_t count = 0;
  for (const auto& level : variogram.grid) {
    for (const auto& cells : level) {
      for (const LagCell& cell : cells) count += cell.count;
    }
  }
  return count / 2;
}

// Of this thread, so that other work on the machine counts little.
double GetProcessorTime() {
  timespec time;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

template <class Work>
double Time(const Work& work) {
  const double start = GetProcessorTime();
  work();
  return GetProcessorTime() - start;
}

// Memory in use now, or at most since the last reset, in megabytes.
double GetMemory(const std::string& which) {
  std::ifstream file("/proc/self/status");
  for (std::string line; std::getline(file, line);) {
    if (line.rfind(which, 0) == 0) return std::stod(line.substr(which.size() + 1)) / 1024;
  }
  return 0;
}

void ResetMostMemory() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

void LagGridRow(benchmark::State& state, const Row& row) {
  const Stations stations = MakeStations(row);
  CMadeTable table = MakeTable(row, stations);
  double best = std::numeric_limits<double>::infinity();
  double floorBest = best;
  std::int64_t count = 0;
  std::int64_t floorCount = 0;
  ResetMostMemory();
  const double memory = GetMemory("VmRSS:");
  CountGrid(table, row);
  state.counters["MB"] = GetMemory("VmHWM:") - memory;
  for (auto _ : state) {
    Floor floor(stations, row.axes, row.range, row.cartesian);
    floorBest = std::min(floorBest, Time([&] { floorCount = floor.Run(); }));
    const double time = Time([&] { count = CountGrid(table, row); });
    best = std::min(best, time);
    state.SetIterationTime(time);
  }
  if (std::fabs(static_cast<double>(count - floorCount)) > 1e-3 * static_cast<double>(count)) {
    state.SkipWithError("the floor counts other pairs");
  }
  state.counters["best_ms"] = best * 1e3;
  state.counters["floor_ms"] = floorBest * 1e3;
  state.counters["to_floor"] = best / floorBest;
  state.counters["ns_pair"] = best * 1e9 / static_cast<double>(count);
  if (!row.plain) return;
  std::int64_t plainCount = 0;
  const double plain =
      Time([&] { plainCount = bench_variogram::RunPlainLoop(stations, row.axes, row.range, row.cartesian); });
  if (plainCount != count) state.SkipWithError("the plain loop counts other pairs");
  state.counters["plain_ms"] = plain * 1e3;
  state.counters["to_plain"] = best / plain;
}

// One station far off, against the same stations without it: all their pairs in both, in the one by the default range,
// which the stranger makes as large as itself.
void OneStationFarOff(benchmark::State& state) {
  const Row row{"", 2, 25'000, 2000, false, false, false, kBest};
  Stations stations = MakeStations(row);
  CMadeTable without = MakeTable(row, stations);
  stations.at[0][12'345] = 1e300;
  CMadeTable with = MakeTable(row, stations);
  double best[3];
  std::fill(best, best + 3, std::numeric_limits<double>::infinity());
  for (auto _ : state) {
    const auto run = [&](CMadeTable& table, double range, double& least) {
      CStats_SampleVariogram variogram;
      variogram.Add(&table, 0);
      variogram.ResetSpatialDims();
      const double time = Time([&] { variogram.CalcVariogram(0, range, 0, nullptr); });
      least = std::min(least, time);
      return time;
    };
    run(without, row.range, best[0]);
    state.SetIterationTime(run(with, row.range, best[1]));
    run(with, 0, best[2]);
  }
  state.counters["without_ms"] = best[0] * 1e3;
  state.counters["to_without"] = best[1] / best[0];
  state.counters["default_range_to_without"] = best[2] / best[0];
}

BENCHMARK(OneStationFarOff)->UseManualTime()->Unit(benchmark::kMillisecond);

// Directions, dips and widths that change with each curve.
void Curve(benchmark::State& state) {
  const int axes = static_cast<int>(state.range(0));
  const Row row{"", axes, 5'000, 500, false, false, false, kBest};
  CMadeTable table = MakeTable(row, MakeStations(row));
  CStats_SampleVariogram variogram;
  variogram.Add(&table, 0);
  variogram.ResetSpatialDims();
  variogram.CalcVariogram(0, row.range, 0, nullptr);
  CStats_VariogramData curve;
  int turn = 0;
  for (auto _ : state) {
    ++turn;
    variogram.GetVariogramData(curve, turn % 360, turn % 181 - 90, 10 + turn % 36);
    benchmark::DoNotOptimize(curve.lag.data());
  }
  if (curve.GetSize() < 20) state.SkipWithError("lags without pairs");
}

BENCHMARK(Curve)->ArgName("axes")->Arg(2)->Arg(3)->Unit(benchmark::kMicrosecond);

const bool kRegistered = [] {
  for (const Row& row : kRows) {
    benchmark::RegisterBenchmark(row.name, [&row](benchmark::State& state) { LagGridRow(state, row); })
        ->UseManualTime()
        ->MinTime(1.0)
        ->Unit(benchmark::kMillisecond);
  }
  return true;
}();

}  // namespace
}  // namespace tallyscope
