// SPDX-License-Identifier: MIT
#pragma once

#include "bands/DSPOperation.h"

namespace tallyscope {

// y = scale * x + offset, and back: x = (y - offset) / scale. Worked out in double and stored in the band's type; what
// comes out infinite or NaN, as from the way back with a scale of 0, is stored and not masked.
// Each run that isn't cancelled turns the direction round, so that running the same object twice restores the band, up
// to rounding.
class CDSPTransform : public CDSPOperation {
 public:
  CDSPTransform() { dimension = 0; }
  bool ProcessAny(CDSPProgress* progress) override;

  int inverse = 0;  // other than 0: the way back
  double scale = 1.0;
  double offset = 0.0;
};

}  // namespace tallyscope
