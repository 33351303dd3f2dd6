// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "statistics/Stats_Rgn.h"

namespace tallyscope {

// The stations of a list; the box has no part in it. Those that the table doesn't have are passed over.
class CStats_RgnIndexList : public CStats_BoxRgn {
 public:
  std::vector<int> stations;

  int GetType() override { return kIndexList; }
  std::unique_ptr<CStats_Rgn> Clone() const override { return std::make_unique<CStats_RgnIndexList>(*this); }
};

}  // namespace tallyscope
