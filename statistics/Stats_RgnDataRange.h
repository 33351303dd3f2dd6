// SPDX-License-Identifier: MIT
#pragma once

#include "statistics/Stats_Rgn.h"

namespace tallyscope {

// The stations whose value of a field lies from x of the first corner to x of the second, both included.
class CStats_RgnDataRange : public CStats_BoxRgn {
 public:
  int field = 0;  // dim

  int GetType() override { return kDataRange; }
  std::unique_ptr<CStats_Rgn> Clone() const override { return std::make_unique<CStats_RgnDataRange>(*this); }
};

}  // namespace tallyscope
