// SPDX-License-Identifier: MIT
#include "outside/plot/UPlotX_Container.h"

#include <algorithm>

#include <QGuiApplication>

#include "outside/colour/Hsl.h"
#include "outside/plot/PlotAxes.h"
#include "outside/plot/PlotDrawing.h"
#include "outside/plot/PlotListener.h"

namespace tallyscope {

namespace {

constexpr double kEmptyPoints = 9;

}  // namespace

void CUPlotX_Container::SetClientSize(CSize size) {
  KeepCorners([&] {
    size_ = size;
    InitialiseExtents();
  });
}

// The corners of a polygon under way stay on the data that they were set on.
void CUPlotX_Container::KeepCorners(const std::function<void()>& change) {
  std::vector<XVector> places;
  for (const CPoint& corner : points_) places.push_back(active_->Device2World(corner.x, corner.y));
  change();
  for (std::size_t i = 0; i < places.size(); ++i) {
    points_[i] = active_->Device2Client(active_->World2Device(places[i][0], places[i][1]));
  }
}

void CUPlotX_Container::AddPlot(CUPlotX* plot, bool active) {
  plots_.push_back(plot);
  if (active || active_ == nullptr) active_ = plot;
  LayOutPlot(*plot, *this);
}

void CUPlotX_Container::InitialiseExtents() {
  for (auto* plot : plots_) LayOutPlot(*plot, *this);
}

void CUPlotX_Container::ZoomFit() {
  KeepCorners([&] {
    for (auto* plot : plots_) plot->ZoomFit();
    InitialiseExtents();
  });
  Invalidate();
}

void CUPlotX_Container::SetWindowExtent() {
  for (auto* plot : plots_) plot->SetWindowExtent();
  InitialiseExtents();
  Invalidate();
}

bool CUPlotX_Container::Prepare(CProgressSink* progress) {
  return std::all_of(plots_.begin(), plots_.end(), [&](auto* plot) { return plot->Prepare(progress); });
}

void CUPlotX_Container::Render(CDC& dc) {
  Prepare(nullptr);
  RenderKept(dc);
  RenderOver(dc);
}

void CUPlotX_Container::RenderKept(CDC& dc) {
  InitialiseExtents();
  dc.FillSolidRect(ToDrawRect(dc.GetClientRect()), colours.paper);
  for (auto* plot : plots_) {
    DrawAxes(dc, *plot, colours);
    plot->RenderLayer(dc);
    if (isPicture) plot->RenderSide(dc);
    RenderEmpty(dc, *plot);
  }
}

void CUPlotX_Container::RenderEmpty(CDC& dc, CUPlotX& plot) {
  const CString reason = plot.GetEmptyReason();
  if (reason.empty()) return;
  const auto& frame = plot.GetFrame();
  dc.SelectPointFont(kEmptyPoints, kPlotFace);
  dc.SetTextColor(colours.faint);
  dc.SetBkMode(false, colours.paper);
  dc.SetTextAlign(TextAlign::kCentre, TextLine::kMiddle);
  dc.TextOut((frame.left + frame.right) / 2.0, (frame.top + frame.bottom) / 2.0,
             ShortenText(dc, reason, frame.Width()));
  dc.SetBkMode(true);
}

void CUPlotX_Container::RenderOver(CDC& dc) {
  for (auto* plot : plots_) {
    const DrawClip clip(dc, ToDrawRect(plot->GetFrame()));
    plot->RenderHover(dc);
  }
  RenderBand(dc);
}

void CUPlotX_Container::Invalidate() {
  if (window_ != nullptr) window_->OnRedraw(true);
}

void CUPlotX_Container::InvalidateOver() {
  if (window_ != nullptr) window_->OnRedraw(false);
}

void CUPlotX_Container::TellHovered(int index) {
  InvalidateOver();
  if (window_ != nullptr) window_->OnHovered(index);
}

void CUPlotX_Container::TellSelectionMade() {
  Invalidate();
  if (window_ != nullptr) window_->OnSelectionMade();
}

// After the user has moved it.
void CUPlotX_Container::ChangeView() {
  Invalidate();
  if (window_ != nullptr) window_->OnViewChanged();
}

QCursor CUPlotX_Container::ShowZoomInCursor() const {
  return Qt::CrossCursor;
}

QCursor CUPlotX_Container::ShowZoomOutCursor() const {
  return Qt::CrossCursor;
}

QCursor CUPlotX_Container::ShowPanCursor() const {
  return Qt::OpenHandCursor;
}

QCursor CUPlotX_Container::GetCursor(CPoint point) const {
  if (active_ == nullptr || active_->GetHitArea(point) != CUPlotX::eData) return Qt::ArrowCursor;
  switch (tool_.kind) {
    case PlotTool::kZoomIn:
      return ShowZoomInCursor();
    case PlotTool::kZoomOut:
      return ShowZoomOutCursor();
    case PlotTool::kPan:
      return gesture_ == kDrag ? QCursor(Qt::ClosedHandCursor) : ShowPanCursor();
    case PlotTool::kPointer:
      return Qt::ArrowCursor;
    default:
      return Qt::CrossCursor;
  }
}

void CUPlotX_Container::RGB2HSL(double red, double green, double blue, double& hue, double& saturation,
                                double& lightness) {
  const Hsl hsl = ToHsl(Rgb{red, green, blue});
  hue = hsl.hue;
  saturation = hsl.saturation;
  lightness = hsl.lightness;
}

void CUPlotX_Container::HSL2RGB(double hue, double saturation, double lightness, double& red, double& green,
                                double& blue) {
  const Rgb rgb = ToRgb(Hsl{hue, saturation, lightness});
  red = rgb.red;
  green = rgb.green;
  blue = rgb.blue;
}

COLORREF CUPlotX_Container::RGB2CREF(double red, double green, double blue) {
  return ToColorRef(Rgb{red, green, blue});
}

void CUPlotX_Container::CREF2RGB(COLORREF colour, double& red, double& green, double& blue) {
  const Rgb rgb = ToRgb(colour);
  red = rgb.red;
  green = rgb.green;
  blue = rgb.blue;
}

}  // namespace tallyscope
