// SPDX-License-Identifier: MIT
// The tools of a graph page.
#include <QComboBox>
#include <QToolButton>

#include "platform/ui/DataExchange.h"
#include "plots/UPlotX_Tallyscope.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_RgnInvert.h"
#include "statistics/Stats_RgnSelAll.h"
#include "workbench/Dlg_Tallyscope.h"
#include "workbench/GraphControls.h"
#include "workbench/PP_Base_Graph.h"

namespace tallyscope {

namespace {

constexpr struct {
  int id;
  PlotTool::Kind kind;
} kToolButtons[] = {{kGraphZoomIn, PlotTool::kZoomIn},
                    {kGraphZoomOut, PlotTool::kZoomOut},
                    {kGraphPan, PlotTool::kPan},
                    {kGraphSelect, PlotTool::kPointer},
                    {kGraphSelectRect, PlotTool::kRectangle},
                    {kGraphSelectPoly, PlotTool::kPolygon}};

template <class Region>
std::unique_ptr<CStats_Rgn> MakeWhole(CStats_Spatial& spatial) {
  auto region = std::make_unique<Region>();
  region->SetDims(spatial.GetSpatialDimX(), spatial.GetSpatialDimY(), spatial.GetSpatialDimZ(),
                  spatial.GetSpatialDimCount());
  return region;
}

}  // namespace

// The buttons show what the container has.
void CPP_Base_Graph::ShowTools(CDataExchange* exchange) {
  const PlotTool& tool = container_.GetTool();
  const auto show = [&](int id, bool on) { DDX_Check(exchange, id, on); };
  show(kGraphZoomH, container_.GetZoomAxes() == 1);
  for (const auto& [id, kind] : kToolButtons) show(id, tool.kind == kind);
  show(kGraphExclude, tool.exclude);
}

void CPP_Base_Graph::PutTool(PlotTool::Kind kind, bool on) {
  container_.SetTool(container_.GetTool().WithButton(kind, on));
}

void CPP_Base_Graph::SetZoomH(int on, bool) {
  container_.SetZoomAxes(on != 0 ? 1 : 3);
}

void CPP_Base_Graph::SetZoomIn(int on, bool) {
  PutTool(PlotTool::kZoomIn, on != 0);
}

void CPP_Base_Graph::SetZoomOut(int on, bool) {
  PutTool(PlotTool::kZoomOut, on != 0);
}

void CPP_Base_Graph::SetPan(int on, bool) {
  PutTool(PlotTool::kPan, on != 0);
}

void CPP_Base_Graph::SetZoomFit(bool) {
  container_.ZoomFit();
}

void CPP_Base_Graph::SetSelect(int on, bool) {
  PutTool(PlotTool::kPointer, on != 0);
}

void CPP_Base_Graph::SetSelectRect(int on, bool) {
  PutTool(PlotTool::kRectangle, on != 0);
}

void CPP_Base_Graph::SetSelectPoly(int on, bool) {
  PutTool(PlotTool::kPolygon, on != 0);
}

void CPP_Base_Graph::SetSelectExclude(int on, bool) {
  PlotTool tool = container_.GetTool();
  tool.exclude = on != 0;
  container_.SetTool(tool);
}

// A tool that is pressed again goes off; the pointer takes its place, since one is always on.
void CPP_Base_Graph::UseTool(int id, void (CPP_Base_Graph::*set)(int, bool)) {
  UpdateData(true);
  (this->*set)(GetControl<QToolButton>(id)->isChecked() ? 1 : 0, true);
  UpdateData(false);
  SetDataChanged(1, 1);
}

void CPP_Base_Graph::OnExclude() {
  UseTool(kGraphExclude, &CPP_Base_Graph::SetSelectExclude);
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
