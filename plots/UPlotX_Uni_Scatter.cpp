// SPDX-License-Identifier: MIT
#include "plots/UPlotX_Uni_Scatter.h"

#include <algorithm>
#include <cmath>

#include "platform/core/NumberText.h"
#include "platform/core/StringTable.h"
#include "plots/ClampIndex.h"
#include "plots/TraceDrawer.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_RgnIndexRange.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

constexpr COLORREF kRed = 0xff;
constexpr double kStationsPerColumn = 1;  // columns of pixels are drawn from here on
constexpr int kShownDigits = 15;

}  // namespace

CUPlotX_Uni_Scatter::CUPlotX_Uni_Scatter() {
  titleX = LoadString(kStringStationIndex);
  titleY = LoadString(kStringKeyField);
  padding = 0.02;
  hover = -1;
  allowDialogX = false;
}

bool CUPlotX_Uni_Scatter::HasItem() const {
  return IsReady() && calculator->IsItem(0);
}

CStats_Data* CUPlotX_Uni_Scatter::GetItem() const {
  return calculator->GetItemData(0);
}

int CUPlotX_Uni_Scatter::GetDim() const {
  return calculator->GetItemDim(0);
}

int CUPlotX_Uni_Scatter::GetStationCount() const {
  return HasItem() ? GetItem()->GetSize() : 0;
}

CStats_Univariate* CUPlotX_Uni_Scatter::GetFigures() const {
  return HasItem() ? dynamic_cast<CStats_Univariate*>(calculator) : nullptr;
}

void CUPlotX_Uni_Scatter::TakeExtents() {
  auto* figures = GetFigures();
  if (figures == nullptr) return;
  titleY = GetItem()->GetValueName(GetDim());
  double low = figures->minimum;
  double high = figures->maximum;
  if (!std::isfinite(low) || !std::isfinite(high)) {  // infinities have no place: the range of the others
    reducer_.Connect(GetItem(), GetDim());
    const auto all = reducer_.Reduce(0, figures->total);
    low = all.IsEmpty() ? 0 : all.lowest;
    high = all.IsEmpty() ? 0 : all.highest;
  }
  extents.min = {1, low, 0};
  extents.max = {static_cast<double>(figures->total), high, 1};
}

CString CUPlotX_Uni_Scatter::GetEmptyReason() {
  const auto* figures = GetFigures();
  if (figures == nullptr || figures->valid > 0) return {};
  if (figures->total == 0) return "The table has no stations";
  return "No valid values in " + GetItem()->GetValueName(GetDim());
}

// Drawing.

bool CUPlotX_Uni_Scatter::IsColoured() const {
  return GetColourModulation().IsOn();
}

bool CUPlotX_Uni_Scatter::Prepare(CProgressSink* progress) {
  if (!CUPlotX_Tallyscope::Prepare(progress)) return false;
  if (!HasItem()) return true;
  reducer_.Connect(GetItem(), GetDim());
  if (!reducer_.Fill(progress)) return false;
  if (!IsColoured()) return true;
  means_.Connect(GetItem(), GetDim(), colourDim);
  return means_.Fill(progress);
}

// The stations that reach into the frame or, where that is wider, the client area: up to the next one beyond it, whose
// half of the line comes in.
void CUPlotX_Uni_Scatter::FindShown(int& begin, int& end) const {
  const Box visible = GetVisible();
  const DrawRect client = Clip2Client();
  const double left = std::min(visible.min[0], Device2World(client.left, client.bottom)[0]);
  const double right = std::max(visible.max[0], Device2World(client.right, client.top)[0]);
  const int count = GetStationCount();
  begin = ClampIndex(std::floor(left) - 1, 0, count);
  end = ClampIndex(std::ceil(right), begin, count);
}

void CUPlotX_Uni_Scatter::RenderLayer(CDC& dc) {
  RenderTrace(dc, kColumnsWhereDense);
}

void CUPlotX_Uni_Scatter::RenderPlain(CDC& dc) {
  RenderTrace(dc, kStations);
}

