// SPDX-License-Identifier: MIT
#include "statistics/Stats_vdData.h"

namespace tallyscope {

int CStats_vdData::GetSize() {
  return static_cast<int>(values_->size());
}

double CStats_vdData::GetValue(int, int station) {
  return (*values_)[static_cast<std::size_t>(station)];
}

}  // namespace tallyscope
