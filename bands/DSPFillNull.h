// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "bands/DSPOperation.h"
#include "bands/LineFiller.h"
#include "bands/PlaneFiller.h"

namespace tallyscope {

struct DSPOverlap;
struct DSPBandPair;

// Replaces every null by an estimate: dimension 0 by a constant, 1 along lines (LineFiller), 2 by a surface over planes
// (PlaneFiller), 3 by surfaces over a cube's x-y planes. No output sample is null afterwards. It works on whole data
// sets, whatever the regions say.
//
// Running the same object again undoes the fill: `restore` flips at the end of each run. The nulls are those of the
// first run, and of the input as well.
class CDSPFillNull : public CDSPOperation {
 public:
  CDSPFillNull() { dimension = 2; }

  int restore = 0;          // other than 0: bring the nulls back
  bool pinEnds = true;      // nulls at the ends of a line, on the edges of a plane, are anchors at the end value
  double endValue = 0.0;    // in units of the amplitude about the trend; what a line of one or two samples starts from
  bool removeTrend = true;  // dimension 1: the regression of the whole band on the sample index; 2: a plane
  bool normalise = true;    // by the root mean square about the trend
  bool rememberNulls = true;  // a fill keeps the bands' masks; without them the way back does nothing
  bool predict = true;        // dimension 1: gaps by prediction; false: by a smooth curve
  float constant = 0;         // dimension 0

  // Dimension 2.
  bool enlarge = false;  // work on a larger grid if that takes fewer sweeps
  int iterations = 100;
  double convergence = 0.0002;

  void OnInputBound(CDSPOperationData& input) override { input.CoverAll(); }
  bool ProcessAny(CDSPProgress* progress) override;
  bool Process1D(CDSPProgress* progress) override;
  bool Process2D(CDSPProgress* progress) override;
  bool Process3D(CDSPProgress* progress) override;

 private:
  bool FillOrRestore(CDSPProgress* progress, bool (CDSPFillNull::*fill)(CDSPProgress*));
  void RememberNulls();
  bool BringNullsBack(CDSPProgress* progress);
  bool FillConstant(CDSPProgress* progress);
  bool FillLines(CDSPProgress* progress);
  bool FillPlanes(CDSPProgress* progress);
  bool FillCube(CDSPProgress* progress);
  LineTrend FitTrend(const DSPOverlap& overlap, const DSPBandPair& pair) const;

  std::vector<std::vector<bvector>> nulls_;  // by input and band; empty for a band without a mask
};

}  // namespace tallyscope
