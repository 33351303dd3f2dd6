// SPDX-License-Identifier: MIT
#include "plots/StationWalk.h"

#include <algorithm>

#include "spatial/LeafTests.h"

namespace tallyscope {

StationWalk::StationWalk(CStats_PointSearch& search, const Box& box) : search_(search), box_(box) {
  search_.SearchBox(box);
}

long long StationWalk::CountCandidates() const {
  long long count = 0;
  for (const Node* leaf : search_.GetLeaves()) count += static_cast<long long>(leaf->points.size());
  return count;
}

bool StationWalk::Next() {
  const auto& leaves = search_.GetLeaves();
  for (count_ = 0; count_ == 0 && leaf_ < leaves.size();) {
    const Node& leaf = *leaves[leaf_];
    const int size = static_cast<int>(leaf.points.size());
    const int count = std::min(kBlock, size - place_);
    if (place_ == 0 && leaf_ + 1 < leaves.size()) __builtin_prefetch(leaves[leaf_ + 1]->points.data());
    Take(leaf, count);
    place_ += count;
    if (place_ < size) continue;
    place_ = 0;
    ++leaf_;
  }
  return count_ > 0;
}

// A leaf inside the box is tested too: co-ordinates that are no numbers, or lie beyond the tree, are in some leaf.
void StationWalk::Take(const Node& leaf, int count) {
  stations_ = leaf.points.data() + place_;
  x_ = search_.GetLeafCoordinates(leaf, 0) + place_;
  y_ = search_.GetLeafCoordinates(leaf, 1) + place_;
  count_ = leaf_tests::Columns<2>({x_, y_}).ListInBox(count, hits_.data(), box_);
  if (count_ < count) CopyHits();
}

void StationWalk::CopyHits() {
  for (int i = 0; i < count_; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const int hit = hits_[at];
    stationCopies_[at] = stations_[hit];
    xCopies_[at] = x_[hit];
    yCopies_[at] = y_[hit];
  }
  stations_ = stationCopies_.data();
  x_ = xCopies_.data();
  y_ = yCopies_.data();
}

}  // namespace tallyscope
