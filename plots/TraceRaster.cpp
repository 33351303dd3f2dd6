// SPDX-License-Identifier: MIT
#include "plots/TraceRaster.h"

#include <algorithm>
#include <cmath>

namespace tallyscope {

TraceRaster::TraceRaster(CDC& dc, const DrawRect& frame)
    : dc_(dc),
      scale_(dc.GetScale()),
      limits_{std::floor(frame.left * scale_) - 1, std::floor(frame.top * scale_) - 1,
              std::ceil(frame.right * scale_) + 1, std::ceil(frame.bottom * scale_) + 1} {}

void TraceRaster::MoveTo(COLORREF colour, DrawPoint point) {
  colour_ = colour;
  place_ = {std::round(point.x * scale_), std::round(point.y * scale_)};
}

// Each column takes what the line crosses of it, from half a pixel before its middle to half a pixel behind.
void TraceRaster::LineTo(DrawPoint point) {
  const DrawPoint from = place_;
  place_ = {std::round(point.x * scale_), std::round(point.y * scale_)};
  if (place_.x == from.x) return Cover(from.x, from.y, place_.y);
  const double slope = (place_.y - from.y) / (place_.x - from.x);
  const double first = std::max(from.x, limits_.left);
  const double last = std::min(place_.x, limits_.right);
  if (last < first) return;
  const int columns = static_cast<int>(last - first);
  for (int i = 0; i <= columns; ++i) {
    const double column = first + i;
    const double enters = std::max(column - 0.5, from.x);
    const double leaves = std::min(column + 0.5, place_.x);
    Cover(column, from.y + (enters - from.x) * slope, from.y + (leaves - from.x) * slope);
  }
}

void TraceRaster::Cover(double column, double y0, double y1) {
  if (column < limits_.left || column > limits_.right) return;
  const double top = std::round(std::clamp(std::min(y0, y1), limits_.top, limits_.bottom));
  const double bottom = std::round(std::clamp(std::max(y0, y1), limits_.top, limits_.bottom));
  if (open_ && column == column_ && colour_ == columnColour_) {
    top_ = std::min(top_, top);
    bottom_ = std::max(bottom_, bottom);
    return;
  }
  Flush();
  open_ = true;
  column_ = column;
  columnColour_ = colour_;
  top_ = top;
  bottom_ = bottom;
}

void TraceRaster::Flush() {
  if (!open_) return;
  open_ = false;
  dc_.FillSolidRect({column_ / scale_, top_ / scale_, (column_ + 1) / scale_, (bottom_ + 1) / scale_}, columnColour_);
}

}  // namespace tallyscope
