// SPDX-License-Identifier: MIT
#include "spatial/Stats_Spatial.h"

#include "spatial/CancelMemory.h"
#include "spatial/StationIndex.h"
#include "spatial/SurfaceFit.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr int kExtraction = 1;
constexpr int kLagPairs = 2;
constexpr int kLagGrid = 4;
constexpr int kSurfaceFit = 8;

}  // namespace

CStats_Spatial::CStats_Spatial() {
  CStats_Spatial::ResetSpatialDims();
}

void CStats_Spatial::SetSpatialDims(int dimX, int dimY, int dimZ, int dimCount) {
  dims_ = {dimX, dimY, dimZ};
  dimCount_ = dimCount;
}

void CStats_Spatial::ResetSpatialDims() {
  SetSpatialDims(-1, -2, -3, IsItem(0) ? GetItemData(0)->GetSpatialSize() : 2);
}

bool CStats_Spatial::CalculateItem(int item, int flags, CProgressSink* progress) {
  if (!IsItem(item)) return false;
  CStats_Data* data = GetItemData(item);
  const int dim = GetItemDim(item);
  CCancelMemory memory(progress);
  CProgressSink* sink = memory.GetSink();
  const auto isWanted = [&](int flag) { return !memory.IsCancelled() && (flags & ~GetFlags(item) & flag) != 0; };
  const auto isSearchable = [&] { return static_cast<bool>(PrepareStationIndex(*data, dims_, dimCount_, sink)); };
  if (isWanted(kExtraction)) {
    const bool isReady = isSearchable() || (extractFlags & kRegularCells) == 0;  // regions look for themselves
    if (isReady && !memory.IsCancelled() && CalcExtraction(data, dim, sink)) SetFlags(item, kExtraction);
    isSearchable();  // a region in other dims has left the search on these
  }
  if (isWanted(kLagPairs) && isSearchable() && CalcLagPairs(data, dim, sink)) SetFlags(item, kLagPairs);
  if (isWanted(kLagGrid)) {
    const bool usesSearch = (lagFlags & kUseSearch) != 0 && dimCount_ >= 2;
    if ((!usesSearch || isSearchable()) && CalcLagGrid(data, dim, sink)) SetFlags(item, kLagGrid);
  }
  if (isWanted(kSurfaceFit) && CalcSurfaceFit(data, dim, sink)) SetFlags(item, kSurfaceFit);
  return (GetFlags(item) & flags) == flags;
}

bool CStats_Spatial::CalcSurfaceFit(CStats_Data* data, int dim, CProgressSink* progress) {
  const std::array<int, 3> dims{dims_[0], dims_[1], dim};
  const auto fit = HasDims(*data, dims, 3) ? FitSurface(*data, dims, progress) : std::nullopt;
  if (!fit) return false;
  fitA = fit->a;
  fitB = fit->b;
  fitC = fit->c;
  xMin = fit->x.start;
  xRange = fit->x.range;
  yMin = fit->y.start;
  yRange = fit->y.range;
  valueMin = fit->value.start;
  valueRange = fit->value.range;
  return true;
}

}  // namespace tallyscope
