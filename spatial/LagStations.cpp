// SPDX-License-Identifier: MIT
#include "spatial/LagStations.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace tallyscope {

namespace {

constexpr double kMostReach = 1e5;  // cells, of which a float still tells a fortieth

}  // namespace

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
  std::vector<int> order(values_.size());
  std::iota(order.begin(), order.end(), 0);
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
    const Block block = MakeBlock(closed_, count);
    if (*std::max_element(block.reach.begin(), block.reach.end()) <= kMostReach) {
      blocks_.push_back(block);
    } else {
      CutBlock(block);
    }
    closed_ += count;
  }
  return GetBlockCount();
}

// Into runs that are compact, as long as they are few: where most stations are far apart blocks of one or two would
// cost more than the estimate saves.
void LagStations::CutBlock(const Block& block) {
  constexpr int kMostParts = kBlock / 4;
  int ends[kMostParts];
  int parts = 0;
  int first = block.first;
  for (int i = first + 1; i <= block.first + block.count && parts < kMostParts; ++i) {
    if (i < block.first + block.count && IsCompact(first, i + 1 - first)) continue;
    ends[parts++] = first = i;
  }
  if (first < block.first + block.count) return blocks_.push_back(block);
  first = block.first;
  for (int part = 0; part < parts; ++part) {
    blocks_.push_back(MakeBlock(first, ends[part] - first));
    first = ends[part];
  }
}

bool LagStations::IsCompact(int first, int count) const {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const auto [low, high] = std::minmax_element(places_[axis].data() + first, places_[axis].data() + first + count);
    if (!((*high - *low) * perUnit_[axis] <= kMostReach)) return false;
  }
  return true;
}

LagStations::Block LagStations::MakeBlock(int first, int count) {
  Block block;
  block.first = first;
  block.count = count;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double* places = places_[axis].data() + first;
    double low = places[0];
    double high = low;
    for (int i = 1; i < count; ++i) {
      low = std::min(low, places[i]);
      high = std::max(high, places[i]);
    }
    block.centre[axis] = low + (high / 2 - low / 2);  // can't overflow
    float* offsets = offsets_[axis].data() + first;
    for (int i = 0; i < count; ++i) {
      const double offset = (places[i] - block.centre[axis]) * perUnit_[axis];
      offsets[i] = static_cast<float>(offset);
      block.reach[axis] = std::max(block.reach[axis], std::fabs(offset));
    }
  }
  return block;
}

}  // namespace tallyscope
