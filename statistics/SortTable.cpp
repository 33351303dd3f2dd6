// SPDX-License-Identifier: MIT
#include "statistics/SortTable.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <numeric>

#include "statistics/Quicksort.h"
#include "statistics/RadixOrder.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr std::size_t kCombBelow = 100;  // stations

// Where the parts of the work begin, as shares of it. The order of distinct values is tried first.
constexpr double kOrder = 0.1;
constexpr double kQuicksort = 0.4;

bool IsAscending(const std::vector<double>& values) {
  for (std::size_t i = 1; i < values.size(); ++i) {
    if (values[i - 1] > values[i]) return false;
  }
  return true;
}

void CombSort(const SortColumn& column, std::ptrdiff_t size) {
  std::ptrdiff_t gap = size;
  for (bool swapped = true; gap > 1 || swapped;) {
    gap = gap * 10 / 13;
    if (gap == 9 || gap == 10) gap = 11;
    gap = std::max<std::ptrdiff_t>(gap, 1);
    swapped = false;
    for (std::ptrdiff_t i = 0; i < size - gap; ++i) {
      if (!(column.values[i] > column.values[i + gap])) continue;
      column.Swap(i, i + gap);
      swapped = true;
    }
  }
}

// -a < -b exactly when a > b, so every step is that of the descending sort.
std::vector<double> ReadColumn(CStats_Data& data, int field, bool descending, CWorkProgress& progress) {
  std::vector<double> values(static_cast<std::size_t>(std::max(data.GetSize(), 0)));
  progress.Run(values.size(), 0, kOrder, [&](std::size_t first, std::size_t last) {
    double* block = values.data() + first;
    data.ReadRawValues(field, static_cast<int>(first), static_cast<int>(last - first), block);
    if (descending) std::transform(block, block + (last - first), block, std::negate<>());
  });
  return values;
}

}  // namespace

std::shared_ptr<const SortTable> MakeSortTable(CStats_Data& data, int field, bool descending, CProgressSink* sink) {
  CWorkProgress progress(sink, "Sorting");
  std::vector<double> values = ReadColumn(data, field, descending, progress);
  if (progress.IsCancelled()) return nullptr;
  auto table = std::make_shared<SortTable>();
  SortTable& stations = *table;
  if (values.size() >= kCombBelow && OrderDistinct(values, stations, kOrder, kQuicksort, progress)) return table;
  if (progress.IsCancelled()) return nullptr;
  stations.resize(values.size());
  std::iota(stations.begin(), stations.end(), 0);
  const SortColumn column{values.data(), stations.data()};
  const auto size = static_cast<std::ptrdiff_t>(values.size());
  if (values.size() >= kCombBelow) {
    if (!Quicksort(column, size, kQuicksort, progress)) return nullptr;
  } else if (!IsAscending(values)) {
    CombSort(column, size);
  }
  return table;
}

}  // namespace tallyscope
