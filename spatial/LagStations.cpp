// SPDX-License-Identifier: MIT
#include "spatial/LagStations.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace tallyscope {

void LagStations::Clear() {
  for (auto& places : places_) places.clear();
  for (auto& offsets : offsets_) offsets.clear();
  values_.clear();
  blocks_.clear();
  closed_ = 0;
}

void LagStations::Reserve(std::size_t count) {
  for (auto& places : places_) places.reserve(count);
  for (auto& offsets : offsets_) offsets.reserve(count + kSpare);
  values_.reserve(count);
}

void LagStations::Append(const Point3& place, double value) {
  for (std::size_t axis = 0; axis < 3; ++axis) places_[axis].push_back(place[axis]);
  values_.push_back({value - mean_, value});
}

void LagStations::Append(const LagStations& from, int station) {
  const auto s = static_cast<std::size_t>(station);
  for (std::size_t axis = 0; axis < 3; ++axis) places_[axis].push_back(from.places_[axis][s]);
  values_.push_back(from.values_[s]);
}

void LagStations::SortAlongX() {
  std::vector<int> order;
  for (int i = 0; i < GetSize(); ++i) {
    if (!std::isnan(places_[0][static_cast<std::size_t>(i)])) order.push_back(i);
  }
  const auto& x = places_[0];
  std::sort(order.begin(), order.end(),
            [&x](int a, int b) { return x[static_cast<std::size_t>(a)] < x[static_cast<std::size_t>(b)]; });
  LagStations sorted(mean_, perUnit_);
  sorted.Reserve(order.size());
  for (const int station : order) sorted.Append(*this, station);
  *this = std::move(sorted);
}

int LagStations::CloseBlocks() {
  const int size = GetSize();
  for (auto& offsets : offsets_) offsets.resize(static_cast<std::size_t>(size + kSpare));
  const int blocks = (size - closed_ + kBlock - 1) / kBlock;
  for (int left = blocks; left > 0; --left) {
    const int count = (size - closed_) / left;
    blocks_.push_back(MakeBlock(closed_, count));
    closed_ += count;
  }
  return GetBlockCount();
}

// A station without a number for a co-ordinate, which is near no other, has no part in the reach.
LagStations::Block LagStations::MakeBlock(int first, int count) {
  Block block;
  block.first = first;
  block.count = count;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double* places = places_[axis].data() + first;
    double low = std::numeric_limits<double>::infinity();
    double high = -low;
    for (int i = 0; i < count; ++i) {
      low = std::min(low, places[i]);
      high = std::max(high, places[i]);
    }
    block.centre[axis] = low <= high ? low + (high - low) / 2 : 0;
    float* offsets = offsets_[axis].data() + first;
    for (int i = 0; i < count; ++i) {
      const double offset = (places[i] - block.centre[axis]) * perUnit_[axis];
      offsets[i] = static_cast<float>(offset);
      if (std::isnan(places[i])) continue;
      block.reach[axis] =
          std::max(block.reach[axis], std::isnan(offset) ? std::numeric_limits<double>::infinity() : std::fabs(offset));
    }
  }
  return block;
}

}  // namespace tallyscope
