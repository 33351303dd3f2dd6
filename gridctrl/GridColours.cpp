// SPDX-License-Identifier: MIT
#include "gridctrl/GridColours.h"

namespace tallyscope {

GridColours::GridColours(const QPalette& palette, QPalette::ColorGroup group)
    : base(palette.color(group, QPalette::Base)),
      text(palette.color(group, QPalette::Text)),
      heading(palette.color(group, QPalette::Button)),
      headingText(palette.color(group, QPalette::ButtonText)),
      frame(palette.color(group, QPalette::Highlight)) {
  currentHeading = Mixed(heading, frame, 0.22);
  line = Mixed(base, text, 0.16);
  headingLine = Mixed(heading, headingText, 0.25);
}

QColor GridColours::Background(COLORREF wanted) const {
  return wanted == kNormalBackground ? base : ToQColor(wanted);
}

}  // namespace tallyscope
