// SPDX-License-Identifier: MIT
#include "bands/DSPPower.h"

#include <algorithm>
#include <cmath>

#include "bands/BandWalk.h"

namespace tallyscope {

namespace {

bool ReadsFloats(const CDSPOperation& operation) {
  return operation.storage != nullptr &&
         std::all_of(operation.storage->inputs.begin(), operation.storage->inputs.end(), [](const auto& input) {
           return input->data == nullptr || input->data->elementType == CDSPData::kFloat;
         });
}

}  // namespace

// The square of a float is exact in a double, so it is what pow gives too. Its root, unless exact, lies further from
// the middle between two floats than pow and sqrt err, so both are narrowed to the same float.
bool CDSPPower::ProcessAny(CDSPProgress* progress) {
  const double power = exponent;
  if (power == 2.0 && ReadsFloats(*this)) return MapOverlap(*this, progress, [](double x) { return x * x; });
  if (power == 0.5 && ReadsFloats(*this)) {
    return MapOverlap(*this, progress, [](double x) { return x > 0 ? std::sqrt(x) : std::pow(x, 0.5); });
  }
  return MapOverlap(*this, progress, [power](double x) { return std::pow(x, power); });
}

}  // namespace tallyscope
