// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "spatial/LagBinning.h"
#include "spatial/LagGrid.h"
#include "spatial/LagStations.h"
#include "spatial/PairKernel.h"

namespace tallyscope {

// Sums the pairs of a lag grid, block by block of stations.
//   LagGridFiller filler(binning, pair_kernel::GetBestLevel(), 1);
//   LagStations stations(mean, filler.GetPerUnit());   // append, close blocks
//   filler.AddPairs(stations, 0, stations, 1);
//   filler.AddPairsWithin(stations, 0);
//   LagGrid::Cells cells = filler.Finish();
class LagGridFiller {
 public:
  // Where nearly all stations lie in a small part of a cell, `scale` parts of a cell take the place of a cell in the
  // estimate, so that floats tell the stations apart; 1 elsewhere.
  LagGridFiller(const LagBinning& binning, pair_kernel::Level level, double scale);

  Point3 GetPerUnit() const { return perUnit_; }  // for the stations: cells, or parts, for each unit of an axis

  // All pairs of a station of one block, which is the first of the pair, and one of another block.
  void AddPairs(const LagStations& firsts, int firstBlock, const LagStations& seconds, int secondBlock);
  // All pairs of two stations of a block, the earlier one first.
  void AddPairsWithin(const LagStations& stations, int block);
  // The cells and their mirrors, normalised: as many as the binning says.
  LagGrid::Cells Finish();

 private:
  struct Total {
    std::int64_t pairs = 0;
    double covariance = 0;
    double moment = 0;
  };

  bool IsOutOfReach(const Point3& distance, const Point3& reach) const;
  void SetUpEstimate();
  bool SetUpGuards(double largest);
  pair_kernel::Run MakeRun(const LagStations& stations, const LagStations::Block& block);
  void FindFroms(const LagStations& firsts, const LagStations::Block& from, const LagStations::Block& to);
  void AddRun(pair_kernel::Run& run, const LagStations& firsts, int station, int entry, bool canEstimate);
  void AddRunPlainly(const pair_kernel::Run& run);
  void CountPairs(std::int64_t pairs);
  void Flush();

  const LagBinning& binning_;
  double scale_;
  Point3 perUnit_{};
  Point3 limits_{};         // of the distances in range, in cells, and a little more
  bool estimates_ = false;  // whether the grid is one that can be estimated at all
  pair_kernel::Kernel kernel_ = nullptr;
  pair_kernel::Estimate estimate_;
  float froms_[3][LagStations::kBlock] = {};  // of the block at hand
  bool isOut_[LagStations::kBlock] = {};
  std::vector<pair_kernel::Sums> sums_;
  std::vector<std::uint32_t> pairs_;
  std::vector<Total> totals_;
  std::int64_t unflushed_ = 0;
  std::int64_t lookAt_ = 0;
};

}  // namespace tallyscope
