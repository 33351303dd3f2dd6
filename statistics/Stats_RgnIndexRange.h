// SPDX-License-Identifier: MIT
#pragma once

#include "statistics/Stats_Rgn.h"

namespace tallyscope {

// The stations from x of the first corner to x of the second, cut towards zero and clamped to the table, so that a
// range behind its end holds the last station. None when the first is above the second.
class CStats_RgnIndexRange : public CStats_BoxRgn {
 public:
  int GetType() override { return kIndexRange; }
  std::unique_ptr<CStats_Rgn> Clone() const override { return std::make_unique<CStats_RgnIndexRange>(*this); }
};

}  // namespace tallyscope
