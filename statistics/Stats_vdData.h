// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "statistics/Stats_Data.h"

namespace tallyscope {

// A caller's vector of double as a table of one field without axes, whichever field is asked for. Every value is valid,
// NaN too. The vector must outlive it; who changes its values says DataChanged.
class CStats_vdData : public CStats_Data {
 public:
  explicit CStats_vdData(std::vector<double>* values) : values_(values) {}

  using CStats_Data::GetValue;
  int GetSize() override;
  double GetValue(int field, int station) override;

 private:
  std::vector<double>* values_;
};

}  // namespace tallyscope
