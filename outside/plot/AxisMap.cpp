// SPDX-License-Identifier: MIT
#include "outside/plot/AxisMap.h"

#include <cmath>

namespace tallyscope {

double AxisMap::ToData(double world) const {
  if (!IsLogarithmic()) return world;
  const double scaled = world / band;
  return std::abs(scaled) <= 1 ? scaled : std::copysign(1 + std::log10(std::abs(scaled)), scaled);
}

double AxisMap::ToWorld(double data) const {
  if (!IsLogarithmic()) return data;
  return std::abs(data) <= 1 ? data * band : std::copysign(std::pow(10.0, std::abs(data) - 1) * band, data);
}

}  // namespace tallyscope
