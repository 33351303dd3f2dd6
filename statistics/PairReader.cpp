// SPDX-License-Identifier: MIT
#include "statistics/PairReader.h"

#include <algorithm>

#include "statistics/Stats_Data.h"

namespace tallyscope {

bool CPairReader::Next() {
  first_ += count_;
  count_ = std::min(kBlock, total_ - first_);
  if (count_ <= 0) {
    count_ = 0;
    pairs_ = 0;
    return false;
  }
  const int xs = x_.data->ReadValues(x_.dim, first_, count_, xs_.data(), both_.data());
  const int ys = y_.data->ReadValues(y_.dim, first_, count_, ys_.data(), yValid_.data());
  pairs_ = static_cast<std::size_t>(count_);
  if (xs < count_ || ys < count_) SqueezeNulls();
  return true;
}

void CPairReader::SqueezeNulls() {
  const auto count = static_cast<std::size_t>(count_);
  pairs_ = 0;
  for (std::size_t i = 0; i < count; ++i) {
    both_[i] &= yValid_[i];
    xs_[pairs_] = xs_[i];
    ys_[pairs_] = ys_[i];
    pairs_ += both_[i];
  }
}

bvector MarkPairs(const CPairReader::Column& x, const CPairReader::Column& y, int total) {
  bvector marks(total, true);
  CPairReader pairs(x, y, total);
  while (pairs.Next()) {
    if (pairs.IsWhole()) continue;
    for (int station = pairs.First(); station < pairs.First() + pairs.Count(); ++station) {
      if (!pairs.IsPair(station)) marks.Set(station, false);
    }
  }
  return marks;
}

}  // namespace tallyscope
