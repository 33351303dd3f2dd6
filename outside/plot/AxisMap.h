// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

// How values of one axis become evenly spaced ones. A logarithmic axis is linear within its band, so that zero and
// both signs have a place on it: v / band inside, sign (1 + log10 |v / band|) outside.
struct AxisMap {
  enum Mapping : int { kLinear = 0, kLogarithmic = 1 };

  int mapping = kLinear;
  double band = 1.0;  // half width of the linear band, above 0

  double ToData(double world) const;
  // Many at once: the same but for the last bits, and NaN for infinities on a logarithmic axis. `data`
  // may be `world`.
  void ToDataNearly(const double* world, int count, double* data) const;
  double ToWorld(double data) const;
  bool IsLogarithmic() const { return mapping == kLogarithmic; }
  bool operator==(const AxisMap&) const = default;
};

}  // namespace tallyscope
