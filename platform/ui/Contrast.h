// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

#include "platform/core/Colour.h"

namespace tallyscope {

// Contrast of two colours, 1 to 21, by their relative luminances (WCAG 2.1).
double Contrast(const QColor& one, const QColor& other);

// `wanted` if it has a contrast of 4.5 to the background, otherwise black or white, whichever has more.
QColor ReadableOn(const QColor& background, const QColor& wanted);

QColor Mixed(const QColor& from, const QColor& to, double part);  // 0 from, 1 to

inline QColor ToQColor(COLORREF colour) {
  return QColor(GetRValue(colour), GetGValue(colour), GetBValue(colour));
}
inline COLORREF FromQColor(const QColor& colour) {
  return RGB(colour.red(), colour.green(), colour.blue());
}

}  // namespace tallyscope
