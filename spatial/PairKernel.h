// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "spatial/LagBinning.h"
#include "spatial/LagStations.h"

// The innermost loop of a lag grid: one station against a block of others. Where a pair belongs is estimated in float,
// many pairs at a time; a pair that the estimate can't be sure of, because it lies next to a border of its cell, is
// decided by the plain formula. So counts are the same on every processor and however many pairs it does at a time.
namespace tallyscope::pair_kernel {

enum class Level : int { kPlain, kAvx2, kAvx512 };
enum class Shape : int { kPlane, kSolid, kBoxes };  // polar in two and three dimensions, Cartesian

Level GetBestLevel();  // of this processor

// Numbers of an estimate, for one grid; the guards for one block at a time. A guard is half a bin less the most that
// the estimate can be wrong: a place in its bin further than that from the bin's middle is too near a border.
struct Estimate {
  // Polar: lags, then azimuths, then dips, in bins.
  float lags = 0;
  float lagGuard = 0;
  float nearSquare = 0;        // squared horizontal distance in lags, below which the direction isn't sure
  float azimuthTerms[5] = {};  // of the arctangent of 0 to 1, odd powers
  float azimuthQuarter = 0;    // bins of 90 degrees
  float azimuthHalf = 0;
  float azimuthTurn = 0;  // added for a direction with dy < 0; 0 where such a pair enters its mirror cell first
  float azimuthGuard = 0;
  float dipTerms[5] = {};
  float dipHalf = 0;  // bins of 90 degrees
  float dipGuard = 0;
  std::uint32_t flip = 0;  // the sign bit if dz changes sign along with a direction that is turned round

  // Cartesian.
  float before[3] = {};  // added, so that the first cell is 1
  float last[3] = {};    // number of the last cell
  float guard[3] = {};

  float columns = 0;
  float plane = 0;  // columns x rows
};

// Sums of a cell.
struct alignas(16) Sums {
  double covariance;
  double moment;
};

struct Run {
  const Estimate* estimate;
  const LagBinning* binning;
  // The block's stations.
  const float* offsets[3];
  const double* places[3];
  const LagStations::Value* values;
  int count;
  // The station: from the middle of the block in cells, and as it is.
  float from[3];
  double place[3];
  LagStations::Value value;
  // By cell.
  Sums* sums;
  std::uint32_t* pairs;
};

using Kernel = void (*)(const Run&);
Kernel GetKernel(Shape shape, Level level);  // a level that the build or the processor lacks gives the next one below

}  // namespace tallyscope::pair_kernel
