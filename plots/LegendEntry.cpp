// SPDX-License-Identifier: MIT
#include "plots/LegendEntry.h"

#include "outside/plot/PlotAxes.h"

namespace tallyscope {

namespace {

constexpr double kSample = 32;
constexpr double kGap = 8;
constexpr double kLift = 2;

}  // namespace

void DrawLegendEntry(CDC& dc, const CRect& strip, double left, const Pen& pen, const CString& text,
                     COLORREF textColour) {
  const double middle = (strip.top + strip.bottom) / 2.0;
  dc.SelectPen(pen);
  dc.MoveTo(left, middle);
  dc.LineTo(left + kSample, middle);
  dc.SelectPointFont(kLegendPoints, kPlotFace);
  dc.SetBkMode(true);
  dc.SetTextColor(textColour);
  dc.SetTextAlign(TextAlign::kLeft, TextLine::kBottom);
  dc.TextOut(left + kSample + kGap, strip.bottom - kLift, text);
}

}  // namespace tallyscope
