// SPDX-License-Identifier: MIT
#include "plots/UPlotX_Bi_Scatter.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "outside/plot/Span.h"
#include "platform/core/StringTable.h"
#include "plots/CancelNote.h"
#include "plots/LegendEntry.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

constexpr int kBasicFlag = 1;
constexpr int kCurveFlags = 2 | 8;  // regression, conditional expectation
constexpr int kBinnedFlag = 8;
constexpr COLORREF kBlue = 0xff0000;
constexpr COLORREF kGreen = 0x00ff00;
constexpr COLORREF kMagenta = 0xff00ff;
constexpr double kCurveWidth = 2;
constexpr int kRegressionSteps = 100;
constexpr double kMarkerRoom = 8;  // markers this far off the frame aren't drawn
constexpr double kLegendMiddle = 16;

// What a curve's points are marked with, so that curves differ in more than their colours.
enum class Marker { kNone, kSquare, kDiamond };

struct CurveLook {
  COLORREF colour;
  Marker marker;
  int name;
};
constexpr CurveLook kRegression{kBlue, Marker::kNone, kStringLinearRegression};
constexpr CurveLook kExpectation{kGreen, Marker::kSquare, kStringConditionalExpectation};
constexpr CurveLook kQuantiles{kMagenta, Marker::kDiamond, kStringQuantileCurve};

void DrawMarker(CDC& dc, Marker marker, double x, double y, COLORREF colour) {
  if (marker == Marker::kSquare) dc.FillSolidRect({x - 2.5, y - 2.5, x + 2.5, y + 2.5}, colour);
  if (marker != Marker::kDiamond) return;
  constexpr double kArm = 4;
  const DrawPoint corners[] = {{x - kArm, y}, {x, y - kArm}, {x + kArm, y}, {x, y + kArm}};
  dc.SelectPen({PenStyle::kNone});
  dc.SelectSolidBrush(colour);
  dc.Polygon(corners);
}

// Parts of the curve between places that aren't numbers.
void DrawCurve(CDC& dc, std::span<const DrawPoint> points) {
  const auto isPlace = [](const DrawPoint& point) { return std::isfinite(point.x) && std::isfinite(point.y); };
  for (auto from = points.begin(); from != points.end();) {
    const auto to = std::find_if_not(from, points.end(), isPlace);
    if (to - from > 1) dc.Polyline({from, to});
    from = std::find_if(to, points.end(), isPlace);
  }
}

}  // namespace

CUPlotX_Bi_Scatter::CUPlotX_Bi_Scatter() {
  padding = 0.02;
  titleX = LoadString(kStringU);
  titleY = LoadString(kStringV);
  hasLegend = true;
}

CStats_Bivariate* CUPlotX_Bi_Scatter::GetPair() const {
  auto* pair = dynamic_cast<CStats_Bivariate*>(calculator);
  return pair != nullptr && pair->IsItem(0) && pair->IsItem(1) ? pair : nullptr;
}

bool CUPlotX_Bi_Scatter::GetFields(Fields& fields) const {
  auto* pair = GetPair();
  if (pair == nullptr) return false;
  fields = {pair->GetItemDim(0), pair->GetItemDim(1)};
  return HasColumns(fields);
}

int CUPlotX_Bi_Scatter::GetStationCount() const {
  auto* pair = GetPair();
  return pair != nullptr ? std::min(pair->GetItemData(0)->GetSize(), pair->GetItemData(1)->GetSize()) : 0;
}

void CUPlotX_Bi_Scatter::TakeExtents() {
  auto* pair = GetPair();
  if (pair == nullptr) return;
  pair->Calculate(kBasicFlag, nullptr);
  titleX = pair->GetItemData(0)->GetValueName(pair->GetItemDim(0));
  titleY = pair->GetItemData(1)->GetValueName(pair->GetItemDim(1));
  extents = {{pair->xMinimum, pair->yMinimum, 0}, {pair->xMaximum, pair->yMaximum, 1}, 1};
}

bool CUPlotX_Bi_Scatter::Prepare(CProgressSink* progress) {
  if (!CUPlotX_Scatter::Prepare(progress)) return false;
  auto* pair = GetPair();
  if (pair == nullptr) return true;
  CancelNote note(progress);
  pair->Calculate(kCurveFlags, note.GetSink());
  if (!note.IsCancelled()) PrepareQuantiles(*pair, 0, pair->xLink, xQuantiles_, note);
  if (!note.IsCancelled()) PrepareQuantiles(*pair, 1, pair->yLink, yQuantiles_, note);
  return !note.IsCancelled();
}

