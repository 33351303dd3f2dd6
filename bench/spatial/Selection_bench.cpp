// SPDX-License-Identifier: MIT
// Selections over a million stations: a rectangle, a polygon, a replay of fifty regions, and the figures of what is
// selected, each beside a plain loop.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <numbers>

#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Region.h"
#include "statistics/Stats_RgnPoly.h"
#include "statistics/Stats_RgnRect.h"
#include "statistics/Stats_RgnSelAll.h"
#include "statistics/Stats_Univariate.h"
#include "tests/support/Made.h"

namespace tallyscope {
namespace {

constexpr int kStations = 1'000'000;

CMadeTable& Stations() {
  static CMadeTable table({made::Normal(kStations, 0, 1, 1), made::Normal(kStations, 0, 1, 2),
                           made::WithNulls(made::Normal(kStations, 50, 10, 3), made::Every(10))},
                          2);
  return table;
}

std::unique_ptr<CStats_Rgn> Rectangle(double low, double high, bool include) {
  auto region = std::make_unique<CStats_RgnRect>();
  region->box = {{low, -9, 0}, {high, 9, 0}, 1};
  region->include = include;
  return region;
}

int CountBits(const CStats_Spatial& spatial) {
  int count = 0;
  for (int i = 0; i < kStations; ++i) count += spatial.bitmaps[0].Get(i);
  return count;
}

template <class Inside>
int CountStations(const Inside& inside) {
  int count = 0;
  for (int i = 0; i < kStations; ++i) count += inside(Stations().GetValue(-1, i), Stations().GetValue(-2, i));
  return count;
}

void Replay(CStats_Spatial& spatial) {
  spatial.extractFlags &= ~static_cast<unsigned>(CStats_Spatial::kIncremental);
  spatial.ClearFlags(0, 1);
  spatial.Calculate(1, nullptr);
}

// Two columns compared, a bit written: what any way has to do without an index.
void CompareAll() {
  static bvector bits(kStations);
  const double* x = Stations().GetMade(-1).values.data();
  const double* y = Stations().GetMade(-2).values.data();
  for (int i = 0; i < kStations; ++i) bits.Set(i, x[i] >= -9 && x[i] <= 0 && y[i] >= -9 && y[i] <= 9);
  benchmark::DoNotOptimize(bits.GetBytes().data());
}

void RectangleFloor(benchmark::State& state) {
  for (auto _ : state) CompareAll();
}

void RectangleOfHalf(benchmark::State& state) {
  CStats_Spatial spatial;
  spatial.Add(&Stations(), 0);
  spatial.AddSelRegion(Rectangle(-9, 0, true));
  for (auto _ : state) Replay(spatial);
  if (CountBits(spatial) != CountStations([](double x, double) { return x >= -9 && x <= 0; })) {
    state.SkipWithError("another selection");
  }
}

void PolygonOf200(benchmark::State& state) {
  CStats_Spatial spatial;
  spatial.Add(&Stations(), 0);
  auto polygon = std::make_unique<CStats_RgnPoly>();
  for (int i = 0; i < 200; ++i) {  // a star
    const double angle = i * std::numbers::pi / 100, radius = i % 2 == 0 ? 2 : 1.5;
    polygon->points.push_back({radius * std::cos(angle), radius * std::sin(angle), 0});
  }
  spatial.AddSelRegion(std::move(polygon));
  for (auto _ : state) Replay(spatial);
  const int surely = CountStations([](double x, double y) { return x * x + y * y < 1.45 * 1.45; });
  const int atMost = CountStations([](double x, double y) { return x * x + y * y < 2.05 * 2.05; });
  if (CountBits(spatial) < surely || CountBits(spatial) > atMost) state.SkipWithError("another selection");
}

// Corners round the stations, or a star whose edges all cross each other. The counters set a replay beside the floor.
void PolygonOf10000(benchmark::State& state) {
  constexpr int kCorners = 10'001;
  const int step = static_cast<int>(state.range(0));
  CStats_Spatial spatial;
  spatial.Add(&Stations(), 0);
  auto polygon = std::make_unique<CStats_RgnPoly>();
  for (int i = 0; i < kCorners; ++i) {
    const double angle = 2 * std::numbers::pi * i * step / kCorners;
    const double radius = step == 1 && i % 2 == 0 ? 2 : 1.9;
    polygon->points.push_back({radius * std::cos(angle), radius * std::sin(angle), 0});
  }
  spatial.AddSelRegion(std::move(polygon));
  double best = std::numeric_limits<double>::infinity();
  double floorBest = best;
  const auto time = [](const auto& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  for (auto _ : state) {
    floorBest = std::min(floorBest, time([] { CompareAll(); }));
    const double taken = time([&] { Replay(spatial); });
    best = std::min(best, taken);
    state.SetIterationTime(taken);
  }
  const int atMost = CountStations([](double x, double y) { return x * x + y * y < 2.05 * 2.05; });
  const int count = CountBits(spatial);
  if (count == 0 || count > atMost) state.SkipWithError("another selection");
  state.counters["floor_ms"] = floorBest * 1e3;
  state.counters["to_floor"] = best / floorBest;
}

void UndoOver50Regions(benchmark::State& state) {
  CStats_Spatial spatial;
  spatial.Add(&Stations(), 0);
  for (int i = 0; i < 50; ++i) spatial.AddSelRegion(Rectangle(-2.5 + 0.1 * i, -2.4 + 0.1 * i, i % 3 != 0));
  spatial.AddSelRegion(std::make_unique<CStats_RgnSelAll>());
  for (auto _ : state) {
    spatial.ClearLastSelRegion();
    state.PauseTiming();
    spatial.RestoreLastSelRegion();
    state.ResumeTiming();
  }
  if (CountBits(spatial) != kStations) state.SkipWithError("redo selects all");
}

void FiguresOfTheTable(benchmark::State& state) {
  for (auto _ : state) {
    CStats_Univariate figures;
    figures.Add(&Stations(), 0);
    figures.Calculate(11, nullptr);
    benchmark::DoNotOptimize(figures.skewness);
  }
}

// All stations, and every other one, which leaves no run whole.
void FiguresOfASelection(benchmark::State& state) {
  CStats_Spatial spatial;
  spatial.Add(&Stations(), 0);
  spatial.AddSelRegion(std::make_unique<CStats_RgnSelAll>());
  spatial.lists.assign(1, {});
  for (int i = 0; i < kStations; i += static_cast<int>(state.range(0))) spatial.lists[0].push_back(i);
  CStats_Region region(&spatial);
  double mean = 0;
  for (auto _ : state) {
    CStats_Univariate figures;
    figures.Add(&region, 0);
    figures.Calculate(11, nullptr);
    mean = figures.mean;
    benchmark::ClobberMemory();
  }
  if (std::fabs(mean - 50) > 0.1) state.SkipWithError("another mean");
}

BENCHMARK(RectangleFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(RectangleOfHalf)->Unit(benchmark::kMillisecond);
BENCHMARK(PolygonOf200)->Unit(benchmark::kMillisecond);
BENCHMARK(PolygonOf10000)->ArgName("step")->Arg(1)->Arg(5000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(UndoOver50Regions)->Unit(benchmark::kMillisecond);
BENCHMARK(FiguresOfTheTable)->Unit(benchmark::kMillisecond);
BENCHMARK(FiguresOfASelection)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyscope
