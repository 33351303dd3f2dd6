// SPDX-License-Identifier: MIT
#include "spatial/CoordinateStore.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace tallyscope {

namespace {

constexpr int kBlock = 256;  // positions looked at in one go

// Positions of values on the wrong side of the cut, found a block at a time without a branch per value. `kStep` 1 looks
// upwards for values that aren't below the cut, -1 downwards for values that are.
template <int kStep>
class WrongSide {
 public:
  WrongSide(const double* keys, double cut, int from, int count) : keys_(keys), cut_(cut), next_(from), left_(count) {}

  // Makes positions ready, unless none is left. Returns how many are ready.
  int Fill() {
    while (begin_ == end_ && left_ > 0) {
      begin_ = end_ = 0;
      const int count = std::min(kBlock, left_);
      for (int i = 0; i < count; ++i, next_ += kStep) {
        positions_[end_] = next_;
        end_ += static_cast<int>((keys_[next_] < cut_) == (kStep < 0));
      }
      left_ -= count;
    }
    return end_ - begin_;
  }
  const int* Take(int count) { return positions_ + std::exchange(begin_, begin_ + count); }

 private:
  const double* keys_;
  double cut_;
  int next_;
  int left_;
  int begin_ = 0;
  int end_ = 0;
  int positions_[kBlock + 1];
};

template <class Value>
void SwapPairs(Value* values, const int* low, const int* high, int count) {
  for (int i = 0; i < count; ++i) std::swap(values[low[i]], values[high[i]]);
}

template <class Value>
int Deal(Value* values, const std::vector<bool>& isBelow) {
  std::vector<Value> rest;
  Value* below = values;
  for (std::size_t i = 0; i < isBelow.size(); ++i) {
    if (isBelow[i]) {
      *below++ = values[i];
    } else {
      rest.push_back(values[i]);
    }
  }
  std::copy(rest.begin(), rest.end(), below);
  return static_cast<int>(below - values);
}

int CountBelow(const double* keys, int count, double cut) {
  std::int64_t below = 0;
  for (int i = 0; i < count; ++i) below += static_cast<std::int64_t>(keys[i] < cut);
  return static_cast<int>(below);
}

}  // namespace

void CoordinateStore::Reset(int axes, int capacity) {
  axes_ = axes;
  for (auto& values : values_) values = {};
  for (int axis = 0; axis < axes; ++axis) {
    values_[static_cast<std::size_t>(axis)].reserve(static_cast<std::size_t>(capacity));
  }
}

void CoordinateStore::Append(const double* const* block, const unsigned char* valid, int count) {
  for (int axis = 0; axis < axes_; ++axis) {
    auto& values = values_[static_cast<std::size_t>(axis)];
    const double* from = block[axis];
    if (valid == nullptr) {
      values.insert(values.end(), from, from + count);
      continue;
    }
    for (int i = 0; i < count; ++i) {
      if (valid[i] != 0) values.push_back(from[i]);
    }
  }
}

void CoordinateStore::ReleaseSpare() {
  for (auto& values : values_) values.shrink_to_fit();
}

// Known first is how many values are below the cut; so the two sides are known, and the k-th value that stands wrongly
// in the lower side, counted upwards, changes places with the k-th that stands wrongly in the upper, counted downwards.
// That is the order of the two cursors.
int CoordinateStore::PartitionByCut(int axis, double cut, int first, int count, int* indices) {
  const double* keys = values_[static_cast<std::size_t>(axis)].data();
  const int below = CountBelow(keys + first, count, cut);
  WrongSide<1> low(keys, cut, first, below);
  WrongSide<-1> high(keys, cut, first + count - 1, count - below);
  while (const int pairs = std::min(low.Fill(), high.Fill())) {
    const int* lowPositions = low.Take(pairs);
    const int* highPositions = high.Take(pairs);
    for (int i = 0; i < axes_; ++i) {
      SwapPairs(values_[static_cast<std::size_t>(i)].data(), lowPositions, highPositions, pairs);
    }
    SwapPairs(indices, lowPositions, highPositions, pairs);
  }
  return below;
}

int CoordinateStore::DealByCut(int axis, double cut, int first, std::vector<int>& points) {
  const double* keys = values_[static_cast<std::size_t>(axis)].data() + first;
  std::vector<bool> isBelow(points.size());
  for (std::size_t i = 0; i < points.size(); ++i) isBelow[i] = keys[i] < cut;
  for (int i = 0; i < axes_; ++i) Deal(values_[static_cast<std::size_t>(i)].data() + first, isBelow);
  return Deal(points.data(), isBelow);
}

}  // namespace tallyscope
