// SPDX-License-Identifier: MIT
#pragma once

#include "bands/DSPOperation.h"

namespace tallyscope {

// y = x to the power of `exponent`. A NaN or an infinity that comes of it is stored, not masked.
class CDSPPower : public CDSPOperation {
 public:
  CDSPPower() { dimension = 0; }
  bool ProcessAny(CDSPProgress* progress) override;

  double exponent = 2.0;
};

}  // namespace tallyscope
