// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

namespace tallyscope {

// Sums of `width` samples each: sums[i] = samples[i] + ... + samples[i + width - 1]. Each comes from an earlier one, in
// several chains side by side. `room` holds intermediate sums and keeps its memory from call to call.
void SlideBox(const double* samples, int width, double* sums, int count, std::vector<double>& room);

// How far sums that take their terms in another order may lie apart.
struct SumSpread {
  bool finite = false;  // no NaN and no infinity among the samples
  double bound = 0;     // of the difference; 0: none, each sum is exact in every order
};

// For sums in double of up to `terms` of these samples, each of which is or was a float, reached by up to `steps`
// additions and subtractions.
SumSpread GetSumSpread(std::span<const double> samples, int terms, int steps);
SumSpread GetSumSpread(std::span<const float> samples, int terms, int steps);

}  // namespace tallyscope
