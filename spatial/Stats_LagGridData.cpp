// SPDX-License-Identifier: MIT
#include "spatial/Stats_LagGridData.h"

#include <cstddef>

#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

CStats_LagGridData::CStats_LagGridData(const CStats_Spatial* spatial) : CStats_LagGridData(spatial->grid) {}

CStats_LagGridData::CStats_LagGridData(const LagGrid& grid) : grid_(grid) {
  for (int axis = 0; axis < 3; ++axis) {
    if (!grid.empty() && grid.GetSettings().IsActive(axis)) dimensions_ = axis + 1;
  }
  rowSize_ = static_cast<int>(grid.GetColumnCount());
  planeSize_ = rowSize_ * static_cast<int>(grid.GetRowCount());
  if (dimensions_ > 0) size_ = planeSize_ * static_cast<int>(grid.size());
}

CString CStats_LagGridData::GetValueName(int field) {
  switch (field) {
    case -3:
      return "LagZ";
    case -2:
      return "LagY";
    case -1:
      return "LagX";
    case 0:
      return "Moment of Intertia";
    case 1:
      return "Covariance";
    case 2:
      return "Pair Count";
    default:
      return {};
  }
}

double CStats_LagGridData::GetValue(int field, int station) {
  if (field < 0 || field > 2) return 0.0;
  const auto level = static_cast<std::size_t>(station / planeSize_);
  const int rest = station % planeSize_;
  const auto row = static_cast<std::size_t>(rest / rowSize_);
  const auto column = static_cast<std::size_t>(rest % rowSize_);
  const LagCell& cell = grid_[level][row][column];
  return field == 0 ? cell.moment : field == 1 ? cell.covariance : static_cast<double>(cell.pairs);
}

std::array<double, 2> GetLagGridColourRange(const LagGrid& grid, int field) {
  if (grid.empty()) return {};
  constexpr int kBinnedQuantiles = 1 | 32;
  CStats_LagGridData cells(grid);
  CStats_Univariate figures;
  figures.Add(&cells, field);
  figures.Calculate(kBinnedQuantiles, nullptr);
  return {figures.binnedHistogram.GetPercentile(0.05), figures.binnedHistogram.GetPercentile(0.95)};
}

}  // namespace tallyscope
