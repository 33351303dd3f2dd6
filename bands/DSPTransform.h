// SPDX-License-Identifier: MIT
#pragma once

#include "bands/DSPOperation.h"

namespace tallyscope {

// y = scale * x + offset, and back. Each run turns the direction round; a scale of 0 can't be undone.
class CDSPTransform : public CDSPOperation {
 public:
  CDSPTransform() { dimension = 0; }
  bool ProcessAny(CDSPProgress* progress) override;

  int inverse = 0;
  double scale = 1.0;
  double offset = 0.0;
};

}  // namespace tallyscope
