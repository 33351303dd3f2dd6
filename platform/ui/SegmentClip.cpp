// SPDX-License-Identifier: MIT
#include "platform/ui/SegmentClip.h"

#include <algorithm>
#include <cmath>

namespace tallyscope {

bool ClipSegment(DrawPoint& from, DrawPoint& to, const DrawRect& rect) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  if (!std::isfinite(dx) || !std::isfinite(dy)) return false;
  double enter = 0;
  double leave = 1;
  // `way`: how far the segment runs towards the outside of one side; `room`: how far inside of it its start lies.
  const auto cut = [&](double way, double room) {
    if (way == 0) return room >= 0;
    const double at = room / way;
    if (way < 0) {
      enter = std::max(enter, at);
    } else {
      leave = std::min(leave, at);
    }
    return enter <= leave;
  };
  if (!cut(-dx, from.x - rect.left) || !cut(dx, rect.right - from.x) || !cut(-dy, from.y - rect.top) ||
      !cut(dy, rect.bottom - from.y)) {
    return false;
  }
  const DrawPoint start = from;
  if (enter > 0) from = {start.x + enter * dx, start.y + enter * dy};
  if (leave < 1) to = {start.x + leave * dx, start.y + leave * dy};
  return true;
}

}  // namespace tallyscope
