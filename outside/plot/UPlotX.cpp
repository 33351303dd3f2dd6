// SPDX-License-Identifier: MIT
#include "outside/plot/UPlotX.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "outside/plot/Span.h"

namespace tallyscope {

namespace {

constexpr double kFinest = 1e-12;  // of the larger end: a view is never narrower, so that its pixels still differ
constexpr double kNarrowest = 1e-290;
constexpr double kLargest = std::numeric_limits<double>::max();

double Bound(double value) {
  return std::clamp(value, -kLargest, kLargest);
}

// Wide enough for its pixels to differ from one another.
bool IsApart(double low, double high) {
  return HalfSpan(low, high) > std::max(std::abs(low), std::abs(high)) * (kFinest / 2);
}

// Ends in order, finite and apart. Ends that differ by no more than rounding count as equal.
void Open(double& low, double& high) {
  if (!std::isfinite(low) || !std::isfinite(high) || low > high) {
    low = 0;
    high = 1;
  }
  if (IsApart(low, high)) return;
  const double half = std::max(0.5, std::abs(low) * 1e-6);
  low -= half;
  high += half;
}

bool IsView(double low, double high) {
  return std::isfinite(low) && std::isfinite(high) && HalfSpan(low, high) > kNarrowest / 2 && IsApart(low, high);
}

}  // namespace

void CUPlotX::ZoomFit() {
  if (scaling != eManual) {
    for (std::size_t axis = 0; axis < 2; ++axis) {
      double low = extents.min[axis];
      double high = extents.max[axis];
      Open(low, high);
      const auto& map = maps[axis];
      const double from = map.ToData(low);
      const double to = map.ToData(high);
      const double halfMore = HalfSpan(from, to) * padding;
      axisRange.min[axis] = halfMore > 0 ? Bound(map.ToWorld((from / 2 - halfMore) * 2)) : low;
      axisRange.max[axis] = halfMore > 0 ? Bound(map.ToWorld((to / 2 + halfMore) * 2)) : high;
    }
  }
  SetWindowExtent();
}

void CUPlotX::SetWindowExtent() {
  for (std::size_t axis = 0; axis < 2; ++axis) {
    double low = maps[axis].ToData(axisRange.min[axis]);
    double high = maps[axis].ToData(axisRange.max[axis]);
    if (!IsView(low, high)) Open(low, high);
    window_.min[axis] = low;
    window_.max[axis] = high;
  }
  if (scaling != eNatural) return;
  const double pixels[2] = {double(std::max(frame_.Width(), 1)), double(std::max(frame_.Height(), 1))};
  const double halfUnit = std::max(HalfSpan(window_.min[0], window_.max[0]) / pixels[0],  //
                                   HalfSpan(window_.min[1], window_.max[1]) / pixels[1]);
  for (std::size_t axis = 0; axis < 2; ++axis) {
    const double middle = window_.min[axis] / 2 + window_.max[axis] / 2;
    window_.min[axis] = Bound(middle - halfUnit * pixels[axis]);
    window_.max[axis] = Bound(middle + halfUnit * pixels[axis]);
  }
}

void CUPlotX::TakeWindow(const Box& window, int axes) {
  for (std::size_t axis = 0; axis < 2; ++axis) {
    if ((axes >> axis & 1) == 0) continue;
    const double low = maps[axis].ToWorld(window.min[axis]);
    const double high = maps[axis].ToWorld(window.max[axis]);
    if (!IsView(low, high) || !IsView(window.min[axis], window.max[axis])) return;
  }
  for (std::size_t axis = 0; axis < 2; ++axis) {
    if ((axes >> axis & 1) == 0) continue;
    axisRange.min[axis] = maps[axis].ToWorld(window.min[axis]);
    axisRange.max[axis] = maps[axis].ToWorld(window.max[axis]);
  }
  SetWindowExtent();
}

void CUPlotX::ZoomTo(const DrawRect& rect, int axes) {
  const XVector low = Device2Data({rect.left, rect.bottom, 0});
  const XVector high = Device2Data({rect.right, rect.top, 0});
  TakeWindow({low, high, 1}, scaling == eNatural ? 3 : axes);
}

void CUPlotX::ZoomAbout(const DrawPoint& place, double factor, int axes) {
  const XVector fixed = Device2Data({place.x, place.y, 0});
  Box window = window_;
  for (std::size_t axis = 0; axis < 2; ++axis) {
    window.min[axis] = FindPlace(fixed[axis], window_.min[axis], 1 / factor);
    window.max[axis] = FindPlace(fixed[axis], window_.max[axis], 1 / factor);
  }
  TakeWindow(window, scaling == eNatural ? 3 : axes);
}

void CUPlotX::Pan(double dx, double dy, int axes) {
  const double parts[2] = {-dx / std::max(frame_.Width(), 1), dy / std::max(frame_.Height(), 1)};
  Box window = window_;
  for (std::size_t axis = 0; axis < 2; ++axis) {
    const double halfShift = parts[axis] * HalfSpan(window_.min[axis], window_.max[axis]);
    window.min[axis] = (window_.min[axis] / 2 + halfShift) * 2;
    window.max[axis] = (window_.max[axis] / 2 + halfShift) * 2;
  }
  TakeWindow(window, axes);
}

Box CUPlotX::GetVisible() const {
  Box visible{Data2World(window_.min), Data2World(window_.max), 1};
  for (Point3* corner : {&visible.min, &visible.max}) {
    for (double& place : *corner) place = Bound(place);
  }
  return visible;
}

XVector CUPlotX::Device2Data(const XVector& device) const {
  const double x = (device[0] - frame_.left) / std::max(frame_.Width(), 1);
  const double y = (frame_.bottom - device[1]) / std::max(frame_.Height(), 1);
  return {FindPlace(window_.min[0], window_.max[0], x), FindPlace(window_.min[1], window_.max[1], y), device[2]};
}

XVector CUPlotX::Data2Device(const XVector& data) const {
  const double x = FindPart(window_.min[0], window_.max[0], data[0]);
  const double y = FindPart(window_.min[1], window_.max[1], data[1]);
  return {frame_.left + x * std::max(frame_.Width(), 1), frame_.bottom - y * std::max(frame_.Height(), 1), data[2]};
}

XVector CUPlotX::Data2World(const XVector& data) const {
  return {maps[0].ToWorld(data[0]), maps[1].ToWorld(data[1]), maps[2].ToWorld(data[2])};
}

XVector CUPlotX::World2Data(const XVector& world) const {
  return {maps[0].ToData(world[0]), maps[1].ToData(world[1]), maps[2].ToData(world[2])};
}

CPoint CUPlotX::Device2Client(const XVector& device) const {
  const auto whole = [](double at) {
    return static_cast<int>(std::isnan(at) ? 0 : std::round(std::clamp(at, -1e9, 1e9)));
  };
  return {whole(device[0]), whole(device[1])};
}

Box CUPlotX::Rect2World(const CRect& rect) const {
  return {Device2World(rect.left, rect.bottom), Device2World(rect.right, rect.top), 1};
}

CUPlotX::eHitArea CUPlotX::GetHitArea(CPoint point) const {
  if (!client_.PtInRect(point)) return eNone;
  if (frame_.PtInRect(point)) return eData;
  const bool level = point.y >= frame_.top && point.y < frame_.bottom;
  const bool upright = point.x >= frame_.left && point.x < frame_.right;
  if (level) return point.x < frame_.left ? eLeft : eRight;
  if (upright) return point.y < frame_.top ? eTop : eBottom;
  return eNone;
}

void CUPlotX::SetLayout(CUPlotX_Container* container, const CRect& client, const CRect& frame, const CRect& legend) {
  container_ = container;
  client_ = client;
  frame_ = frame;
  legend_ = legend;
}

}  // namespace tallyscope
