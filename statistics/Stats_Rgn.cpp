// SPDX-License-Identifier: MIT
#include "statistics/Stats_Rgn.h"

namespace tallyscope {

const Point3& CStats_Rgn::GetPoint(int) {
  static const Point3 kNowhere{};
  return kNowhere;
}

void CStats_Rgn::SetDims(int dim1, int dim2, int dim3, int count) {
  dims_[0] = dim1;
  dims_[1] = dim2;
  dims_[2] = dim3;
  dimCount_ = count;
}

}  // namespace tallyscope
