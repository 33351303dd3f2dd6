// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <vector>

#include "platform/core/Colour.h"

namespace tallyscope {

// A value to an index of 0 to `count` - 1 by equal steps; the ends and what lies beyond them go to the end indices. Off
// when the step isn't above 0.
struct StepMap {
  double low = 0;
  double step = 0;
  int count = 0;

  bool IsOn() const { return step > 0; }
  int GetIndex(double value) const {
    const double index = (value - low) / step;
    if (!(index > 0)) return 0;  // NaN too
    return index >= count - 1 ? count - 1 : static_cast<int>(index);
  }
  // Many at once, without branches.
  void GetIndices(const double* values, int many, int* indices) const {
    const double last = count - 1;
    for (int i = 0; i < many; ++i) {
      double index = (values[i] - low) / step;
      index = index > 0 ? index : 0;
      indices[i] = static_cast<int>(index < last ? index : last);
    }
  }
};

// A field's values to the 256 colours of a table.
class ColourModulation {
 public:
  ColourModulation() = default;
  ColourModulation(double low, double high, const std::vector<COLORREF>& table)
      : map_{low, (high - low) * 0.00390625, 256}, table_(&table) {}

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
  SizeModulation(double low, double high) : map_{low, (high - low) / 5, 5} {}

  bool IsOn() const { return map_.IsOn(); }
  int GetHalfSize(double value) const { return map_.GetIndex(value); }
  const StepMap& GetMap() const { return map_; }  // to half sizes

 private:
  StepMap map_;
};

}  // namespace tallyscope
