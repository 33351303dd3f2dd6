// SPDX-License-Identifier: MIT
#include "statistics/BlockReader.h"

#include "statistics/Stats_Data.h"

namespace tallyscope {

CBlockReader::CBlockReader(const std::vector<CColumnRef>& columns, int total)
    : columns_(columns.size()), total_(total) {
  for (std::size_t i = 0; i < columns.size(); ++i) columns_[i].source = columns[i];
}

bool CBlockReader::Next(int limit) {
  first_ += count_;
  count_ = std::max(std::min({kBlock, limit, total_ - first_}), 0);
  kept_ = static_cast<std::size_t>(count_);
  whole_ = true;
  if (count_ == 0) return false;
  for (Column& column : columns_) {
    const CColumnRef& source = column.source;
    whole_ &= source.data->ReadValues(source.dim, first_, count_, column.values.data(), column.valid.data()) == count_;
  }
  return true;
}

bool CBlockReader::IsJoint(int station) const {
  return whole_ || std::all_of(columns_.begin(), columns_.end(),
                               [at = At(station)](const Column& column) { return column.valid[at] != 0; });
}

void CBlockReader::KeepJoint() {
  if (whole_) return;
  std::array<unsigned char, kBlock> joint = columns_.front().valid;
  for (std::size_t k = 1; k < columns_.size(); ++k) {
    for (std::size_t i = 0; i < joint.size(); ++i) joint[i] &= columns_[k].valid[i];
  }
  for (Column& column : columns_) {
    kept_ = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count_); ++i) {  // nulls in no order would mispredict a branch
      column.values[kept_] = column.values[i];
      kept_ += joint[i];
    }
  }
}

bvector MarkJoint(const std::vector<CColumnRef>& columns, int total) {
  bvector marks(total, true);
  CBlockReader reader(columns, total);
  while (reader.Next()) {
    if (reader.IsWhole()) continue;
    for (int station = reader.First(); station < reader.First() + reader.Count(); ++station) {
      if (!reader.IsJoint(station)) marks.Set(station, false);
    }
  }
  return marks;
}

}  // namespace tallyscope
