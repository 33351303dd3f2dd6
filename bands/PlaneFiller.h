// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "statistics/bvector.h"

namespace tallyscope {

struct PlaneFillSettings {
  bool pinEnds = true;  // nulls on the plane's edges are anchors
  double endValue = 0;  // of the anchors, in units of the amplitude about the trend
  bool removeTrend = true;
  bool normalise = true;
  bool enlarge = false;         // work on a larger grid where its sizes make fewer sweeps
  int iterations = 100;         // sweeps a level at most
  double convergence = 0.0002;  // a level ends when no value moves by more, in root mean squares about the trend
};

// Fills the nulls of one plane of samples by a surface of continuous curvature through the others: that of the least
// sum of squared second differences, free at the edges (I. C. Briggs, Geophysics 39, 1974). It is relaxed on ever finer
// grids of square cells, whose sides come from the prime factors of what the two sizes have in common; each starts from
// the one before.
class PlaneFiller {
 public:
  explicit PlaneFiller(const PlaneFillSettings& settings) : settings_(settings) {}

  // In place; x runs fastest, `nulls` has a bit for each of the columns * rows samples. Without a valid sample the
  // nulls take 0, or the surface of the anchors.
  void Fill(std::span<double> samples, const bvector& nulls, int columns, int rows);

 private:
  PlaneFillSettings settings_;
};

// Grid sizes of at least the given ones and 4, products of 2, 3 and 5, that take the least work.
struct PlaneGridSize {
  int columns;
  int rows;
};
PlaneGridSize FindPlaneGridSize(int columns, int rows);

}  // namespace tallyscope
