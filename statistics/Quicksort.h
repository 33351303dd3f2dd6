// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "statistics/WorkProgress.h"

namespace tallyscope {

// Values and their stations, moved together.
struct SortColumn {
  double* values;
  int* stations;

  void Swap(std::ptrdiff_t a, std::ptrdiff_t b) const {
    std::swap(values[a], values[b]);
    std::swap(stations[a], stations[b]);
  }
};

// Sorts in ascending order by Hoare's quicksort about the middle value of each range, which fixes the order that equal
// values come out in. NaN is neither before nor after anything. O(n log^2 n) for any values. Tells of the work from
// share `begin` to 1. False when cancelled, with the column in no order.
bool Quicksort(const SortColumn& column, std::ptrdiff_t size, double begin, CWorkProgress& progress);

}  // namespace tallyscope
