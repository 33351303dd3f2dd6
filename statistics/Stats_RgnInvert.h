// SPDX-License-Identifier: MIT
#pragma once

#include "statistics/Stats_Rgn.h"

namespace tallyscope {

// Flips the selection, whatever its include flag.
class CStats_RgnInvert : public CStats_Rgn {
 public:
  int GetType() override { return kInvert; }
  std::unique_ptr<CStats_Rgn> Clone() const override { return std::make_unique<CStats_RgnInvert>(*this); }
};

}  // namespace tallyscope
