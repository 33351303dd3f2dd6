// SPDX-License-Identifier: MIT
#pragma once

#include "bands/DSPOperation.h"

namespace tallyscope {

// Replaces each sample by the share of its band's samples up to it, 0 to 1, as the band's histogram gives it. Nulls
// have no part in the histogram and stay null. A sample that is NaN becomes 0.
class CDSPHistogram : public CDSPOperation {
 public:
  CDSPHistogram() { dimension = 0; }

  bool sorted = false;  // 256 bins of equal count, where the band can be sorted; otherwise 4096 of equal width

  bool ProcessAny(CDSPProgress* progress) override;
};

}  // namespace tallyscope
