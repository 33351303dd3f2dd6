// SPDX-License-Identifier: MIT
#include "spatial/StationIndex.h"

#include <algorithm>

#include "spatial/Stats_PointSearch.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

bool HasDims(CStats_Data& data, const std::array<int, 3>& dims, int dimCount) {
  const auto isColumn = [&data](int dim) { return dim >= -data.GetSpatialSize() && dim < data.GetValueSize(); };
  return dimCount >= 2 && dimCount <= 3 && std::all_of(dims.begin(), dims.begin() + dimCount, isColumn);
}

StationIndex GetStationIndex(CStats_Data& data) {
  CStats_PointSearch* search = data.GetPointSearch();
  if (search == nullptr) return {};
  return {search->Share(), {search->GetFieldX(), search->GetFieldY(), search->GetFieldZ()}};
}

StationIndex PrepareStationIndex(CStats_Data& data, const std::array<int, 3>& dims, int dimCount,
                                 CProgressSink* progress) {
  CStats_PointSearch* search = HasDims(data, dims, dimCount) ? data.GetPointSearch() : nullptr;
  if (search == nullptr) return {};
  search->SetFields(dims[0], dims[1], dims[2], dimCount);
  return data.PreparePointSearch(progress) ? GetStationIndex(data) : StationIndex();
}

}  // namespace tallyscope
