// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

#include "platform/core/Colour.h"

namespace tallyscope {

inline constexpr COLORREF kNormalBackground = 0xffffff;  // drawn in the palette's own base colour

// The contrast of two colours by their relative luminance, 1 to 21 (Web Content Accessibility Guidelines 2.1, 1.4.3).
double Contrast(const QColor& one, const QColor& other);

// `wanted` where it can be read on `background` (a contrast of 4.5), else black or white.
QColor ReadableOn(const QColor& background, const QColor& wanted);

// Of the way from one colour to another.
QColor Mixed(const QColor& from, const QColor& to, double part);

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