void CUPlotX_Uni_Scatter::RenderTrace(CDC& dc, Way way) {
  if (!HasItem() || !reducer_.IsConnected(GetItem(), GetDim())) return;
  const DrawClip clip(dc, Clip2Data());
  int begin = 0;
  int end = 0;
  FindShown(begin, end);
  end = std::min(end, reducer_.GetSize());
  if (end <= begin) return;

  TraceDrawer::Look look;
  look.plain = ForPaper(0);
  look.selected = ForPaper(kRed);
  look.selection = GetShownSelection();
  std::vector<COLORREF> table;
  if (IsColoured() && means_.IsConnected(GetItem(), GetDim(), colourDim)) {
    for (const COLORREF colour : colourTable) table.push_back(ForPaper(colour));
    look.modulation = ColourModulation(colourLow, colourHigh, table);
    look.selected = look.plain;  // red is one of the table's colours
  }

  TraceDrawer drawer(*this, dc, reducer_, means_, look);
  const bool dense = end - begin > kStationsPerColumn * drawer.CountColumns(begin, end);
  if (way == kColumnsWhereDense && dense) {
    drawer.DrawColumns(begin, end);
  } else {
    drawer.DrawStations(begin, end);
  }
}

void CUPlotX_Uni_Scatter::RenderHover(CDC& dc) {
  if (!HasItem()) return;
  const DrawClip clip(dc, Clip2Data());
  if (glance != hover) DrawMark(dc, glance, 1);
  DrawMark(dc, hover, 2);
}

void CUPlotX_Uni_Scatter::DrawMark(CDC& dc, int station, double width) {
  int begin = 0;
  int end = 0;
  FindShown(begin, end);
  if (station < begin || station >= end) return;
  const double x = World2Device(station + 1, GetVisible().min[1])[0];
  dc.SelectPen({PenStyle::kSolid, width, ForPaper(kRed)});
  dc.MoveTo(x, GetFrame().top);
  dc.LineTo(x, GetFrame().bottom);
}

// Gestures.

int CUPlotX_Uni_Scatter::GetStationAt(CPoint point) const {
  const double number = std::round(Data2World(Device2Data(Client2Device(point)))[0]);
  const int count = GetStationCount();
  return number >= 1 && number <= count ? static_cast<int>(number) - 1 : -1;
}

bool CUPlotX_Uni_Scatter::PutHover(CPoint point) {
  const int station = GetStationAt(point);
  if (station < 0) return false;
  hover = station;
  TellHovered();
  return true;
}

bool CUPlotX_Uni_Scatter::Select(CPoint& point, bool) {
  return PutHover(point);
}

bool CUPlotX_Uni_Scatter::SelectMove(CPoint& point, bool) {
  return hover >= 0 && PutHover(point);
}

bool CUPlotX_Uni_Scatter::CancelSelect(CPoint&, bool) {
  hover = -1;
  TellHovered();
  return true;
}

bool CUPlotX_Uni_Scatter::Select(CRect& rect, bool include) {
  if (!HasItem()) return false;
  auto region = std::make_unique<CStats_RgnIndexRange>();
  region->include = include;
  region->box = Rect2World(rect);
  region->box.min[0] -= 1;  // stations are counted from 0 there
  region->box.max[0] -= 1;
  region->SetDims(spatial->GetSpatialDimX(), spatial->GetSpatialDimY(), spatial->GetSpatialDimZ(),
                  spatial->GetSpatialDimCount());
  AddSelRegion(std::move(region));
  return true;
}

int CUPlotX_Uni_Scatter::PickAt(CPoint point) {
  return GetHitArea(point) == eData ? GetStationAt(point) : -1;
}

bool CUPlotX_Uni_Scatter::GetPlace(int index, double& x, double& y) {
  if (index < 0 || index >= GetStationCount()) return false;
  double value = 0;
  if (!GetItem()->GetValue(GetDim(), index, value) || !std::isfinite(value)) return false;
  x = index + 1;
  y = value;
  return true;
}

CString CUPlotX_Uni_Scatter::Describe(int index) {
  if (index < 0 || index >= GetStationCount()) return {};
  return DescribeStation(index, {GetDim()});
}

CString CUPlotX_Uni_Scatter::GetDataText() {
  if (!HasItem()) return {};
  CString text = titleX + "\t" + titleY + "\n";
  constexpr int kBlock = 512;
  double values[kBlock];
  unsigned char valid[kBlock];
  const int count = GetStationCount();
  for (int first = 0; first < count; first += kBlock) {
    const int block = std::min(kBlock, count - first);
    GetItem()->ReadValues(GetDim(), first, block, values, valid);
    for (int i = 0; i < block; ++i) {
      text += std::to_string(first + i + 1) + "\t";
      if (valid[i] != 0) text += FormatLocale(values[i], kShownDigits);
      text += "\n";
    }
  }
  return text;
}

}  // namespace tallyscope
