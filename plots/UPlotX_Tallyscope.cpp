// SPDX-License-Identifier: MIT
#include "plots/UPlotX_Tallyscope.h"

#include <algorithm>
#include <iterator>

#include "outside/colour/ColourTables.h"
#include "outside/plot/UPlotX_Container.h"
#include "platform/ui/WinApp.h"
#include "plots/CancelNote.h"
#include "plots/ModulationLegend.h"
#include "plots/PlotSettings.h"
#include "plots/StationText.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_RgnIndexRange.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

CUPlotX_Tallyscope::CUPlotX_Tallyscope() : colourTable(MakeBlueToRed()) {}

// The selection.

void CUPlotX_Tallyscope::AddSelRegion(std::unique_ptr<CStats_Rgn> region) {
  if (spatial == nullptr) return;
  spatial->AddSelRegion(std::move(region));
  TellSelectionChanged();
}

void CUPlotX_Tallyscope::RestoreLastSelRegion() {
  if (spatial == nullptr) return;
  spatial->RestoreLastSelRegion();
  TellSelectionChanged();
}

void CUPlotX_Tallyscope::ClearLastSelRegion() {
  if (spatial == nullptr) return;
  spatial->ClearLastSelRegion();
  TellSelectionChanged();
}

void CUPlotX_Tallyscope::ClearAllSelRegion() {
  if (spatial == nullptr) return;
  spatial->ClearAllSelRegion();
  TellSelectionChanged();
}

void CUPlotX_Tallyscope::TellSelectionChanged() {
  TakeSelection();
  if (GetContainer() != nullptr) GetContainer()->TellSelectionMade();
}

const bvector* CUPlotX_Tallyscope::GetShownSelection() const {
  if (spatial == nullptr || data == nullptr || spatial->bitmaps.empty()) return nullptr;
  const auto& bits = spatial->bitmaps.front();
  return bits.GetSize() == data->GetSize() ? &bits : nullptr;
}

std::unique_ptr<CStats_Rgn> CUPlotX_Tallyscope::MakeRegionOf(int index) {
  if (data == nullptr || index < 0 || index >= data->GetSize()) return nullptr;
  auto region = std::make_unique<CStats_RgnIndexRange>();
  region->box.min[0] = region->box.max[0] = index;
  const auto* selection = GetShownSelection();
  region->include = selection == nullptr || !selection->Get(index);
  return region;
}

// Modulation.

int CUPlotX_Tallyscope::DimFromModulation(int index) const {
  if (data == nullptr || index < 1) return kNoDim;
  const int axes = data->GetSpatialSize();
  if (index <= axes) return -index;
  const int field = index - axes - 1;
  return field < data->GetValueSize() ? field : kNoDim;
}

void CUPlotX_Tallyscope::SetColourDim(int index) {
  colourDim = DimFromModulation(index);
  colourLow = 0;
  colourHigh = -1;
  colourRanged_ = {};
}

void CUPlotX_Tallyscope::SetSizeDim(int index) {
  sizeDim = DimFromModulation(index);
  sizeLow = 0;
  sizeHigh = -1;
  sizeRanged_ = {};
}

bool CUPlotX_Tallyscope::Prepare(CProgressSink* progress) {
  return PrepareRange(colourDim, colourLow, colourHigh, colourRanged_, progress) &&
         PrepareRange(sizeDim, sizeLow, sizeHigh, sizeRanged_, progress);
}

bool CUPlotX_Tallyscope::PrepareRange(int dim, double& low, double& high, Ranged& ranged, CProgressSink* progress) {
  const Ranged now{data, dim};
  if (dim == kNoDim || data == nullptr || high >= low || ranged == now) return true;
  CStats_Univariate figures;
  figures.Add(data, dim);
  CancelNote note(progress);
  figures.Calculate(1, note.GetSink());
  if (note.IsCancelled()) return false;
  ranged = now;
  low = figures.minimum;
  high = figures.maximum;
  return true;
}

ColourModulation CUPlotX_Tallyscope::GetColourModulation() const {
  if (colourDim == kNoDim) return {};
  return {colourLow, colourHigh, colourTable};
}

SizeModulation CUPlotX_Tallyscope::GetSizeModulation() const {
  if (sizeDim == kNoDim) return {};
  return {sizeLow, sizeHigh};
}

int CUPlotX_Tallyscope::GetSideRoom() {
  return GetLegendRoom(MakeModulationLegend(*this));
}

void CUPlotX_Tallyscope::RenderSide(CDC& dc) {
  const auto& frame = GetFrame();
  DrawUprightLegend(dc, MakeModulationLegend(*this), {frame.right, frame.top, dc.GetClientRect().right, frame.bottom},
                    *this);
}

// Settings.

void CUPlotX_Tallyscope::Write2Registry(const CString& prefix) {
  PlotView{axisRange, GetWindowExtent(), {maps[0], maps[1], maps[2]}}.Write(GetProfile(), prefix);
}

void CUPlotX_Tallyscope::ReadFromRegistry(const CString& prefix) {
  PlotView view{axisRange, GetWindowExtent(), {maps[0], maps[1], maps[2]}};
  view.Read(GetProfile(), prefix);
  axisRange = view.axisRange;
  PutWindowExtent(view.window);
  std::copy(std::begin(view.maps), std::end(view.maps), std::begin(maps));
}

// For subclasses.

CString CUPlotX_Tallyscope::DescribeStation(int station, std::vector<int> dims) {
  if (data == nullptr || station < 0 || station >= data->GetSize()) return {};
  dims.push_back(colourDim);
  dims.push_back(sizeDim);
  return tallyscope::DescribeStation(*data, station, dims);
}

void CUPlotX_Tallyscope::SetHover(int index) {
  hover = index;
  TellHovered();
}

void CUPlotX_Tallyscope::TellHovered() {
  if (GetContainer() != nullptr) GetContainer()->TellHovered(hover);
}

COLORREF CUPlotX_Tallyscope::ForPaper(COLORREF colour) const {
  return GetContainer() != nullptr ? GetContainer()->colours.ForPaper(colour) : colour;
}

COLORREF CUPlotX_Tallyscope::GetTextColour() const {
  return GetContainer() != nullptr ? GetContainer()->colours.text : PlotColours().text;
}

}  // namespace tallyscope
