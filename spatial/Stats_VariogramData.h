// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "statistics/Stats_Data.h"

namespace tallyscope {

// A curve of a variogram as a table, one station for each lag: four vectors of one length. The axis X is the lag; the
// fields are 0 the moment of inertia (semivariance), 1 the covariance, 2 the pair count.
class CStats_VariogramData : public CStats_Data {
 public:
  std::vector<int> pairCount;
  std::vector<double> lag;
  std::vector<double> covariance;
  std::vector<double> momentOfInertia;

  int GetSize() override { return static_cast<int>(lag.size()); }
  int GetSpatialSize() override { return 1; }
  int GetValueSize() override { return 3; }
  CString GetValueName(int field) override;
  using CStats_Data::GetValue;
  double GetValue(int field, int station) override;
};

}  // namespace tallyscope
