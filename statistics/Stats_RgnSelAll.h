// SPDX-License-Identifier: MIT
#pragma once

#include "statistics/Stats_Rgn.h"

namespace tallyscope {

// All stations, those with null co-ordinates too.
class CStats_RgnSelAll : public CStats_Rgn {
 public:
  int GetType() override { return kSelAll; }
  std::unique_ptr<CStats_Rgn> Clone() const override { return std::make_unique<CStats_RgnSelAll>(*this); }
};

}  // namespace tallyscope
