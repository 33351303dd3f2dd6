// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "statistics/WorkProgress.h"

namespace tallyscope {

// The stations in ascending order of their values, for columns where that order is the only one. False, with `stations`
// of no use, when two values are equal (-0.0 and 0.0 are) or one is NaN, when too many values crowd together in the
// first 20 bits of their mantissa, and when cancelled. Tells of the work from share `begin` to `end`.
bool OrderDistinct(const std::vector<double>& values, std::vector<int>& stations, double begin, double end,
                   CWorkProgress& progress);

}  // namespace tallyscope
