// SPDX-License-Identifier: MIT
#include "spatial/Stats_LagGridData.h"

#include <cstddef>

#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

CStats_LagGridData::CStats_LagGridData(const CStats_Spatial* spatial) : spatial_(spatial) {
  int counts[3] = {1, 1, 1};
  for (int axis = 0; axis < 3; ++axis) {
    if ((spatial->lagFlags >> axis & 1) == 0) continue;
    counts[axis] = spatial->lagCount[static_cast<std::size_t>(axis)];
    dimensions_ = axis + 1;
  }
  rowSize_ = counts[0];
  planeSize_ = counts[0] * counts[1];
  if (dimensions_ > 0) size_ = planeSize_ * counts[2];
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
  const LagCell& cell = spatial_->grid[level][row][column];
  return field == 0 ? cell.moment : field == 1 ? cell.covariance : static_cast<double>(cell.pairs);
}

std::array<double, 2> GetLagGridColourRange(const CStats_Spatial& spatial, int field) {
  if (spatial.grid.empty()) return {};
  constexpr int kBinnedQuantiles = 1 | 32;
  CStats_LagGridData cells(&spatial);
  CStats_Univariate figures;
  figures.Add(&cells, field);
  figures.Calculate(kBinnedQuantiles, nullptr);
  return {figures.binnedHistogram.GetPercentile(0.05), figures.binnedHistogram.GetPercentile(0.95)};
}

}  // namespace tallyscope
