// SPDX-License-Identifier: MIT
// The drawing half of the histogram.

#include <algorithm>
#include <cmath>

#include "outside/plot/UPlotX_Container.h"
#include "plots/ClampIndex.h"
#include "plots/LegendEntry.h"
#include "plots/PolygonThinning.h"
#include "plots/UPlotX_Uni_Histogram.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

constexpr COLORREF kBlack = 0;
constexpr COLORREF kRed = 0xff;
constexpr COLORREF kGreen = 0xff00;
constexpr COLORREF kBlue = 0xff0000;
constexpr int kPixelsPerBar = 3;  // about, at least
constexpr double kMostPixels = 1e9;
constexpr double kNear = 0.5;    // pixels
constexpr double kSleeve = 0.1;  // device pixels

}  // namespace

double CUPlotX_Uni_Histogram::GetX(double value) const {
  return World2Device(value, 0)[0];
}

double CUPlotX_Uni_Histogram::GetY(double height) const {
  return World2Device(extents.min[0], height)[1];
}

double CUPlotX_Uni_Histogram::CountStations(int first, int last) const {
  double count = 0;
  for (int bin = first; bin <= last; ++bin) count += GetBin(bin).count;
  return count;
}

// The look-up of a value and the counting of bins round on their own: no more than the bin has.
double CUPlotX_Uni_Histogram::CountSelected(int first, int last) const {
  double count = 0;
  for (int bin = first; bin <= last; ++bin) count += selectedCounts[static_cast<std::size_t>(bin)];
  return std::min(count, CountStations(first, last));
}

// Groups bins until a bar is some pixels wide, and scales the highest bar to 1.
void CUPlotX_Uni_Histogram::SetGrouping() {
  const int bins = GetHistogram()->GetBinCount();
  const double width = std::fabs(GetX(extents.max[0]) - GetX(extents.min[0]));
  const auto pixels = static_cast<long>(std::round(std::min(width, kMostPixels)));
  const int wanted = static_cast<int>(std::max(1L, long{kPixelsPerBar} * bins / (pixels + 1)));
  if (wanted == binsPerBar) return;
  double largest = -1e10;
  for (int first = 0; first < bins; first += wanted) {
    largest = std::max(largest, CountStations(first, std::min(first + wanted, bins) - 1));
  }
  binsPerBar = wanted;
  scale = 1 / largest;
}

CUPlotX_Uni_Histogram::Bars CUPlotX_Uni_Histogram::FindBars() const {
  const int bins = GetHistogram()->GetBinCount();
  const double width = GetBinWidth();
  const Box visible = GetVisible();
  const DrawRect frame = Clip2Data();
  const double left = std::min(visible.min[0], Device2World(frame.left, frame.bottom)[0]) - extents.min[0];
  const double right = std::max(visible.max[0], Device2World(frame.right, frame.top)[0]) - extents.min[0];
  const int group = std::max(binsPerBar, 1);
  Bars bars;
  bars.first = ClampIndex(std::floor(left / width), 0, bins - 1) / group * group;
  bars.last = ClampIndex(std::ceil(right / width), 0, bins - 1);
  bars.showsSelection = GetShownSelection() != nullptr && selectedCounts.size() == static_cast<std::size_t>(bins);
  bars.blue = ForPaper(kBlue);
  bars.red = ForPaper(kRed);
  return bars;
}

void CUPlotX_Uni_Histogram::RenderLayer(CDC& dc) {
  if (GetHistogram() == nullptr || !HasWidth()) return;
  SetGrouping();
  const Bars bars = FindBars();
  {
    const DrawClip clip(dc, Clip2Data());
    if (binsPerBar == 1) {
      DrawBins(dc, bars);
    } else {
      DrawGroups(dc, bars);
    }
    DrawCurve(dc, bars);
  }
  if (GetContainer() != nullptr) {
    const DrawClip clip(dc, Clip2Client());
    DrawLegendEntry(dc, GetLegend(), GetLegend().left, {PenStyle::kSolid, 2, ForPaper(kGreen)}, "Cumulative histogram",
                    GetTextColour());
  }
  const DrawClip clip(dc, Clip2Data());
  DrawQuartiles(dc);
}

// A bar from the lowest to the highest value of each bin. That of the largest value alone stays within the frame.
void CUPlotX_Uni_Histogram::DrawBins(CDC& dc, const Bars& bars) {
  const double pixel = 1 / dc.GetScale();
  const double bottom = GetY(0);
  const double end = GetX(extents.max[0]);
  for (int bin = bars.first; bin <= bars.last; ++bin) {
    const auto& each = GetBin(bin);
    if (!(each.count > 0)) continue;
    const double left = std::min(GetX(each.dataMin), end - 1);
    const double right = std::max(GetX(each.dataMax), left + 1);
    const double selected = bars.showsSelection ? CountSelected(bin, bin) : 0;
    FillBar(dc, {left, std::min(GetY(each.count * scale), bottom - pixel), right, bottom}, GetY(selected * scale),
            bars);
  }
}

