// SPDX-License-Identifier: MIT
#include <algorithm>

#include "spatial/LagBinning.h"
#include "spatial/LagGridWalk.h"
#include "spatial/PairProgress.h"
#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

bool CStats_Spatial::FillLagGrid(int item, CProgressSink* progress) {
  if (valueStatistics_ != nullptr) return CalcLagGrid(GetItemData(item), GetItemDim(item), progress);
  CStats_Univariate made;
  made.Add(GetItemData(item), GetItemDim(item));
  if (!made.Calculate(1, progress)) return false;
  valueStatistics_ = &made;
  const bool good = CalcLagGrid(GetItemData(item), GetItemDim(item), progress);
  valueStatistics_ = nullptr;
  return good;
}

bool CStats_Spatial::CalcLagGrid(CStats_Data* data, int dim, CProgressSink* progress) {
  if (valueStatistics_ == nullptr) return false;
  PairProgress reporter(progress);
  if (!reporter.Start(("Computing " + data->GetValueName(dim) + " sample variogram grid...").c_str())) return false;
  const bool usesSearch = (lagFlags & kUseSearch) != 0 && dimCount_ >= 2;
  CStats_PointSearch* search = usesSearch ? data->GetPointSearch() : nullptr;
  if (usesSearch && (search == nullptr || !search->IsPartitioned())) return false;
  const LagBinning binning(*this);
  if (!binning.IsReasonable()) return false;
  const int total = data->GetSize();
  if (sampleLimit < 0) sampleLimit = total;
  const bool isSampled = (lagFlags & kSample) != 0 && sampleLimit > 0;
  const int stride = isSampled ? std::max(1, total / sampleLimit) : 1;

  LagGridWalk::Source source{data, dim, valueStatistics_->mean, {}};
  for (int axis = 0; axis < 3; ++axis) {
    const int column = dims_[axis];
    const bool isColumn = column >= -data->GetSpatialSize() && column < data->GetValueSize();
    source.dims[axis] = binning.IsActive(axis) && isColumn ? column : LagGridWalk::kNoColumn;
  }
  LagGridWalk walk(source, binning, stride, pair_kernel::GetBestLevel());
  // The walk leaves the tree as it is, for the next build to take down.
  const bool good = usesSearch ? walk.WalkLeaves(*search, lagRange, reporter) : walk.WalkAll(reporter);
  if (usesSearch) search->SetPartitioned(false);
  if (good) walk.Finish(grid);
  return good;
}

}  // namespace tallyscope
