// SPDX-License-Identifier: MIT
// The summary of tables of many columns, as JSON with sorted quantiles. "growth" is the time for a column over that in
// the smallest table: it stays near 1 as long as nothing is done for all columns at each column.
#include <benchmark/benchmark.h>

#include <ctime>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "host/Summary.h"

namespace tallyscope {
namespace {

constexpr int kFewest = 1000;
constexpr int kRows = 3;

CHostTable MakeWideTable(int columns) {
  std::vector<CHostColumn> made(static_cast<std::size_t>(columns));
  for (std::size_t i = 0; i < made.size(); ++i) {
    made[i].name = "column " + std::to_string(i);
    made[i].Reserve(kRows);
    for (std::size_t row = 0; row < kRows; ++row) made[i].GetValues()[row] = static_cast<double>(row * i % 7);
    made[i].Finish(kRows);
  }
  return {std::move(made), kRows};
}

void SummariseColumns(benchmark::State& state) {
  static double smallest = 0;  // seconds for a column
  const auto columns = static_cast<int>(state.range(0));
  CHostTable table = MakeWideTable(columns);
  std::size_t bytes = 0;
  double seconds = 0;  // of the processor
  for (auto _ : state) {
    const std::clock_t start = std::clock();
    std::ostringstream out;
    PrintJson("wide.csv", table, Summarise(table, GetDims(table), Quantiles::kSorted), out);
    bytes = out.str().size();
    seconds += static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  }
  if (bytes < static_cast<std::size_t>(columns) * 100) state.SkipWithError("columns are missing");
  const double forColumn = seconds / static_cast<double>(state.iterations()) / columns;
  if (columns == kFewest) smallest = forColumn;
  if (smallest > 0) state.counters["growth"] = forColumn / smallest;
  state.SetItemsProcessed(state.iterations() * columns);
}

BENCHMARK(SummariseColumns)->Arg(kFewest)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyscope
