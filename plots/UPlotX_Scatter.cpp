// SPDX-License-Identifier: MIT
#include "plots/UPlotX_Scatter.h"

#include <cmath>
#include <memory>
#include <utility>

#include "outside/plot/UPlotX_Container.h"
#include "plots/CancelNote.h"
#include "plots/DeviceAxis.h"
#include "plots/MarkQueue.h"
#include "plots/PolygonThinning.h"
#include "plots/StationWalk.h"
#include "spatial/Stats_PointSearch.h"
#include "statistics/DimIndex.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_RgnPoly.h"
#include "statistics/Stats_RgnRect.h"

namespace tallyscope {

namespace {

constexpr COLORREF kRed = 0x0000ff;
constexpr CSize kPickTolerance{8, 8};
constexpr double kHoverArm = 8;
constexpr double kHoverWidth = 4;
constexpr double kGlanceWidth = 1;
constexpr int kNoStation = -1;
constexpr int kResting = -2;

}  // namespace

bool CUPlotX_Scatter::HasColumns(const Fields& fields) const {
  if (data == nullptr) return false;
  const int axes = data->GetSpatialSize();
  const int values = data->GetValueSize();
  return IsDimInRange(fields.x, axes, values) && IsDimInRange(fields.y, axes, values);
}

int CUPlotX_Scatter::GetStationCount() const {
  return data != nullptr ? data->GetSize() : 0;
}

CStats_PointSearch* CUPlotX_Scatter::PrepareSearch(CProgressSink* progress) {
  Fields fields;
  if (!GetFields(fields)) return nullptr;
  CStats_PointSearch* search = data->GetPointSearch();
  if (search == nullptr) return nullptr;
  search->SetFields(fields.x, fields.y, -3, 2);
  return data->PreparePointSearch(progress) && search->IsPartitioned() ? search : nullptr;
}

CStats_PointSearch* CUPlotX_Scatter::GetPreparedSearch() const {
  Fields fields;
  if (!GetFields(fields)) return nullptr;
  CStats_PointSearch* search = data->GetPointSearch();
  if (search == nullptr || !search->IsPartitioned() || search->GetDimensions() != 2) return nullptr;
  return search->GetFieldX() == fields.x && search->GetFieldY() == fields.y ? search : nullptr;
}

bool CUPlotX_Scatter::Prepare(CProgressSink* progress) {
  if (!CUPlotX_Tallyscope::Prepare(progress)) return false;
  Fields fields;
  if (!GetFields(fields)) {
    looked_ = {};
    emptyReason_ = GetNoPlaneReason();
    return true;
  }
  const Looked now{data, fields, GetStationCount()};
  if (!(looked_ == now)) emptyReason_ = FindEmptyReason(fields);
  looked_ = now;
  CancelNote note(progress);
  PrepareSearch(note.GetSink());
  return !note.IsCancelled();
}

// Drawing.

void CUPlotX_Scatter::RenderStations(CDC& dc) {
  CStats_PointSearch* search = GetPreparedSearch();
  if (search == nullptr) return;
  DrawClip clip(dc, Clip2Data());
  StationWalk walk(*search, Rect2World(dc.GetClientRect().Grown(1)));
  StationStyles styles(*this, GetNulls(), walk.CountCandidates());
  static_assert(StationWalk::kBlock <= StationStyles::kBlock);
  MarkQueue marks(dc);
  const DeviceAxis toX(*this, 0);
  const DeviceAxis toY(*this, 1);
  double x[StationWalk::kBlock];
  double y[StationWalk::kBlock];
  while (walk.Next()) {
    styles.Read(walk.Stations(), walk.GetCount());
    toX.Convert(walk.X(), walk.GetCount(), x);
    toY.Convert(walk.Y(), walk.GetCount(), y);
    for (int i = 0; i < walk.GetCount(); ++i) {
      const auto style = styles.Get(i);
      if (!style.shown) continue;
      const PlotMark mark{static_cast<float>(x[i]), static_cast<float>(y[i]), style.colour, style.half};
      if (style.selected) {
        marks.PutSelected(mark);
      } else {
        marks.Put(mark);
      }
    }
  }
  marks.Flush();
}

void CUPlotX_Scatter::RenderHover(CDC& dc) {
  if (!IsReady()) return;
  DrawClip clip(dc, Clip2Data());
  double x = hoverX;
  double y = hoverY;
  if (hover > kResting) {
    GetPlace(hover, x, y);
    RenderPlus(dc, x, y, kHoverWidth);
  } else if (GetPlace(glance, x, y)) {
    RenderPlus(dc, x, y, kGlanceWidth);
  }
}

void CUPlotX_Scatter::RenderPlus(CDC& dc, double x, double y, double width) {
  const XVector at = World2Device(x, y);
  dc.SelectPen({PenStyle::kSolid, width, ForPaper(kRed), PenEnds::kSquare});
  dc.MoveTo(at[0] - kHoverArm, at[1]);
  dc.LineTo(at[0] + kHoverArm, at[1]);
  dc.MoveTo(at[0], at[1] - kHoverArm);
  dc.LineTo(at[0], at[1] + kHoverArm);
}

// Picking.

int CUPlotX_Scatter::GetClosestStation(const XVector& world, CSize tolerance) {
  CStats_PointSearch* search = PrepareSearch(nullptr);
  if (search == nullptr) return kNoStation;
  const XVector at = World2Device(world[0], world[1]);
  const DeviceAxis toX(*this, 0);
  const DeviceAxis toY(*this, 1);
  int closest = kNoStation;
  double best = 1e20;  // squared pixels
  StationWalk walk(*search, {Device2World(at[0] - tolerance.cx, at[1] + tolerance.cy),
                             Device2World(at[0] + tolerance.cx, at[1] - tolerance.cy), 1});
  double x[StationWalk::kBlock];
  double y[StationWalk::kBlock];
  while (walk.Next()) {
    toX.Convert(walk.X(), walk.GetCount(), x);
    toY.Convert(walk.Y(), walk.GetCount(), y);
    for (int i = 0; i < walk.GetCount(); ++i) {
      const double dx = x[i] - at[0];
      const double dy = y[i] - at[1];
      const double distance = dx * dx + dy * dy;
      if (!(distance < best)) continue;
      best = distance;
      closest = walk.Stations()[i];
    }
  }
  return closest;
}

int CUPlotX_Scatter::PickAt(CPoint point) {
  return GetClosestStation(Device2World(point.x, point.y), kPickTolerance);
}

void CUPlotX_Scatter::Pick(CPoint point) {
  const XVector world = Device2World(point.x, point.y);
  hoverX = world[0];
  hoverY = world[1];
  hover = GetClosestStation(world, kPickTolerance);
  if (SnapsToStation()) GetPlace(hover, hoverX, hoverY);
  TellHovered();
}

bool CUPlotX_Scatter::Select(CPoint& point, bool) {
  Fields fields;
  if (!GetFields(fields)) return false;
  Pick(point);
  return true;
}

bool CUPlotX_Scatter::SelectMove(CPoint& point, bool include) {
  return hover > kResting && Select(point, include);
}

bool CUPlotX_Scatter::CancelSelect(CPoint&, bool) {
  hover = kResting;
  TellHovered();
  return true;
}

int CUPlotX_Scatter::GetHoverCount() const {
  Fields fields;
  return GetFields(fields) ? GetStationCount() : 0;
}

void CUPlotX_Scatter::SetHover(int index) {
  hover = index;
  GetPlace(index, hoverX, hoverY);
  TellHovered();
}

bool CUPlotX_Scatter::GetPlace(int station, double& x, double& y) {
  Fields fields;
  if (!GetFields(fields) || station < 0 || station >= GetStationCount()) return false;
  if (!data->IsValueValid(fields.x, station) || !data->IsValueValid(fields.y, station)) return false;
  x = data->GetValue(fields.x, station);
  y = data->GetValue(fields.y, station);
  return true;
}

// Selection.

bool CUPlotX_Scatter::AddRegion(std::unique_ptr<CStats_Rgn> region, bool include) {
  Fields fields;
  if (spatial == nullptr || !GetFields(fields)) return false;
  region->include = include;
  region->SetDims(fields.x, fields.y, -3, 2);
  AddSelRegion(std::move(region));
  return true;
}

bool CUPlotX_Scatter::Select(CRect& rect, bool include) {
  auto region = std::make_unique<CStats_RgnRect>();
  region->box = Rect2World(rect);
  return AddRegion(std::move(region), include);
}

bool CUPlotX_Scatter::Select(bool include) {
  const auto* container = GetContainer();
  if (container == nullptr || container->GetPoints().empty()) return false;
  auto region = std::make_unique<CStats_RgnPoly>();
  for (const CPoint corner : ThinPolygon(container->GetPoints())) {
    region->points.push_back(Data2World(Device2Data(Client2Device(corner))));
  }
  return AddRegion(std::move(region), include);
}

}  // namespace tallyscope
