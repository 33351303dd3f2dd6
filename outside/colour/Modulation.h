// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <vector>

#include "platform/core/Colour.h"

namespace tallyscope {

// A value to an index of 0 to `count` - 1 by equal steps; the ends and what lies beyond them go to the end indices. Off
// when the step isn't above 0. Where the range is wider than any number, all is counted in halves.
struct StepMap {
  StepMap() = default;
  // Steps of the range times `fraction` or over `parts`.
  static StepMap ByFraction(double low, double high, double fraction, int count) {
    const double unit = FindUnit(low, high);
    return {low * unit, (high * unit - low * unit) * fraction, count, unit};
  }
  static StepMap ByParts(double low, double high, int parts) {
    const double unit = FindUnit(low, high);
    return {low * unit, (high * unit - low * unit) / parts, parts, unit};
  }

  bool IsOn() const { return step_ > 0; }
  int GetIndex(double value) const {
    const double index = (value * unit_ - low_) / step_;
    if (!(index > 0)) return 0;  // NaN too
    return index >= count_ - 1 ? count_ - 1 : static_cast<int>(index);
  }
  // Many at once, without branches.
  void GetIndices(const double* values, int many, int* indices) const {
    const double last = count_ - 1;
    for (int i = 0; i < many; ++i) {
      double index = (values[i] * unit_ - low_) / step_;
      index = index > 0 ? index : 0;
      indices[i] = static_cast<int>(index < last ? index : last);
    }
  }

 private:
  StepMap(double low, double step, int count, double unit) : low_(low), step_(step), count_(count), unit_(unit) {}
  static double FindUnit(double low, double high) { return std::isinf(high - low) ? 0.5 : 1; }

  double low_ = 0;  // in the unit
  double step_ = 0;
  int count_ = 0;
  double unit_ = 1;
};

// A field's values to the 256 colours of a table.
class ColourModulation {
 public:
  ColourModulation() = default;
  ColourModulation(double low, double high, const std::vector<COLORREF>& table)
      : map_(StepMap::ByFraction(low, high, 0.00390625, 256)), table_(&table) {}

  bool IsOn() const { return table_ != nullptr && map_.IsOn(); }
  const StepMap& GetMap() const { return map_; }  // to places in the table
  COLORREF GetColour(double value) const { return (*table_)[static_cast<std::size_t>(map_.GetIndex(value))]; }

 private:
  StepMap map_;
  const std::vector<COLORREF>* table_ = nullptr;
};

// A field's values to half sizes of marks, 0 to 4.
class SizeModulation {
 public:
  SizeModulation() = default;
  SizeModulation(double low, double high) : map_(StepMap::ByParts(low, high, 5)) {}

  bool IsOn() const { return map_.IsOn(); }
  int GetHalfSize(double value) const { return map_.GetIndex(value); }
  const StepMap& GetMap() const { return map_; }  // to half sizes

 private:
  StepMap map_;
};

}  // namespace tallyscope
