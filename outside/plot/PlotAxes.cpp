// SPDX-License-Identifier: MIT
#include "outside/plot/PlotAxes.h"

#include <algorithm>
#include <cmath>

#include "outside/plot/AxisTicks.h"
#include "outside/plot/PlotDrawing.h"
#include "outside/plot/UPlotX_Container.h"
#include "platform/core/NumberText.h"
#include "platform/ui/PainterDC.h"

namespace tallyscope {

namespace {

constexpr double kLabelPoints = 8;
constexpr double kTitlePoints = 9;
constexpr int kTickLength = 5;
constexpr int kMinorLength = 3;
constexpr int kGap = 4;
constexpr int kLabelSteps = 16;  // room for labels grows in steps, so that a frame stays put while one zooms
constexpr int kLeastFrame = 40;
constexpr int kEndRoom = 24;  // for half of the last label

CSize MeasureLabel(const CString& label) {
  return MeasurePlotText(kLabelPoints, kPlotFace, label);
}

// `pixels` along the axis.
AxisTicks MakeTicks(const CUPlotX& plot, std::size_t axis, double pixels) {
  const auto visible = plot.GetVisible();
  const auto fits = [axis](const CString& label, double apart) {
    const CSize size = MeasureLabel(label);
    return axis == 0 ? size.cx + 2 * kGap < apart : size.cy * 1.6 < apart;
  };
  return MakeAxisTicks(visible.min[axis], visible.max[axis], plot.maps[axis], pixels, fits);
}

int GetWidestLabel(const AxisTicks& made) {
  int widest = 0;
  for (const auto& tick : made.ticks) {
    if (tick.IsMajor()) widest = std::max(widest, MeasureLabel(tick.label).cx);
  }
  return (widest + kLabelSteps - 1) / kLabelSteps * kLabelSteps;
}

CString Superscript(int number) {
  static constexpr const char* kDigits[] = {"⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
  CString text;
  for (const char digit : std::to_string(number)) text += digit == '-' ? "⁻" : kDigits[digit - '0'];
  return text;
}

// The power of ten stays whole, since the axis can't be read without it.
CString MakeTitle(CDC& dc, const CString& title, int exponent, int room) {
  if (exponent == 0) return ShortenText(dc, title, room);
  CString power = "(×10" + Superscript(exponent) + ")";
  if (title.empty()) return power;
  return ShortenText(dc, title, room - dc.GetTextExtent("  " + power).cx) + "  " + power;
}

void DrawTicksX(CDC& dc, const CUPlotX& plot, const AxisTicks& made, const PlotColours& colours) {
  const auto& frame = plot.GetFrame();
  dc.SetTextAlign(TextAlign::kCentre, TextLine::kTop);
  for (const auto& tick : made.ticks) {
    const double x = std::round(plot.World2Device(tick.world, 0)[0]);
    if (x < frame.left || x > frame.right) continue;
    if (tick.IsMajor() && x > frame.left && x < frame.right) {
      dc.SelectPen({PenStyle::kSolid, 1, colours.grid});
      dc.MoveTo(x, frame.top);
      dc.LineTo(x, frame.bottom);
    }
    dc.SelectPen({PenStyle::kSolid, 1, colours.frame});
    dc.MoveTo(x, frame.bottom);
    dc.LineTo(x, frame.bottom + (tick.IsMajor() ? kTickLength : kMinorLength));
    if (tick.IsMajor()) dc.TextOut(x, frame.bottom + kTickLength + 1, tick.label);
  }
}

void DrawTicksY(CDC& dc, const CUPlotX& plot, const AxisTicks& made, const PlotColours& colours) {
  const auto& frame = plot.GetFrame();
  dc.SetTextAlign(TextAlign::kRight, TextLine::kMiddle);
  for (const auto& tick : made.ticks) {
    const double y = std::round(plot.World2Device(0, tick.world)[1]);
    if (y < frame.top || y > frame.bottom) continue;
    if (tick.IsMajor() && y > frame.top && y < frame.bottom) {
      dc.SelectPen({PenStyle::kSolid, 1, colours.grid});
      dc.MoveTo(frame.left, y);
      dc.LineTo(frame.right, y);
    }
    dc.SelectPen({PenStyle::kSolid, 1, colours.frame});
    dc.MoveTo(frame.left - (tick.IsMajor() ? kTickLength : kMinorLength), y);
    dc.LineTo(frame.left, y);
    if (tick.IsMajor()) dc.TextOut(frame.left - kTickLength - 2, y, tick.label);
  }
}

}  // namespace

void LayOutPlot(CUPlotX& plot, CUPlotX_Container& container) {
  const CRect client = container.GetClientRect();
  const int label = MeasureLabel("0").cy;
  const int title = MeasurePlotText(kTitlePoints, kPlotFace, "X").cy;
  const int legend = plot.hasLegend ? MeasurePlotText(kLegendPoints, kPlotFace, "X").cy + 2 * kGap : 0;
  const int bottom = std::max(plot.margins.bottom, kTickLength + label + title + kGap);
  const int top = std::max(plot.margins.top, label / 2 + 2 + legend);
  const auto across = MakeTicks(plot, 1, std::max(client.Height() - top - bottom, 1));
  const int left = std::max(plot.margins.left, title + kGap + GetWidestLabel(across) + kTickLength + kGap);
  const int right = std::max(plot.margins.right, kEndRoom) + (container.isPicture ? plot.GetSideRoom() : 0);
  CRect frame{client.left + left, client.top + top, client.right - right, client.bottom - bottom};
  frame.right = std::max(frame.right, frame.left + kLeastFrame);
  frame.bottom = std::max(frame.bottom, frame.top + kLeastFrame);
  const CRect strip{frame.left, frame.top - legend, frame.right, frame.top};
  const bool moved = !(frame == plot.GetFrame());
  plot.SetLayout(&container, client, frame, strip);
  if (moved) plot.SetWindowExtent();
}

void DrawAxes(CDC& dc, const CUPlotX& plot, const PlotColours& colours) {
  const auto& frame = plot.GetFrame();
  const auto ticksX = MakeTicks(plot, 0, frame.Width());
  const auto ticksY = MakeTicks(plot, 1, frame.Height());
  dc.SetBkMode(true);
  dc.SetTextColor(colours.text);
  dc.SelectPointFont(kLabelPoints, kPlotFace);
  DrawTicksX(dc, plot, ticksX, colours);
  DrawTicksY(dc, plot, ticksY, colours);
  DrawOutline(dc, ToDrawRect(frame), colours.frame);
  dc.SelectPointFont(kTitlePoints, kPlotFace);
  dc.SetTextAlign(TextAlign::kCentre, TextLine::kBottom);
  const CRect client = plot.GetContainer()->GetClientRect();
  dc.TextOut((frame.left + frame.right) / 2.0, client.bottom - 1,
             MakeTitle(dc, plot.titleX, ticksX.exponent, frame.Width()));
  dc.SetTextAlign(TextAlign::kCentre, TextLine::kTop);
  dc.TextOutUpwards(client.left + 2, (frame.top + frame.bottom) / 2.0,
                    MakeTitle(dc, plot.titleY, ticksY.exponent, frame.Height()));
}

}  // namespace tallyscope
