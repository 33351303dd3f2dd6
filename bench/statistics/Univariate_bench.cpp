// SPDX-License-Identifier: MIT
// The univariate figures of ten million values, beside a floor written for this one table: no virtual call, no
// progress, no item, the values read in place, two passes in blocks, every sum in station order.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "statistics/CubeSum.h"
#include "statistics/Stats_Univariate.h"
#include "tests/support/Made.h"

namespace tallyscope {

namespace {

constexpr int kStations = 10'000'000;
constexpr int kBins = 4096;
constexpr int kBlock = 512;

enum Kind { kNormal, kSomeNulls, kManyNulls, kRounded, kRamp };

CMadeTable& GetTable(int kind) {
  static std::unique_ptr<CMadeTable> table;
  static int made = -1;
  if (made == kind) return *table;
  auto column = kind == kRamp ? made::Ramp(kStations, 0, 1) : made::Normal(kStations, 100, 15);
  if (kind == kRounded) column = made::Rounded(std::move(column), 0.01);
  if (kind == kSomeNulls) column = made::WithNulls(std::move(column), made::Every(97));
  if (kind == kManyNulls) {
    column = made::WithNulls(std::move(column), [](int i) { return (i * 2654435761u >> 16 & 1) != 0; });
  }
  std::vector<MadeColumn> columns;
  columns.push_back(std::move(column));
  table = std::make_unique<CMadeTable>(std::move(columns));
  made = kind;
  return *table;
}

struct Cell {
  double low = 1e10;
  double high = -1e10;
  int count = 0;
};

struct FloorFigures {
  int valid = 0;
  double mean = 0;
  double variance = 0;
  double skewness = 0;
  std::vector<Cell> cells = std::vector<Cell>(kBins);
};

template <class Visit>
void EachBlock(const MadeColumn& column, Visit visit) {
  double kept[kBlock];
  for (int first = 0; first < kStations; first += kBlock) {
    const int count = std::min(kBlock, kStations - first);
    int found = 0;
    bool whole = true;
    for (int word = first / 64; word * 64 + 64 <= first + count; ++word) {
      whole &= column.valid[static_cast<std::size_t>(word)] == ~std::uint64_t{0};
    }
    if (whole) {
      visit(column.values.data() + first, count);
      continue;
    }
    for (int i = first; i < first + count; ++i) {
      kept[found] = column.values[static_cast<std::size_t>(i)];
      found += column.IsValid(i) ? 1 : 0;
    }
    visit(kept, found);
  }
}

FloorFigures ComputeFloor(const MadeColumn& column) {
  FloorFigures figures;
  double low = 1e10;
  double high = -1e10;
  double sum = 0;
  double squares = 0;
  EachBlock(column, [&](const double* values, int count) {
    double blockLow = low;
    double blockHigh = high;
    double blockSum = sum;
    double blockSquares = squares;
    for (int i = 0; i < count; ++i) {
      const double x = values[i];
      blockLow = x < blockLow ? x : blockLow;
      blockHigh = x > blockHigh ? x : blockHigh;
      blockSum += x;
      blockSquares += x * x;
    }
    low = blockLow;
    high = blockHigh;
    sum = blockSum;
    squares = blockSquares;
    figures.valid += count;
  });
  figures.mean = sum / figures.valid;
  figures.variance = (squares - sum * sum / figures.valid) / (figures.valid - 1);
  const double width = (high - low) / kBins;
  CubeSum cubes(figures.mean);
  EachBlock(column, [&, low, width](const double* values, int count) {
    cubes.Add({values, static_cast<std::size_t>(count)});
    int indices[kBlock];
    for (int i = 0; i < count; ++i) {
      indices[i] = static_cast<int>(std::min(std::max((values[i] - low) / width, 0.0), kBins - 1.0));
    }
    Cell* cells = figures.cells.data();
    for (int i = 0; i < count; ++i) {
      auto& cell = cells[indices[i]];
      ++cell.count;
      cell.low = std::min(cell.low, values[i]);
      cell.high = std::max(cell.high, values[i]);
    }
  });
  figures.skewness = cubes.GetSum() / figures.valid / std::pow(std::sqrt(figures.variance), 3.0);
  return figures;
}

void Floor(benchmark::State& state) {
  auto& table = GetTable(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(ComputeFloor(table.GetMade(0)));
}

bool Agrees(const CStats_Univariate& found, const FloorFigures& expected) {
  if (found.valid != expected.valid || found.mean != expected.mean || found.variance != expected.variance) return false;
  if (found.skewness != expected.skewness || found.binnedHistogram.bins.size() != expected.cells.size()) return false;
  for (std::size_t i = 0; i < expected.cells.size(); ++i) {
    const auto& bin = found.binnedHistogram.bins[i];
    const auto& cell = expected.cells[i];
    if (bin.count != cell.count || bin.dataMin != cell.low || bin.dataMax != cell.high) return false;
  }
  return true;
}

void Calculate11(benchmark::State& state) {
  auto& table = GetTable(static_cast<int>(state.range(0)));
  std::unique_ptr<CStats_Univariate> figures;
  for (auto _ : state) {
    figures = std::make_unique<CStats_Univariate>();
    figures->Add(&table, 0);
    benchmark::DoNotOptimize(figures->Calculate(11, nullptr));
  }
  if (!Agrees(*figures, ComputeFloor(table.GetMade(0)))) state.SkipWithError("the figures differ from the floor's");
}

void Calculate1(benchmark::State& state) {
  auto& table = GetTable(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    CStats_Univariate figures;
    figures.Add(&table, 0);
    benchmark::DoNotOptimize(figures.Calculate(1, nullptr));
  }
}

// The third moment sum alone, beside the library's pow.
void Cubes(benchmark::State& state) {
  const auto column = made::Normal(1'000'000, 100, 15);
  double sum = 0;
  for (auto _ : state) {
    CubeSum cubes(100);
    cubes.Add(column.values);
    sum = cubes.GetSum();
    benchmark::ClobberMemory();
  }
  double expected = 0;
  for (const double x : column.values) expected += std::pow(x - 100, 3.0);
  if (sum != expected) state.SkipWithError("the sum differs from pow's");
}

void CubesByPow(benchmark::State& state) {
  const auto column = made::Normal(1'000'000, 100, 15);
  for (auto _ : state) {
    double sum = 0;
    for (const double x : column.values) sum += std::pow(x - 100, 3.0);
    benchmark::DoNotOptimize(sum);
  }
}

void Kinds(benchmark::internal::Benchmark* bench) {
  bench->ArgName("kind")->DenseRange(kNormal, kRamp)->Unit(benchmark::kMillisecond);
}

BENCHMARK(Floor)->Apply(Kinds);
BENCHMARK(Calculate11)->Apply(Kinds);
BENCHMARK(Calculate1)->Arg(kNormal)->Unit(benchmark::kMillisecond);
BENCHMARK(Cubes)->Unit(benchmark::kMillisecond);
BENCHMARK(CubesByPow)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace tallyscope
