// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "spatial/LagBinning.h"
#include "spatial/LagGridFiller.h"
#include "spatial/LagStations.h"
#include "spatial/PairProgress.h"
#include "spatial/StationIndex.h"

namespace tallyscope {

class CStats_Data;

// Walks the pairs of a lag grid. `dims` are the columns of the places, kNoColumn on an inactive axis. Of each `stride`
// stations one is taken.
class LagGridWalk {
 public:
  static constexpr int kNoColumn = -1000;

  struct Source {
    CStats_Data* data;
    int field;
    double mean;
    int dims[3];
  };

  LagGridWalk(const Source& source, const LagBinning& binning, int stride, pair_kernel::Level level);

  // Leaf by leaf: each with itself and with the later ones that its box, widened by `range`, meets. The stride counts
  // the points of the leaves in this order. False when the sink cancels. The index must outlive the call.
  bool WalkLeaves(const StationIndex& index, const Point3& range, PairProgress& progress);
  // Each station with all later ones.
  bool WalkAll(PairProgress& progress);

  LagGrid::Cells Finish() { return filler_.Finish(); }

 private:
  struct Leaf {
    int firstBlock;
    int lastBlock;  // behind the last
    int first;      // station
    int size;       // of the leaf's points, nulls included
  };
  class Sampler;

  static double FindScale(const Source& source, const LagBinning& binning);
  void GatherLeaves(const StationIndex& index);
  std::vector<int> FindLeavesWithin(const PointIndex& points, int leaf, const Point3& range);
  const Leaf& GetLeaf(int leaf) const { return leaves_[static_cast<std::size_t>(leaf)]; }
  bool WalkWholeLeaf(int leaf, const std::vector<int>& near);
  bool WalkSampledLeaf(int leaf, const std::vector<int>& near);
  void GatherAll();
  bool AddBlocks(const LagStations& firsts, int block, const LagStations& seconds, int begin, int end);
  bool WalkWithin(const LagStations& stations, int begin, int end);

  Source source_;
  const LagBinning& binning_;
  int stride_;
  LagGridFiller filler_;
  LagStations stations_;
  LagStations firsts_;  // samples of a leaf, and of those that it meets
  LagStations seconds_;
  std::vector<const PointIndex::Node*> nodes_;
  std::vector<const PointIndex::Node*> found_;
  std::vector<Leaf> leaves_;             // of the nodes
  std::vector<unsigned char> hasValue_;  // with a stride only: nulls count as steps there
  PairProgress* progress_ = nullptr;
};

}  // namespace tallyscope
