// SPDX-License-Identifier: MIT
#include "bands/DSPOperationData.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace tallyscope {

std::unique_ptr<CDSPOperationData> CDSPOperationData::Clone(bool deep) const {
  auto clone = std::make_unique<CDSPOperationData>();
  clone->TakeCopy(*this);
  if (deep && data != nullptr) clone->SetData(data->Clone(true).release(), true);
  return clone;
}

void CDSPOperationData::TakeCopy(const CDSPOperationData& source) {
  if (&source == this) return;
  SetData(source.data, false);
  start = source.start;
  end = source.end;
  step = source.step;
  origin = source.origin;
}

void CDSPOperationData::SetData(CDSPData* set, bool own) {
  if (own_.get() == set) static_cast<void>(own_.release());
  data = set;
  own_.reset(own ? set : nullptr);
}

void CDSPOperationData::MoveOwnership(CDSPOperationData& from) {
  if (from.own_ != nullptr && from.own_.get() == data) own_ = std::move(from.own_);
}

void CDSPOperationData::SetRegion(std::array<int, 3> first, std::array<int, 3> last, int stride) {
  start = first;
  end = last;
  step = stride;
}

void CDSPOperationData::CoverAll() {
  if (data == nullptr) return;
  SetRegion({0, 0, 0}, {data->sizeX - 1, data->sizeY - 1, data->sizeZ - 1}, step);
}

int CDSPOperationData::GetExtent(int axis) const {
  const auto at = static_cast<std::size_t>(axis);
  const std::int64_t extent = std::int64_t{end[at]} - start[at];
  return static_cast<int>(std::min<std::int64_t>(extent < 0 ? -extent : extent, std::numeric_limits<int>::max()));
}

int CDSPOperationData::GetCount(int axis) const {
  if (data == nullptr) return 0;
  const std::int64_t size = axis == 0 ? data->sizeX : axis == 1 ? data->sizeY : data->sizeZ;
  const std::int64_t first = start[static_cast<std::size_t>(axis)];
  if (first < 0) return 0;
  return static_cast<int>(std::clamp<std::int64_t>(size - first, 0, std::int64_t{GetExtent(axis)} + 1));
}

int CDSPOperationData::GetAxes() const {
  int axes = 0;
  for (int axis = 0; axis < 3; ++axis) axes |= GetExtent(axis) > 0 ? 1 << axis : 0;
  return axes;
}

}  // namespace tallyscope
