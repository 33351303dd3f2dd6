// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "platform/core/Box.h"

namespace tallyscope {

// The stations of a walk over pairs, laid out for it: their places and values in contiguous arrays, in the order in
// which they are walked, cut into blocks of neighbours. Places come twice: in double as they are, and in float in units
// of the grid's cells from the middle of their block. The floats are small, so little is lost in them, wherever the
// co-ordinates have their origin. Co-ordinates are finite.
class LagStations {
 public:
  static constexpr int kBlock = 96;  // most stations of a block
  static constexpr int kSpare = 16;  // entries that may be read behind the last float

  // A value less the mean of the field, and the value.
  struct Value {
    double centred;
    double raw;
  };
  struct Block {
    int first = 0;
    int count = 0;
    Point3 centre{};  // as the co-ordinates are
    Point3 reach{};   // from the centre to the farthest station on each axis, in cells, never less than it is
  };

  // `perUnit`: cells for each unit of an axis.
  LagStations(double mean, const Point3& perUnit) : mean_(mean), perUnit_(perUnit) {}

  void Clear();
  void Reserve(std::size_t count);
  void Append(const Point3& place, double value);
  void Append(const LagStations& from, int station);
  void SortAlongX();  // before there are blocks
  // Makes blocks of the stations that were appended since the last call; returns the number of blocks so far. A station
  // so far from its neighbours that floats would lose them gets a block of its own.
  int CloseBlocks();

  int GetSize() const { return static_cast<int>(values_.size()); }
  int GetBlockCount() const { return static_cast<int>(blocks_.size()); }
  const Block& GetBlock(int block) const { return blocks_[static_cast<std::size_t>(block)]; }
  const double* GetPlaces(int axis) const { return places_[static_cast<std::size_t>(axis)].data(); }
  const float* GetOffsets(int axis) const { return offsets_[static_cast<std::size_t>(axis)].data(); }
  const Value* GetValues() const { return values_.data(); }
  const Point3& GetPerUnit() const { return perUnit_; }

 private:
  Block MakeBlock(int first, int count);
  void CutBlock(const Block& block);
  bool IsCompact(int first, int count) const;

  double mean_;
  Point3 perUnit_;
  std::array<std::vector<double>, 3> places_;
  std::array<std::vector<float>, 3> offsets_;
  std::vector<Value> values_;
  std::vector<Block> blocks_;
  int closed_ = 0;
};

}  // namespace tallyscope
