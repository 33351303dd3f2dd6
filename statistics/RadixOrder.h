// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace tallyscope {

// The stations in ascending order of their values, for columns where that order is the only one: false when two values
// are equal (-0.0 and 0.0 are) or one is NaN; `stations` is then of no use. Linear time for all but columns whose
// values crowd together in the first 20 bits of their mantissa.
bool OrderDistinct(const std::vector<double>& values, std::vector<int>& stations);

}  // namespace tallyscope
