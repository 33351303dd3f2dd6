// SPDX-License-Identifier: MIT
#include "plots/UPlotX_Tallyscope.h"

#include "outside/colour/ColourTables.h"
#include "outside/plot/UPlotX_Container.h"
#include "platform/ui/WinApp.h"
#include "plots/CancelNote.h"
#include "plots/ModulationLegend.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_RgnIndexRange.h"
#include "statistics/Stats_Univariate.h"
#include "workbench/StationText.h"

namespace tallyscope {

namespace {

constexpr const char* kSection = "UPlotXControls";

// The six ends of a box under `prefix` and these letters.
struct BoxKey {
  const char* key;
  std::size_t axis;
  Point3 Box::*corner;
};
constexpr BoxKey kBoxKeys[] = {{"L", 0, &Box::min}, {"R", 0, &Box::max}, {"B", 1, &Box::min},
                               {"T", 1, &Box::max}, {"N", 2, &Box::min}, {"F", 2, &Box::max}};
constexpr const char* kAxisKeys[] = {"X", "Y", "Z"};

void WriteBox(const CString& prefix, const Box& box) {
  for (const auto& each : kBoxKeys) {
    GetProfile().WriteProfileDouble(kSection, prefix + each.key, (box.*each.corner)[each.axis]);
  }
}

void ReadBox(const CString& prefix, Box& box) {
  for (const auto& each : kBoxKeys) {
    auto& end = (box.*each.corner)[each.axis];
    end = GetProfile().GetProfileDouble(kSection, prefix + each.key, end);
  }
}

}  // namespace

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
  auto& profile = GetProfile();
  WriteBox(prefix + "DATAZOOM_", axisRange);
  WriteBox(prefix + "DATAZOOMEXTENT_", GetWindowExtent());
  for (std::size_t axis = 0; axis < 3; ++axis) {
    profile.WriteProfileInt(kSection, prefix + "MAPPING_" + kAxisKeys[axis], maps[axis].mapping);
    profile.WriteProfileDouble(kSection, prefix + "LOGLININT_" + kAxisKeys[axis], maps[axis].band);
  }
}

void CUPlotX_Tallyscope::ReadFromRegistry(const CString& prefix) {
  auto& profile = GetProfile();
  ReadBox(prefix + "DATAZOOM_", axisRange);
  Box window = GetWindowExtent();
  ReadBox(prefix + "DATAZOOMEXTENT_", window);
  PutWindowExtent(window);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    auto& map = maps[axis];
    map.mapping = profile.GetProfileInt(kSection, prefix + "MAPPING_" + kAxisKeys[axis], map.mapping);
    const double band = profile.GetProfileDouble(kSection, prefix + "LOGLININT_" + kAxisKeys[axis], map.band);
    map.band = band > 0 ? band : 1.0;
  }
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
