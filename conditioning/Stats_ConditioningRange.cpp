// SPDX-License-Identifier: MIT
#include "conditioning/Stats_ConditioningRange.h"

#include "conditioning/Tolerance.h"

namespace tallyscope {

bool CStats_ConditioningRange::operator==(const CStats_ConditioningRange& other) const {
  return this == &other ||
         (IsNear(minimum, other.minimum, kSettingsTolerance) && IsNear(maximum, other.maximum, kSettingsTolerance));
}

void CStats_ConditioningRange::Serialize(CArchive& archive) {
  if (archive.IsStoring()) {
    archive << GetSchemaVersion() << minimum << maximum;
    return;
  }
  std::int32_t version = 0;
  archive >> version >> minimum >> maximum;
}

}  // namespace tallyscope
