// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

// Ranges whose ends may lie so far apart that the whole way between them is infinite: half of it never is. For numbers
// above 1e-307 halves change no bit of what comes out.

inline double HalfSpan(double low, double high) {
  return high / 2 - low / 2;
}

// Where `value` lies on the way from `low`, 0, to `high`, 1, which are apart.
inline double FindPart(double low, double high, double value) {
  return HalfSpan(low, value) / HalfSpan(low, high);
}

// And back; infinite where the place has no number.
inline double FindPlace(double low, double high, double part) {
  return (low / 2 + part * HalfSpan(low, high)) * 2;
}

}  // namespace tallyscope