// By the statistics that the calculator shares if it has any; else by statistics of their own, once.
void CUPlotX_Bi_Scatter::PrepareQuantiles(CStats_Bivariate& pair, int item, CStats_Univariate* shared,
                                          Quantiles& quantiles, CancelNote& note) {
  CStats_Data* data = pair.GetItemData(item);
  const int dim = pair.GetItemDim(item);
  if (shared == nullptr && quantiles.data == data && quantiles.dim == dim) return;
  CStats_Univariate own;
  if (shared == nullptr) {
    own.Add(data, dim);
    shared = &own;
  }
  shared->Calculate(kBinnedFlag, note.GetSink());
  if (note.IsCancelled()) return;
  quantiles = {data, dim, {}};
  for (int percent = 5; percent <= 95; percent += 5) {
    quantiles.values.push_back(shared->binnedHistogram.GetPercentile(percent / 100.0));
  }
}

void CUPlotX_Bi_Scatter::RenderLayer(CDC& dc) {
  if (!IsReady()) return;
  RenderStations(dc);
  RenderCurves(dc);
  RenderLegend(dc);
}

// Curves.

// Evenly spaced along the axis as it is drawn, so that the line is smooth on a logarithmic one as well.
std::vector<DrawPoint> CUPlotX_Bi_Scatter::MakeRegression(const CStats_Bivariate& pair) const {
  const Box& window = GetWindowExtent();
  const std::size_t along = pair.vertical ? 1 : 0;
  const double half = HalfSpan(window.min[along], window.max[along]);
  std::vector<DrawPoint> points;
  for (int i = 0; i <= kRegressionSteps; ++i) {
    const double at = maps[along].ToWorld((window.min[along] / 2 + i * half / kRegressionSteps) * 2);
    const XVector place = pair.vertical ? World2Device(pair.displayLine[1], at)
                                        : World2Device(at, pair.displayLine[0] * at + pair.displayLine[1]);
    points.push_back({place[0], place[1]});
  }
  return points;
}

std::vector<DrawPoint> CUPlotX_Bi_Scatter::MakeExpectation(const CStats_Bivariate& pair) const {
  std::vector<DrawPoint> points;
  for (std::size_t i = 0; i < pair.expectationX.size(); ++i) {
    const XVector place = World2Device(pair.expectationX[i], pair.expectationYGivenX[i]);
    points.push_back({place[0], place[1]});
  }
  return points;
}

std::vector<DrawPoint> CUPlotX_Bi_Scatter::MakeQuantiles() const {
  std::vector<DrawPoint> points;
  const std::size_t count = std::min(xQuantiles_.values.size(), yQuantiles_.values.size());
  for (std::size_t i = 0; i < count; ++i) {
    const XVector place = World2Device(xQuantiles_.values[i], yQuantiles_.values[i]);
    points.push_back({place[0], place[1]});
  }
  return points;
}

void CUPlotX_Bi_Scatter::RenderCurves(CDC& dc) {
  const auto* pair = GetPair();
  if (pair == nullptr || pair->valid == 0) return;
  DrawClip clip(dc, Clip2Data());
  const DrawRect near = ToDrawRect(GetFrame().Grown(static_cast<int>(kMarkerRoom)));
  const auto draw = [&](const CurveLook& look, const std::vector<DrawPoint>& points) {
    const COLORREF colour = ForPaper(look.colour);
    dc.SelectPen({PenStyle::kSolid, kCurveWidth, colour});
    DrawCurve(dc, points);
    for (const auto& [x, y] : points) {
      if (x > near.left && x < near.right && y > near.top && y < near.bottom) DrawMarker(dc, look.marker, x, y, colour);
    }
  };
  draw(kRegression, MakeRegression(*pair));
  draw(kExpectation, MakeExpectation(*pair));
  draw(kQuantiles, MakeQuantiles());
}

void CUPlotX_Bi_Scatter::RenderLegend(CDC& dc) {
  DrawClip clip(dc, Clip2Client());
  const CRect& strip = GetLegend();
  int entry = 0;
  for (const CurveLook& look : {kRegression, kExpectation, kQuantiles}) {
    const COLORREF colour = ForPaper(look.colour);
    const double left = strip.left + entry++ * strip.Width() / 3.0;
    DrawLegendEntry(dc, strip, left, {PenStyle::kSolid, kCurveWidth, colour}, LoadString(look.name), GetTextColour());
    DrawMarker(dc, look.marker, left + kLegendMiddle, (strip.top + strip.bottom) / 2.0, colour);
  }
}

}  // namespace tallyscope
