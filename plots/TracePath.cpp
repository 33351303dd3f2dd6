// SPDX-License-Identifier: MIT
#include "plots/TracePath.h"

#include <algorithm>

namespace tallyscope {

namespace {

constexpr double kFar = 4096;  // pixels outside the frame: no end that is cut there shows in it

// Devices take longer a point the longer a polyline is.
constexpr std::size_t kMostPoints = 512;

// Cuts a line to where one of its co-ordinates lies between `low` and `high`. False if nothing is left.
bool CutLine(DrawPoint& from, DrawPoint& to, double DrawPoint::*axis, double DrawPoint::*other, double low,
             double high) {
  if (std::max(from.*axis, to.*axis) < low || std::min(from.*axis, to.*axis) > high) return false;
  const double slope = (to.*other - from.*other) / (to.*axis - from.*axis);
  const DrawPoint start = from;
  for (DrawPoint* end : {&from, &to}) {
    const double place = std::clamp(end->*axis, low, high);
    if (place == end->*axis) continue;
    end->*other = start.*other + (place - start.*axis) * slope;
    end->*axis = place;
  }
  return true;
}

}  // namespace

TracePath::TracePath(CDC& dc, const DrawRect& frame)
    : dc_(dc), limits_{frame.left - kFar, frame.top - kFar, frame.right + kFar, frame.bottom + kFar} {}

void TracePath::Add(COLORREF colour, std::initializer_list<DrawPoint> points) {
  if (colour != colour_) Flush();
  colour_ = colour;
  for (auto point = points.begin(); point + 1 != points.end(); ++point) AddLine(*point, point[1]);
  if (points_.size() < kMostPoints) return;
  const DrawPoint end = points_.back();
  Flush();
  points_.push_back(end);
}

void TracePath::AddLine(DrawPoint from, DrawPoint to) {
  if (!CutLine(from, to, &DrawPoint::x, &DrawPoint::y, limits_.left, limits_.right)) return;
  if (!CutLine(from, to, &DrawPoint::y, &DrawPoint::x, limits_.top, limits_.bottom)) return;
  if (points_.empty() || !(points_.back() == from)) {
    Flush();
    points_.push_back(from);
  }
  if (!(points_.back() == to)) points_.push_back(to);
}

void TracePath::Flush() {
  if (points_.size() == 1) points_.push_back(points_.front());  // a dash that is no longer than a pixel: a dot
  if (!points_.empty()) {
    dc_.SelectPen({PenStyle::kSolid, 0, colour_});
    dc_.Polyline(points_);
  }
  points_.clear();
}

}  // namespace tallyscope
