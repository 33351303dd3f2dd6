// SPDX-License-Identifier: MIT
#include "spatial/ComputeLagGrid.h"

#include <algorithm>

#include "spatial/LagBinning.h"
#include "spatial/LagGridWalk.h"
#include "spatial/PairProgress.h"
#include "spatial/StationIndex.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

int GetStride(const LagSettings& settings, int total) {
  const int limit = settings.sampleLimit < 0 ? total : settings.sampleLimit;
  return (settings.flags & LagSettings::kSample) != 0 && limit > 0 ? std::max(1, total / limit) : 1;
}

}  // namespace

std::optional<LagGrid> ComputeLagGrid(CStats_Data& data, int dim, double mean, const LagSettings& settings,
                                      CProgressSink* progress) {
  PairProgress reporter(progress);
  if (!reporter.Start(("Computing " + data.GetValueName(dim) + " sample variogram grid...").c_str())) return {};
  const bool usesSearch = (settings.flags & LagSettings::kUseSearch) != 0 && settings.dimCount >= 2;
  const StationIndex index = usesSearch ? GetStationIndex(data) : StationIndex();
  const LagBinning binning(settings);
  if ((usesSearch && !index) || !binning.IsReasonable()) return {};

  LagGridWalk::Source source{&data, dim, mean, {}};
  for (int axis = 0; axis < 3; ++axis) {
    const int column = settings.dims[static_cast<std::size_t>(axis)];
    const bool isColumn = column >= -data.GetSpatialSize() && column < data.GetValueSize();
    source.dims[axis] = binning.IsActive(axis) && isColumn ? column : LagGridWalk::kNoColumn;
  }
  LagGridWalk walk(source, binning, GetStride(settings, data.GetSize()), pair_kernel::GetBestLevel());
  const bool good = usesSearch ? walk.WalkLeaves(index, settings.range, reporter) : walk.WalkAll(reporter);
  if (!good) return {};
  return LagGrid(settings, walk.Finish());
}

}  // namespace tallyscope
