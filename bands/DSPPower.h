// SPDX-License-Identifier: MIT
#pragma once

#include "bands/DSPOperation.h"

namespace tallyscope {

// y = x to the power of `exponent`, in double, stored in the band's type. A NaN or an infinity that comes of it, as of
// a root of -1 or an inverse of 0, is stored and not masked.
class CDSPPower : public CDSPOperation {
 public:
  CDSPPower() { dimension = 0; }
  bool ProcessAny(CDSPProgress* progress) override;

  double exponent = 2.0;
};

}  // namespace tallyscope
