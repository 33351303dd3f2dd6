// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

namespace tallyscope {

// Co-ordinates of points, an array for each active axis, in the order in which the leaves of a search hold the points:
// a leaf's co-ordinates are one run of each array.
class CoordinateStore {
 public:
  void Reset(int axes, int capacity);
  void Clear() { Reset(0, 0); }

  int GetAxes() const { return axes_; }
  int GetSize() const { return axes_ > 0 ? static_cast<int>(values_[0].size()) : 0; }
  const double* GetRun(int axis, int first) const { return values_[static_cast<std::size_t>(axis)].data() + first; }

  // Appends those of `count` points whose `valid` entry isn't 0, or all of them if it is null. `block` has an array for
  // each active axis.
  void Append(const double* const* block, const unsigned char* valid, int count);
  void ReleaseSpare();

  // Two cursors run towards each other over `indices[first .. first + count - 1]` and the co-ordinates, the lower past
  // values below the cut, the upper past the others, and swap what they stop at. Returns how many are below.
  int PartitionByCut(int axis, double cut, int first, int count, int* indices);

  // Deals the points of a run out in order: those below the cut stand first afterwards. Returns how many those are.
  int DealByCut(int axis, double cut, int first, std::vector<int>& points);

 private:
  int axes_ = 0;
  std::array<std::vector<double>, 3> values_;
};

}  // namespace tallyscope
