// SPDX-License-Identifier: MIT
// Sort tables of a million values, beside two floors: a radix sort of keys with stations, which any column of distinct
// values could do with, and the quicksort that fixes the order of equal values, written plainly on flat arrays.
// Columns that drive that quicksort into quadratic time stand beside a column in no order: `per_1e9_nlogn` is the time
// for 1e9 of n log2 n, which should hardly grow with n.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "tests/support/Made.h"

namespace tallyscope {

namespace {

constexpr int kStations = 1'000'000;

enum Kind { kDistinct, kOneTie, kHundredths, kWhole, kDescendingRamp };

MadeColumn MakeColumn(int kind) {
  auto column = kind == kDescendingRamp ? made::Ramp(kStations, 1, 0) : made::Normal(kStations, 100, 15);
  if (kind == kOneTie) column.values[77] = column.values[kStations - 5];
  if (kind == kHundredths) return made::Rounded(std::move(column), 0.01);
  if (kind == kWhole) return made::Rounded(std::move(column), 1);
  return column;
}

struct Keyed {
  std::uint64_t key;
  std::uint32_t station;
};

// The two buffers are the caller's, so that their pages are paid for once.
std::vector<int> RadixFloor(const std::vector<double>& values, std::vector<Keyed>& from, std::vector<Keyed>& to) {
  constexpr int kDigits = 6;
  std::uint32_t counts[kDigits][2048] = {};
  for (std::size_t i = 0; i < values.size(); ++i) {
    auto key = std::bit_cast<std::uint64_t>(values[i]);
    key ^= key >> 63 != 0 ? ~std::uint64_t{0} : std::uint64_t{1} << 63;
    from[i] = {key, static_cast<std::uint32_t>(i)};
    for (int digit = 0; digit < kDigits; ++digit) ++counts[digit][key >> 11 * digit & 2047];
  }
  for (int digit = 0; digit < kDigits; ++digit) {
    std::uint32_t place = 0;
    for (auto& count : counts[digit]) place += std::exchange(count, place);
    for (std::size_t i = 0; i < values.size(); ++i) {
      to[counts[digit][from[i].key >> 11 * digit & 2047]++] = from[i];
    }
    from.swap(to);
  }
  std::vector<int> table(values.size());
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<int>(from[i].station);
  return table;
}

std::vector<int> QuicksortFloor(std::vector<double> values) {
  std::vector<int> table(values.size());
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<int>(i);
  std::vector<std::pair<int, int>> waiting{{0, static_cast<int>(values.size()) - 1}};
  double* v = values.data();
  int* t = table.data();
  while (!waiting.empty()) {
    auto [left, right] = waiting.back();
    waiting.pop_back();
    while (left < right) {
      int i = left;
      int j = right;
      const double pivot = v[(left + right) / 2];
      while (i <= j) {
        while (v[i] < pivot) ++i;
        while (pivot < v[j]) --j;
        if (i > j) break;
        std::swap(v[i], v[j]);
        std::swap(t[i++], t[j--]);
      }
      if (j - left < right - i) {
        if (i < right) waiting.push_back({i, right});
        right = j;
      } else {
        if (left < j) waiting.push_back({left, j});
        left = i;
      }
    }
  }
  return table;
}

void RadixFloor(benchmark::State& state) {
  const auto column = MakeColumn(static_cast<int>(state.range(0)));
  std::vector<Keyed> from(column.values.size());
  std::vector<Keyed> to(column.values.size());
  for (auto _ : state) benchmark::DoNotOptimize(RadixFloor(column.values, from, to));
}

void QuicksortFloor(benchmark::State& state) {
  const auto column = MakeColumn(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(QuicksortFloor(column.values));
}

void Sort(benchmark::State& state) {
  const int kind = static_cast<int>(state.range(0));
  std::vector<MadeColumn> columns;
  columns.push_back(MakeColumn(kind));
  CMadeTable table(std::move(columns));
  for (auto _ : state) {
    table.ClearSort();
    table.Sort(0, 0, nullptr);
  }
  const auto expected = QuicksortFloor(table.GetMade(0).values);
  for (int i = 0; i < kStations; ++i) {
    if (table.GetSortedStation(0, i) != expected[static_cast<std::size_t>(i)]) {
      state.SkipWithError("the table is not that of the quicksort");
      return;
    }
  }
}

void Kinds(benchmark::internal::Benchmark* bench) {
  bench->ArgName("kind")->DenseRange(kDistinct, kDescendingRamp)->Unit(benchmark::kMillisecond);
}

enum Nasty { kNoOrder, kOrganPipe, kKiller, kKillerOfPairs };

std::vector<double> MakeNasty(int kind, int size) {
  if (kind == kNoOrder) return made::Rounded(made::Normal(size, 0, size), 1).values;
  std::vector<double> values(static_cast<std::size_t>(size));
  for (int i = 0; i < size; ++i) values[static_cast<std::size_t>(i)] = kind == kOrganPipe ? std::min(i, size - i) : i;
  if (kind == kOrganPipe) return values;
  for (std::size_t i = 1; i < values.size(); ++i) std::swap(values[i], values[i / 2]);
  if (kind == kKiller) values.back() = values.front();
  if (kind == kKillerOfPairs) {
    for (double& value : values) value = std::floor(value / 2);
  }
  return values;
}

void SortNasty(benchmark::State& state) {
  const int size = static_cast<int>(state.range(1));
  CMadeTable table({made::Column(MakeNasty(static_cast<int>(state.range(0)), size))});
  for (auto _ : state) {
    table.ClearSort();
    table.Sort(0, 0, nullptr);
  }
  const double steps = size * std::log2(size) * 1e-9;
  state.counters["per_1e9_nlogn"] =
      benchmark::Counter(steps, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(SortNasty)
    ->ArgNames({"kind", "n"})
    ->ArgsProduct({{kNoOrder, kOrganPipe, kKiller, kKillerOfPairs}, {20'000, 80'000, 320'000}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(RadixFloor)->Arg(kDistinct)->ArgName("kind")->Unit(benchmark::kMillisecond);
BENCHMARK(QuicksortFloor)->Apply(Kinds);
BENCHMARK(Sort)->Apply(Kinds);

}  // namespace

}  // namespace tallyscope
