// SPDX-License-Identifier: MIT
#pragma once

#include "bands/DSPOperation.h"

namespace tallyscope {

// A logarithm to base 10 with a sign and a linear zone about 0, so that negative samples and 0 have a value. It is
// continuous at the zone's edge, `cutoff` times a tenth of `scale`. Each run that isn't cancelled turns the direction
// round, so that running the same object twice restores the band, up to rounding.
// REQUIRES: a scale and a cutoff above 0.
class CDSPLog : public CDSPOperation {
 public:
  CDSPLog() { dimension = 0; }
  bool ProcessAny(CDSPProgress* progress) override;

  int inverse = 0;       // other than 0: the way back
  double scale = 1.0;    // the value whose logarithm is 1
  double cutoff = 10.0;  // half-width of the linear zone, in tenths of the scale
};

}  // namespace tallyscope
