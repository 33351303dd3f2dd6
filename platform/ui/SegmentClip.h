// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ui/DC.h"

namespace tallyscope {

// Cuts a segment to a rectangle (Liang and Barsky 1984). False, and the ends are as they were, when nothing of it lies
// in the rectangle, or an end is no number. Painters work long on lines that run far beyond what is seen.
bool ClipSegment(DrawPoint& from, DrawPoint& to, const DrawRect& rect);

// The same rectangle with so much more on each side.
inline DrawRect Grown(const DrawRect& rect, double by) {
  return {rect.left - by, rect.top - by, rect.right + by, rect.bottom + by};
}

inline bool Contains(const DrawRect& rect, const DrawPoint& point) {
  return point.x >= rect.left && point.x <= rect.right && point.y >= rect.top && point.y <= rect.bottom;
}

}  // namespace tallyscope
