// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>

namespace tallyscope {

inline constexpr double kRuleTolerance = 1e-6;       // a value against the values of a rule
inline constexpr double kSettingsTolerance = 1e-10;  // a setting against another

// Relative, and equal at the bound itself: 0 is near 0 alone, NaN near nothing, and an infinity near every finite
// number.
inline bool IsNear(double a, double b, double tolerance) {
  return std::max(std::fabs(a), std::fabs(b)) * tolerance >= std::fabs(a - b);
}

}  // namespace tallyscope
