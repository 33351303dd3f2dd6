// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "statistics/Dim.h"
#include "statistics/StationProgress.h"
#include "statistics/bvector.h"

namespace tallyscope {

// Reads columns of tables in blocks, in the order of the stations.
//   CBlockReader pair({{&table, 0}, {&table, 3}}, table.GetSize());
//   while (pair.Next()) {
//     pair.KeepJoint();   // drops stations that lack a value in any column
//     for (std::size_t i = 0; i < pair.Values(0).size(); ++i) sum += pair.Values(0)[i] * pair.Values(1)[i];
//   }
// Blocks are short, so that all buffers stay in the first-level cache. When a read throws, the reader is of no use any
// more.
class CBlockReader {
 public:
  static constexpr int kBlock = 512;  // stations at most

  CBlockReader(const std::vector<CColumnRef>& columns, int total);  // `total` stations; each column has them

  bool Next(int limit = kBlock);  // the next block, of `limit` stations at most; false when no station is left

  // The block's stations: from First, Count of them.
  int First() const { return first_; }
  int Count() const { return count_; }
  bool IsWhole() const { return whole_; }  // no station lacks a value

  // A value for each station of the block, unset for a null; after KeepJoint for the stations that are kept.
  std::span<const double> Values(std::size_t column) const { return {columns_[column].values.data(), kept_}; }
  bool IsValid(std::size_t column, int station) const { return columns_[column].valid[At(station)] != 0; }
  bool IsJoint(int station) const;  // every column has a value

  // Moves the values of the stations where every column has one together.
  void KeepJoint();

  // Takes block after block, keeps what is joint and calls visit(), so that the progress is told of each percent after
  // the station that reaches it. False when the sink cancels; the block that reported has been visited by then.
  template <class Visit>
  bool VisitJoint(StationProgress& progress, Visit visit) {
    for (int next = first_ + count_; next < total_; next = first_ + count_) {
      Next(progress.Cut(next, std::min(kBlock, total_ - next)));
      KeepJoint();
      visit();
      if (!progress.Report(first_ + count_ - 1)) return false;
    }
    return true;
  }

 private:
  struct Column {
    CColumnRef source{};
    std::array<double, kBlock> values{};  // a null's place is copied, too
    std::array<unsigned char, kBlock> valid{};
  };
  std::size_t At(int station) const { return static_cast<std::size_t>(station - first_); }

  std::vector<Column> columns_;
  int total_;
  int first_ = 0;
  int count_ = 0;
  std::size_t kept_ = 0;
  bool whole_ = true;
};

// A bit for each station below `total`: all columns have a value there.
bvector MarkJoint(const std::vector<CColumnRef>& columns, int total);

}  // namespace tallyscope
