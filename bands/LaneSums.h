// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

// Sums side by side that all take the same numbers one after the other, each rounded at every step as it would be
// alone. `lanes` holds kLanes of them. It takes no longer than one sum, whose steps wait for one another.
constexpr int kLanes = 32;
void AddToLanes(const float* numbers, int count, double* lanes);
void AddToLanes(const double* numbers, int count, double* lanes);

}  // namespace tallyscope
