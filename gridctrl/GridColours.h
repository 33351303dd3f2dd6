// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

#include "platform/core/Colour.h"
#include "platform/ui/Contrast.h"

namespace tallyscope {

inline constexpr COLORREF kNormalBackground = 0xffffff;  // drawn in the palette's own base colour

// What a grid is painted in, taken from a palette, light or dark.
struct GridColours {
  GridColours(const QPalette& palette, QPalette::ColorGroup group);

  QColor Background(COLORREF wanted) const;

  QColor base;
  QColor text;
  QColor heading;
  QColor headingText;
  QColor currentHeading;  // row number and heading of the current cell
  QColor line;
  QColor headingLine;
  QColor frame;  // of the current cell, with the focus
};

}  // namespace tallyscope
