// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>

#include "platform/core/Box.h"
#include "spatial/Stats_PointSearch.h"

namespace tallyscope {

// Walks the stations of a box in the plane in the order in which the search yields them, a block at a time, with their
// co-ordinates as the search keeps them. The search is built, on two fields; no other query may run meanwhile:
//   StationWalk walk(search, box);
//   while (walk.Next())
//     for (int i = 0; i < walk.GetCount(); ++i) Visit(walk.Stations()[i], walk.X()[i], walk.Y()[i]);
class StationWalk {
 public:
  StationWalk(CStats_PointSearch& search, const Box& box);

  // Stations of the leaves that meet the box: at least as many as the walk will yield.
  long long CountCandidates() const;

  bool Next();  // false at the end
  int GetCount() const { return count_; }
  const int* Stations() const { return stations_; }
  const double* X() const { return x_; }
  const double* Y() const { return y_; }

  static constexpr int kBlock = 512;  // most stations of a block

 private:
  using Node = CPointSearch::Node;

  void Take(const Node& leaf, int count);
  void CopyHits();

  CStats_PointSearch& search_;
  Box box_;
  std::size_t leaf_ = 0;
  int place_ = 0;  // in the leaf
  int count_ = 0;
  // Of the block: in the leaf where all its stations are inside, else copies of those that are.
  const int* stations_ = nullptr;
  const double* x_ = nullptr;
  const double* y_ = nullptr;
  std::array<int, kBlock> hits_;  // positions in the part of the leaf
  std::array<int, kBlock> stationCopies_;
  std::array<double, kBlock> xCopies_;
  std::array<double, kBlock> yCopies_;
};

}  // namespace tallyscope
