// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

#include "statistics/StationProgress.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

// Walks the stations of a field in the order of its sort table, which it has, value by value: visit(value). Nulls are
// skipped. A percent counts positions. False when the sink cancels.
template <class Visit>
bool VisitSortedValues(CStats_Data& data, int dim, StationProgress& progress, Visit visit) {
  constexpr int kBlock = 512;
  int stations[kBlock];
  double values[kBlock];
  unsigned char valid[kBlock];
  const int total = data.GetSize();
  for (int first = 0; first < total;) {
    const int count = progress.Cut(first, std::min(kBlock, total - first));
    for (int i = 0; i < count; ++i) stations[i] = data.GetSortedStation(dim, first + i);
    data.ReadValuesAt(dim, stations, count, values, valid);
    for (int i = 0; i < count; ++i) {
      if (valid[i] != 0) visit(values[i]);
    }
    first += count;
    if (!progress.Report(first - 1)) return false;
  }
  return true;
}

}  // namespace tallyscope
