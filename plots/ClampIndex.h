// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

// A place on an axis as a whole number of a range: clamped before it is cut towards zero. NaN gives `low`.
inline int ClampIndex(double value, int low, int high) {
  if (!(value > low)) return low;
  return value >= high ? high : static_cast<int>(value);
}

}  // namespace tallyscope
