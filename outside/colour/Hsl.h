// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/Colour.h"

namespace tallyscope {

// Colours as red, green and blue or as hue (a turn is 1), saturation and lightness; all from 0 to 1.
struct Rgb {
  double red = 0;
  double green = 0;
  double blue = 0;
};
struct Hsl {
  double hue = 0;
  double saturation = 0;
  double lightness = 0;
};

Hsl ToHsl(const Rgb& rgb);  // a grey has hue 0
Rgb ToRgb(const Hsl& hsl);
COLORREF ToColorRef(const Rgb& rgb);  // rounded to 256 steps
Rgb ToRgb(COLORREF colour);

}  // namespace tallyscope
