// SPDX-License-Identifier: MIT
#include "plots/ModulationLegend.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "outside/plot/AxisTicks.h"
#include "outside/plot/PlotAxes.h"
#include "outside/plot/PlotDrawing.h"
#include "outside/plot/Span.h"
#include "platform/ui/PainterDC.h"
#include "plots/StationText.h"
#include "plots/UPlotX_Tallyscope.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr double kPoints = 8;
constexpr int kGap = 8;
constexpr int kBarWidth = 14;
constexpr int kUprightRoom = 92;
constexpr int kLyingBar = 120;
constexpr int kSizes = 5;
constexpr int kSizeStep = 16;

void StartText(CDC& dc, COLORREF colour, TextAlign align, TextLine line) {
  dc.SelectPointFont(kPoints, kPlotFace);
  dc.SetBkMode(true);
  dc.SetTextColor(colour);
  dc.SetTextAlign(align, line);
}

void DrawBar(CDC& dc, const DrawRect& bar, bool upright, const std::vector<COLORREF>& table, COLORREF frame) {
  const double span = upright ? bar.bottom - bar.top : bar.right - bar.left;
  const int pieces = std::max(1, std::min(static_cast<int>(span * dc.GetScale()), 256));
  for (int i = 0; i < pieces; ++i) {
    const double from = span * i / pieces;  // to the far end, so that drawings show no seams between the pieces
    const auto colour = table[static_cast<std::size_t>(i * 256 / pieces)];
    if (upright) {
      dc.FillSolidRect({bar.left, bar.top, bar.right, bar.bottom - from}, colour);
    } else {
      dc.FillSolidRect({bar.left + from, bar.top, bar.right, bar.bottom}, colour);
    }
  }
  DrawOutline(dc, bar, frame);
}

// To three digits of twice `half`.
CString FormatRounded(double value, double half) {
  if (!(half > 0)) return ShownNumber(value);
  const double range = std::min(half * 2, std::numeric_limits<double>::max());
  const double unit = std::pow(10.0, std::floor(std::log10(range)) - 2);
  return ShownNumber(std::round(value / unit) * unit);
}

void DrawMark(CDC& dc, double x, double y, int arm, COLORREF colour) {
  const PlotMark mark{static_cast<float>(x), static_cast<float>(y), colour, arm};
  dc.PutMarks({&mark, 1});
}

// Returns where the next part starts.
int DrawUprightColours(CDC& dc, const ModulationLegend& legend, const CRect& room, const CUPlotX_Tallyscope& plot) {
  const COLORREF text = plot.GetTextColour();
  const int line = MeasurePlotText(kPoints, kPlotFace, "X").cy;
  StartText(dc, text, TextAlign::kLeft, TextLine::kTop);
  dc.TextOut(room.left, room.top, ShortenText(dc, legend.colourField, room.Width()));
  const int sizes = legend.sizeField.empty() ? 0 : (kSizes + 2) * line;
  const DrawRect bar{double(room.left), double(room.top + line + kGap), double(room.left + kBarWidth),
                     double(std::max(room.bottom - sizes - kGap, room.top + line + 3 * kGap))};
  DrawBar(dc, bar, true, *legend.table, text);
  const auto fits = [&](const CString&, double apart) { return apart > 1.6 * line; };
  const auto made = MakeAxisTicks(legend.colourLow, legend.colourHigh, AxisMap(), bar.bottom - bar.top, fits);
  StartText(dc, text, TextAlign::kLeft, TextLine::kMiddle);
  for (const auto& tick : made.ticks) {
    if (!tick.IsMajor()) continue;
    const double part = FindPart(legend.colourLow, legend.colourHigh, tick.world);
    const double y = bar.bottom - part * (bar.bottom - bar.top);
    dc.MoveTo(bar.right, y);
    dc.LineTo(bar.right + 3, y);
    dc.TextOut(bar.right + 6, y, made.exponent == 0 ? tick.label : ShownNumber(tick.world));
  }
  return static_cast<int>(bar.bottom) + 2 * kGap;
}

void DrawUprightSizes(CDC& dc, const ModulationLegend& legend, const CRect& room, int top,
                      const CUPlotX_Tallyscope& plot) {
  const COLORREF text = plot.GetTextColour();
  const int line = MeasurePlotText(kPoints, kPlotFace, "X").cy;
  StartText(dc, text, TextAlign::kLeft, TextLine::kTop);
  dc.TextOut(room.left, top, ShortenText(dc, legend.sizeField, room.Width()));
  StartText(dc, text, TextAlign::kLeft, TextLine::kMiddle);
  for (int size = 0; size < kSizes; ++size) {
    const double y = top + (size + 1.5) * line + 2;
    DrawMark(dc, room.left + kBarWidth / 2.0, y, size, text);
    const double half = HalfSpan(legend.sizeLow, legend.sizeHigh);
    const double from = (legend.sizeLow / 2 + half * size / kSizes) * 2;
    dc.TextOut(room.left + kBarWidth + 6, y, "≥ " + FormatRounded(from, half));
  }
}

}  // namespace

ModulationLegend MakeModulationLegend(const CUPlotX_Tallyscope& plot) {
  ModulationLegend legend;
  if (plot.data == nullptr) return legend;
  if (plot.GetColourModulation().IsOn()) {
    legend.colourField = plot.data->GetValueName(plot.colourDim);
    legend.colourLow = plot.colourLow;
    legend.colourHigh = plot.colourHigh;
    legend.table = &plot.colourTable;
  }
  if (plot.GetSizeModulation().IsOn()) {
    legend.sizeField = plot.data->GetValueName(plot.sizeDim);
    legend.sizeLow = plot.sizeLow;
    legend.sizeHigh = plot.sizeHigh;
  }
  return legend;
}

int GetLegendRoom(const ModulationLegend& legend) {
  return legend.IsEmpty() ? 0 : kUprightRoom;
}

void DrawUprightLegend(CDC& dc, const ModulationLegend& legend, const CRect& room, const CUPlotX_Tallyscope& plot) {
  if (legend.IsEmpty()) return;
  const CRect inside{room.left + 2 * kGap, room.top, room.right - 2, room.bottom};
  int top = inside.top;
  if (!legend.colourField.empty()) top = DrawUprightColours(dc, legend, inside, plot);
  if (!legend.sizeField.empty()) DrawUprightSizes(dc, legend, inside, top, plot);
}

int DrawLyingLegend(CDC& dc, const ModulationLegend& legend, const CRect& room, COLORREF text) {
  double x = room.left;
  const double middle = (room.top + room.bottom) / 2.0;
  StartText(dc, text, TextAlign::kLeft, TextLine::kMiddle);
  const auto write = [&](const CString& words) {
    dc.TextOut(x, middle, words);
    x += dc.GetTextExtent(words).cx + kGap;
  };
  if (!legend.colourField.empty()) {
    write(ShownNumber(legend.colourLow));
    DrawBar(dc, {x, middle - kBarWidth / 2.0, x + kLyingBar, middle + kBarWidth / 2.0}, false, *legend.table, text);
    x += kLyingBar + kGap;
    write(ShownNumber(legend.colourHigh));
    x += kGap;
  }
  if (!legend.sizeField.empty()) {
    write(ShownNumber(legend.sizeLow));
    for (int size = 0; size < kSizes; ++size) {
      x += kSizeStep / 2.0;
      DrawMark(dc, x, middle, size, text);
      x += kSizeStep / 2.0;
    }
    x += kGap;
    write(ShownNumber(legend.sizeHigh));
  }
  return static_cast<int>(x) - room.left;
}

}  // namespace tallyscope
