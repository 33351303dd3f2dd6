// SPDX-License-Identifier: MIT
#include "outside/colour/Hsl.h"

#include <algorithm>
#include <cmath>

namespace tallyscope {

Hsl ToHsl(const Rgb& rgb) {
  const auto [low, high] = std::minmax({rgb.red, rgb.green, rgb.blue});
  const double chroma = high - low;
  Hsl hsl;
  hsl.lightness = (high + low) / 2;
  if (chroma <= 0) return hsl;
  hsl.saturation = chroma / (1 - std::abs(2 * hsl.lightness - 1));
  double sextant = 0;
  if (high == rgb.red) {
    sextant = (rgb.green - rgb.blue) / chroma;
  } else if (high == rgb.green) {
    sextant = (rgb.blue - rgb.red) / chroma + 2;
  } else {
    sextant = (rgb.red - rgb.green) / chroma + 4;
  }
  hsl.hue = (sextant < 0 ? sextant + 6 : sextant) / 6;
  return hsl;
}

// Foley and van Dam, Computer Graphics: Principles and Practice, 2nd edition, 13.3.5.
Rgb ToRgb(const Hsl& hsl) {
  const double chroma = (1 - std::abs(2 * hsl.lightness - 1)) * hsl.saturation;
  const auto channel = [&](double offset) {
    const double k = std::fmod(offset + hsl.hue * 12, 12.0);
    return hsl.lightness - chroma / 2 * std::clamp(std::min(k - 3, 9 - k), -1.0, 1.0);
  };
  return {channel(0), channel(8), channel(4)};
}

COLORREF ToColorRef(const Rgb& rgb) {
  const auto step = [](double part) { return static_cast<int>(std::lround(std::clamp(part, 0.0, 1.0) * 255)); };
  return RGB(step(rgb.red), step(rgb.green), step(rgb.blue));
}

Rgb ToRgb(COLORREF colour) {
  return {GetRValue(colour) / 255.0, GetGValue(colour) / 255.0, GetBValue(colour) / 255.0};
}

}  // namespace tallyscope
