// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <numbers>

namespace tallyscope {

// How values of one axis become evenly spaced ones. A logarithmic axis is linear within its band, so that zero and
// both signs have a place on it: v / band inside, sign (1 + log10 |v / band|) outside.
struct AxisMap {
  enum Mapping : int { kLinear = 0, kLogarithmic = 1 };

  int mapping = kLinear;
  double band = 1.0;  // half width of the linear band, above 0

  double ToData(double world) const;
  // The same but for rounding, for loops over many values.
  double NearData(double world) const {
    if (!IsLogarithmic()) return world;
    const double scaled = world / band;
    const double size = std::fabs(scaled);
    return size <= 1 ? scaled : std::copysign(1 + std::log(size) * std::numbers::log10e, scaled);
  }
  double ToWorld(double data) const;
  bool IsLogarithmic() const { return mapping == kLogarithmic; }
  bool operator==(const AxisMap&) const = default;
};

}  // namespace tallyscope
