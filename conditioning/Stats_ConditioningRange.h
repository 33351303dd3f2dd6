// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/Archive.h"

namespace tallyscope {

// A closed interval of numbers, in the field's units: both ends belong to it, without a tolerance. Bounds the wrong way
// round hold nothing, and so does one that is NaN. Kept by value, so nothing derives from it.
class CStats_ConditioningRange final {
 public:
  CStats_ConditioningRange() = default;
  CStats_ConditioningRange(double minimumBound, double maximumBound) : minimum(minimumBound), maximum(maximumBound) {}

  double minimum = 0.0;
  double maximum = 1.0;

  static constexpr int GetSchemaVersion() { return 0; }

  bool Holds(double value) const { return value >= minimum && maximum >= value; }
  bool operator==(const CStats_ConditioningRange& other) const;  // both bounds within 1e-10

  // The version, which a reader skips, and the bounds.
  virtual void Serialize(CArchive& archive);
};

}  // namespace tallyscope
