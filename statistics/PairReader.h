// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "statistics/bvector.h"

namespace tallyscope {

class CStats_Data;

// Reads the pairs of two columns, that is the stations where both have a value, in blocks and in the order of the
// stations. The values of a block stand without gaps:
//   CPairReader pairs({&table, 0}, {&table, 3}, table.GetSize());
//   while (pairs.Next())
//     for (std::size_t i = 0; i < pairs.X().size(); ++i) sum += pairs.X()[i] * pairs.Y()[i];
class CPairReader {
 public:
  struct Column {
    CStats_Data* data;
    int dim;
  };

  CPairReader(const Column& x, const Column& y, int total) : x_(x), y_(y), total_(total) {}

  bool Next();  // false when no station is left
  std::span<const double> X() const { return {xs_.data(), pairs_}; }
  std::span<const double> Y() const { return {ys_.data(), pairs_}; }

  // The block's stations, nulls included.
  int First() const { return first_; }
  int Count() const { return count_; }
  bool IsWhole() const { return pairs_ == static_cast<std::size_t>(count_); }  // every station is a pair
  bool IsPair(int station) const { return both_[static_cast<std::size_t>(station - first_)] != 0; }

 private:
  void SqueezeNulls();

  static constexpr int kBlock = 512;  // four kilobytes a column: all buffers stay in the first-level cache

  Column x_;
  Column y_;
  int total_;
  int first_ = 0;
  int count_ = 0;
  std::size_t pairs_ = 0;
  std::array<double, kBlock> xs_{};
  std::array<double, kBlock> ys_{};
  std::array<unsigned char, kBlock> both_{};
  std::array<unsigned char, kBlock> yValid_{};
};

// A bit for each station below `total`: it is a pair.
bvector MarkPairs(const CPairReader::Column& x, const CPairReader::Column& y, int total);

}  // namespace tallyscope
