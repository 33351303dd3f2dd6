// SPDX-License-Identifier: MIT
#include "spatial/Stats_VariogramData.h"

namespace tallyscope {

CString CStats_VariogramData::GetValueName(int field) {
  switch (field) {
    case -1:
      return "Lag";
    case 0:
      return "Moment of Inertia";
    case 1:
      return "Covariance";
    case 2:
      return "Pair Count";
    default:
      return {};
  }
}

double CStats_VariogramData::GetValue(int field, int station) {
  const auto entry = static_cast<std::size_t>(station);
  switch (field) {
    case -1:
      return lag[entry];
    case 0:
      return momentOfInertia[entry];
    case 1:
      return covariance[entry];
    case 2:
      return pairCount[entry];
    default:
      return 0.0;
  }
}

}  // namespace tallyscope
