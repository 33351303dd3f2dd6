// SPDX-License-Identifier: MIT
#pragma once

#include "statistics/Stats_Rgn.h"

namespace tallyscope {

// The stations between two opposite corners in the region's dims, in any order; the faces belong to it.
class CStats_RgnRect : public CStats_BoxRgn {
 public:
  int GetType() override { return kRect; }
  std::unique_ptr<CStats_Rgn> Clone() const override { return std::make_unique<CStats_RgnRect>(*this); }
};

}  // namespace tallyscope
