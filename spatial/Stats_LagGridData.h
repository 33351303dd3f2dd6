// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "spatial/LagGrid.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

class CStats_Spatial;

// A lag grid as a table: a station for each cell, level by level and row by row. The fields are 0 the moment of
// inertia, 1 the covariance, 2 the pair count; cells without a pair are stations with zeros. Cells have no places of
// their own: the axes read 0. The table keeps the grid that it was built on, whatever is computed afterwards; a grid
// that was never computed, or has no active axis, has no stations.
class CStats_LagGridData : public CStats_Data {
 public:
  explicit CStats_LagGridData(const CStats_Spatial* spatial);
  explicit CStats_LagGridData(const LagGrid& grid);

  int GetSize() override { return size_; }
  int GetSpatialSize() override { return dimensions_; }  // the highest active axis
  int GetValueSize() override { return 3; }
  CString GetValueName(int field) override;
  using CStats_Data::GetValue;
  double GetValue(int field, int station) override;

 private:
  LagGrid grid_;
  int dimensions_ = 0;
  int size_ = 0;
  int rowSize_ = 0;
  int planeSize_ = 0;
};

// What the colours of a picture of the grid span: the 5 % and 95 % quantiles of a field of its table. Zeros
// without a grid.
std::array<double, 2> GetLagGridColourRange(const LagGrid& grid, int field);

}  // namespace tallyscope
