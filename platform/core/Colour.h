// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace tallyscope {

// A colour as 0x00BBGGRR: 0xFF is red, 0xFF0000 is blue.
using COLORREF = std::uint32_t;

constexpr COLORREF RGB(int red, int green, int blue) {
  return static_cast<COLORREF>(red) | static_cast<COLORREF>(green) << 8 | static_cast<COLORREF>(blue) << 16;
}
constexpr int GetRValue(COLORREF colour) {
  return static_cast<int>(colour & 0xff);
}
constexpr int GetGValue(COLORREF colour) {
  return static_cast<int>(colour >> 8 & 0xff);
}
constexpr int GetBValue(COLORREF colour) {
  return static_cast<int>(colour >> 16 & 0xff);
}

}  // namespace tallyscope
