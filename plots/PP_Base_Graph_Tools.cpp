// SPDX-License-Identifier: MIT
// The tools of a graph page.
#include <QComboBox>

#include "plots/GraphControls.h"
#include "plots/PP_Base_Graph.h"
#include "plots/UPlotX_Tallyscope.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_RgnInvert.h"
#include "statistics/Stats_RgnSelAll.h"
#include "workbench/Dlg_Tallyscope.h"

namespace tallyscope {

using Container = CUPlotX_Container;
using Page = CPP_Base_Graph;

namespace {

// The tools of which one is on at a time.
constexpr bool Page::*kExclusive[] = {&Page::zoomIn, &Page::zoomOut,    &Page::pan,
                                      &Page::select, &Page::selectRect, &Page::selectPoly};

template <class Region>
std::unique_ptr<CStats_Rgn> MakeWhole(CStats_Spatial& spatial) {
  auto region = std::make_unique<Region>();
  region->SetDims(spatial.GetSpatialDimX(), spatial.GetSpatialDimY(), spatial.GetSpatialDimZ(),
                  spatial.GetSpatialDimCount());
  return region;
}

}  // namespace

void CPP_Base_Graph::UseNoOtherTool(bool CPP_Base_Graph::*tool) {
  for (const auto each : kExclusive) {
    if (each != tool) this->*each = false;
  }
}

void CPP_Base_Graph::SetZoomH(int on, bool) {
  zoomH = on != 0;
  container_.SetZoomAxes(zoomH ? 1 : 3);
}

// A tool of the view that goes off leaves the pointer on when the user did it, and nothing while settings are read.
void CPP_Base_Graph::SetViewTool(bool CPP_Base_Graph::*tool, int mode, bool on, bool force) {
  this->*tool = on;
  if (!on && !force) return;
  if (!on) select = true;
  const bool pointer = select;
  UseNoOtherTool(tool);
  select = on ? false : pointer;
  container_.SetCursorMode(on ? mode : Container::ePointer);
}

void CPP_Base_Graph::SetZoomIn(int on, bool force) {
  SetViewTool(&Page::zoomIn, Container::eZoomIn, on != 0, force);
}

void CPP_Base_Graph::SetZoomOut(int on, bool force) {
  SetViewTool(&Page::zoomOut, Container::eZoomOut, on != 0, force);
}

void CPP_Base_Graph::SetPan(int on, bool force) {
  SetViewTool(&Page::pan, Container::ePan, on != 0, force);
}

void CPP_Base_Graph::SetZoomFit(bool) {
  container_.ZoomFit();
}

void CPP_Base_Graph::SetSelect(int on, bool) {
  select = on != 0;
  if (!select) return;
  UseNoOtherTool(&Page::select);
  container_.SetCursorMode(Container::ePointer);
}

void CPP_Base_Graph::SetSelectRect(int on, bool) {
  selectRect = on != 0;
  if (!selectRect) return;
  UseNoOtherTool(&Page::selectRect);
  container_.SetCursorMode(selectExclude ? Container::eRectangleExclude : Container::eRectangle);
}

void CPP_Base_Graph::SetSelectPoly(int on, bool) {
  selectPoly = on != 0;
  if (!selectPoly) return;
  UseNoOtherTool(&Page::selectPoly);
  container_.SetCursorMode(selectExclude ? Container::ePolygonExclude : Container::ePolygon);
}

void CPP_Base_Graph::SetSelectExclude(int on, bool) {
  selectExclude = on != 0;
  if (selectRect) container_.SetCursorMode(selectExclude ? Container::eRectangleExclude : Container::eRectangle);
  if (selectPoly) container_.SetCursorMode(selectExclude ? Container::ePolygonExclude : Container::ePolygon);
}

// A tool that is pressed again goes off; the pointer takes its place, since one is always on.
void CPP_Base_Graph::UseTool(void (CPP_Base_Graph::*set)(int, bool), bool CPP_Base_Graph::*state) {
  UpdateData(true);
  (this->*set)(this->*state ? 1 : 0, true);
  bool any = false;
  for (const auto each : kExclusive) any = any || this->*each;
  if (!any) SetSelect(1, true);
  UpdateData(false);
  SetDataChanged(1, 1);
}

void CPP_Base_Graph::OnExclude() {
  UpdateData(true);
  SetSelectExclude(selectExclude ? 1 : 0, true);
  SetDataChanged(1, 1);
}

// The selection.

void CPP_Base_Graph::OnSelectAll() {
  auto* spatial = GetPlot()->spatial;
  if (spatial == nullptr) return;
  GetPlot()->AddSelRegion(MakeWhole<CStats_RgnSelAll>(*spatial));
}

void CPP_Base_Graph::OnInvertSelection() {
  auto* spatial = GetPlot()->spatial;
  if (spatial == nullptr) return;
  GetPlot()->AddSelRegion(MakeWhole<CStats_RgnInvert>(*spatial));
}

void CPP_Base_Graph::OnRestoreLastSelection() {
  GetPlot()->RestoreLastSelRegion();
}

void CPP_Base_Graph::OnClearLastSelection() {
  GetPlot()->ClearLastSelRegion();
}

void CPP_Base_Graph::OnClearSelection() {
  GetPlot()->ClearAllSelRegion();
}

// Modulation.

void CPP_Base_Graph::OnSelchangeFieldCol() {
  const int before = colourField;
  UpdateData(true);
  if (colourField == before) return;
  GetPlot()->SetColourDim(colourField);
  SetDataChanged(1, 1);
  container_.Invalidate();
  ShowLegend();
}

void CPP_Base_Graph::OnSelchangeFieldSize() {
  const int before = sizeField;
  UpdateData(true);
  if (sizeField == before) return;
  GetPlot()->SetSizeDim(sizeField);
  SetDataChanged(1, 1);
  container_.Invalidate();
  ShowLegend();
}

}  // namespace tallyscope