// A bar from edge to edge of each group, in an outline that neighbours share.
void CUPlotX_Uni_Histogram::DrawGroups(CDC& dc, const Bars& bars) {
  const double pixel = 1 / dc.GetScale();
  const auto snap = [pixel](double place) { return std::round(place / pixel) * pixel; };
  const Pen outline{PenStyle::kSolid, 0, ForPaper(kBlack)};
  const int bins = GetHistogram()->GetBinCount();
  for (int first = bars.first; first <= bars.last; first += binsPerBar) {
    const int last = std::min(first + binsPerBar, bins) - 1;
    const double count = CountStations(first, last);
    if (!(count > 0)) continue;
    const double left = snap(GetX(GetBin(first).binMin));
    const double right = snap(GetX(GetBin(last).binMax));
    const double bottom = snap(GetY(0));
    const double top = std::min(snap(GetY(count * scale)), bottom - pixel);
    const double selected = bars.showsSelection ? CountSelected(first, last) : 0;
    FillBar(dc, {left + pixel, top + pixel, right, bottom}, GetY(selected * scale), bars);
    dc.SelectPen(outline);
    dc.MoveTo(left, bottom);
    dc.LineTo(left, top);
    dc.LineTo(right, top);
    dc.LineTo(right, bottom);
  }
}

// Blue over red. As a bar is a pixel high at least, so is its red part: a few stations among many are seen.
void CUPlotX_Uni_Histogram::FillBar(CDC& dc, const DrawRect& bar, double selectedTop, const Bars& bars) {
  if (bar.right <= bar.left || bar.bottom <= bar.top) return;
  if (selectedTop < bar.bottom) selectedTop = std::min(selectedTop, bar.bottom - 1 / dc.GetScale());
  const double middle = std::clamp(selectedTop, bar.top, bar.bottom);
  if (middle > bar.top) dc.FillSolidRect({bar.left, bar.top, bar.right, middle}, bars.blue);
  if (middle < bar.bottom) dc.FillSolidRect({bar.left, middle, bar.right, bar.bottom}, bars.red);
}

// From the bin before the first shown to the one after the last: the line comes in from outside the frame. Points that
// no one could tell from the last one are left out, and so are those of straight runs: stroking is what a histogram's
// repaint costs, and it costs by the point.
void CUPlotX_Uni_Histogram::DrawCurve(CDC& dc, const Bars& bars) {
  std::vector<DrawPoint> points;
  const int last = std::min(bars.last + 1, GetHistogram()->GetBinCount() - 1);
  for (int bin = std::max(bars.first - 1, 0); bin <= last; ++bin) {
    const auto& each = GetBin(bin);
    const DrawPoint point{GetX((each.binMin + each.binMax) * 0.5), GetY(each.cumulative)};
    const bool near = !points.empty() && bin < last && std::fabs(point.x - points.back().x) < kNear &&
                      std::fabs(point.y - points.back().y) < kNear;
    if (!near) points.push_back(point);
  }
  dc.SelectPen({PenStyle::kSolid, 2, ForPaper(kGreen)});
  dc.Polyline(ThinCurve(points, kSleeve / dc.GetScale()));
}

void CUPlotX_Uni_Histogram::DrawQuartiles(CDC& dc) {
  const auto* figures = GetFigures();
  const DrawRect frame = Clip2Data();
  dc.SelectPen({PenStyle::kSolid, 2, ForPaper(kBlack)});
  for (const auto& [height, value] : {std::pair{0.25, figures->lowerQuartile}, {0.75, figures->upperQuartile}}) {
    dc.MoveTo(frame.left, GetY(height));
    dc.LineTo(GetX(value), GetY(height));
    dc.LineTo(GetX(value), frame.bottom);
  }
}

void CUPlotX_Uni_Histogram::RenderHover(CDC& dc) {
  if (GetHistogram() == nullptr || !HasWidth()) return;
  const DrawClip clip(dc, Clip2Data());
  if (glance != hover) DrawMark(dc, glance, 1);
  DrawMark(dc, hover, 2);
}

void CUPlotX_Uni_Histogram::DrawMark(CDC& dc, int bin, double width) {
  const Bars bars = FindBars();
  if (bin < bars.first || bin > bars.last) return;
  const double x = GetX(GetCentre(bin));
  dc.SelectPen({PenStyle::kSolid, width, ForPaper(kRed)});
  dc.MoveTo(x, GetFrame().top);
  dc.LineTo(x, GetFrame().bottom);
}

}  // namespace tallyscope
