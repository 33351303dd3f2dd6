// SPDX-License-Identifier: MIT
// What the mouse does on a plot.

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "outside/plot/UPlotX_Container.h"

namespace tallyscope {

namespace {

constexpr int kClickSlop = 3;  // pixels that a click may wander
constexpr int kLassoStep = 4;  // pixels between the corners of a line drawn with the button down
constexpr double kClickZoom = 2;
constexpr double kWheelZoom = 1.2;
constexpr int kSignArm = 3;  // of the plus or minus beside the pointer
constexpr int kSignOffset = 12;

bool AreNear(CPoint a, CPoint b, int slop) {
  return std::abs(a.x - b.x) <= slop && std::abs(a.y - b.y) <= slop;
}

CPoint Clamp(CPoint point, const CRect& rect) {
  return {std::clamp(point.x, rect.left, rect.right), std::clamp(point.y, rect.top, rect.bottom)};
}

// Dark dashes on a light line: seen on any background.
void DrawBandLine(CDC& dc, const std::vector<DrawPoint>& points) {
  const auto draw = [&](const Pen& pen) {
    dc.SelectPen(pen);
    dc.MoveTo(points.front().x, points.front().y);
    for (std::size_t i = 1; i < points.size(); ++i) dc.LineTo(points[i].x, points[i].y);
  };
  draw({PenStyle::kSolid, 1, 0xffffff, PenEnds::kFlat});
  draw({PenStyle::kDash, 1, 0x202020, PenEnds::kFlat});
}

}  // namespace

void CUPlotX_Container::SetTool(const PlotTool& tool) {
  if (tool.GetMode() != tool_.GetMode()) {
    if (gesture_ == kPick && active_ != nullptr) active_->CancelSelect(last_, true);
    gesture_ = kNone;
    EndPolygon();
  }
  tool_ = tool;
  InvalidateOver();
}

void CUPlotX_Container::EndPolygon() {
  points_.clear();
  lasso_ = false;
  InvalidateOver();
}

void CUPlotX_Container::OnLButtonDown(CPoint point) {
  if (active_ == nullptr || active_->GetHitArea(point) != CUPlotX::eData) return;
  start_ = last_ = point;
  switch (tool_.kind) {
    case PlotTool::kPointer:
      gesture_ = kPick;
      active_->Select(point, true);
      break;
    case PlotTool::kZoomOut:
      gesture_ = kClick;
      break;
    case PlotTool::kPolygon:
      gesture_ = kDrag;
      if (points_.empty() || !(points_.back() == point)) points_.push_back(point);
      InvalidateOver();
      break;
    default:
      gesture_ = kDrag;
  }
}

void CUPlotX_Container::OnMouseMove(CPoint point, bool pressed) {
  if (active_ == nullptr) return;
  const CPoint before = last_;
  last_ = point;
  if (IsPolygonMode() && !points_.empty()) {
    last_ = Clamp(point, active_->GetFrame());
    if (pressed && gesture_ == kDrag && !AreNear(last_, points_.back(), kLassoStep)) {
      lasso_ = points_.size() == 1 || lasso_;  // a line that began with the button down ends with its release
      points_.push_back(last_);
    }
    InvalidateOver();
    return;
  }
  if (gesture_ == kNone) return;
  if (gesture_ == kPick) {
    active_->SelectMove(point, true);
  } else if (tool_.kind == PlotTool::kPan) {
    active_->Pan(point.x - before.x, point.y - before.y, zoomAxes_);
    ChangeView();
  } else {
    InvalidateOver();
  }
}

void CUPlotX_Container::OnLButtonUp(CPoint point) {
  const Gesture gesture = gesture_;
  gesture_ = kNone;
  if (active_ == nullptr || gesture == kNone) return;
  last_ = Clamp(point, active_->GetFrame());
  const bool click = AreNear(start_, last_, kClickSlop);
  const DrawPoint place{double(start_.x), double(start_.y)};
  switch (tool_.kind) {
    case PlotTool::kPointer:
      active_->CancelSelect(point, true);
      break;
    case PlotTool::kZoomIn:
      if (click) {
        active_->ZoomAbout(place, kClickZoom, zoomAxes_);
      } else {
        active_->ZoomTo(ToDrawRect(CRect::Between(start_, last_)), zoomAxes_);
      }
      ChangeView();
      break;
    case PlotTool::kZoomOut:
      active_->ZoomAbout(place, 1 / kClickZoom, zoomAxes_);
      ChangeView();
      break;
    case PlotTool::kRectangle:
      if (!click) {
        CRect rect = CRect::Between(start_, last_);
        active_->Select(rect, IsIncluding());
      }
      InvalidateOver();
      break;
    case PlotTool::kPolygon:
      if (lasso_) {
        if (points_.size() > 2) active_->Select(IsIncluding());
        EndPolygon();
      }
      break;
    default:
      break;
  }
}

// The first click of a double click has set a corner already.
bool CUPlotX_Container::OnLButtonDblClk(CPoint) {
  if (!IsPolygonMode() || points_.empty() || active_ == nullptr) return false;
  gesture_ = kNone;
  if (points_.size() > 2) active_->Select(IsIncluding());
  EndPolygon();
  return true;
}

bool CUPlotX_Container::OnRButtonDown(CPoint point) {
  return OnLButtonDblClk(point);
}

void CUPlotX_Container::OnWheel(CPoint point, double steps) {
  if (active_ == nullptr || IsInGesture() || active_->GetHitArea(point) != CUPlotX::eData) return;
  active_->ZoomAbout({double(point.x), double(point.y)}, std::pow(kWheelZoom, steps), zoomAxes_);
  ChangeView();
}

void CUPlotX_Container::ZoomStep(double factor) {
  if (active_ == nullptr) return;
  KeepCorners([&] {
    const auto& frame = active_->GetFrame();
    active_->ZoomAbout({(frame.left + frame.right) / 2.0, (frame.top + frame.bottom) / 2.0}, factor, zoomAxes_);
    InitialiseExtents();
  });
  ChangeView();
}

bool CUPlotX_Container::CancelStep() {
  if (!points_.empty()) {
    points_.pop_back();
    if (lasso_ || points_.empty()) EndPolygon();
    gesture_ = kNone;
    InvalidateOver();
    return true;
  }
  if (gesture_ == kNone) return false;
  if (gesture_ == kPick && active_ != nullptr) active_->CancelSelect(last_, true);
  gesture_ = kNone;
  InvalidateOver();
  return true;
}

CRect CUPlotX_Container::GetBand() const {
  return CRect::Between(start_, Clamp(last_, active_->GetFrame()));
}

void CUPlotX_Container::RenderBand(CDC& dc) {
  if (active_ == nullptr) return;
  std::vector<DrawPoint> line;
  const auto add = [&](CPoint at) { line.push_back({double(at.x), double(at.y)}); };
  if (!points_.empty()) {
    for (const auto& point : points_) add(point);
    add(Clamp(last_, active_->GetFrame()));  // a frame that has shrunk leaves the pointer outside
    if (points_.size() > 1) add(points_.front());
  } else if (gesture_ == kDrag && (IsRectangleMode() || tool_.kind == PlotTool::kZoomIn) &&
             !AreNear(start_, last_, kClickSlop)) {
    CRect band = GetBand();
    const auto& frame = active_->GetFrame();
    if (tool_.kind == PlotTool::kZoomIn && (zoomAxes_ & 2) == 0)
      band = {band.left, frame.top, band.right, frame.bottom - 1};
    for (const CPoint& corner :
         {CPoint{band.left, band.top}, CPoint{band.right, band.top}, CPoint{band.right, band.bottom},
          CPoint{band.left, band.bottom}, CPoint{band.left, band.top}}) {
      add(corner);
    }
  }
  if (line.empty()) return;
  {
    const DrawClip clip(dc, ToDrawRect(active_->GetFrame().Grown(1)));
    DrawBandLine(dc, line);
  }
  if (tool_.kind == PlotTool::kZoomIn) return;
  const double x = last_.x + kSignOffset;
  const double y = last_.y - kSignOffset;
  const auto sign = [&](double width, COLORREF colour) {
    dc.SelectPen({PenStyle::kSolid, width, colour, PenEnds::kFlat});
    dc.MoveTo(x - kSignArm - (width - 1) / 2, y);
    dc.LineTo(x + kSignArm + 1 + (width - 1) / 2, y);
    if (!IsIncluding()) return;
    dc.MoveTo(x, y - kSignArm - (width - 1) / 2);
    dc.LineTo(x, y + kSignArm + 1 + (width - 1) / 2);
  };
  sign(3, 0xffffff);
  sign(1, 0x202020);
}

}  // namespace tallyscope
