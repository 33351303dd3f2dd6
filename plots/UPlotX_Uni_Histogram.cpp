// SPDX-License-Identifier: MIT
#include "plots/UPlotX_Uni_Histogram.h"

#include <algorithm>
#include <cmath>

#include "platform/core/NumberText.h"
#include "platform/core/StringTable.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_HistData.h"
#include "statistics/Stats_RgnDataRange.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

constexpr int kShownDigits = 8;
constexpr int kCopiedDigits = 15;

CString CountText(double count, const char* one, const char* many) {
  return FormatGeneral(count, kCopiedDigits) + " " + (count == 1 ? one : many);
}

// Stations from `first` to before `end`, shrunk to the eights that have a bit set.
void ShrinkToSet(const bvector& bits, int& first, int& end) {
  const auto& bytes = bits.GetBytes();
  while (first < end && bytes[static_cast<std::size_t>(first / 8)] == 0) first = first / 8 * 8 + 8;
  while (end > first && bytes[static_cast<std::size_t>((end - 1) / 8)] == 0) end = (end - 1) / 8 * 8;
}

}  // namespace

CUPlotX_Uni_Histogram::CUPlotX_Uni_Histogram() {
  titleX = LoadString(kStringKeyField);
  titleY = LoadString(kStringFrequency);
  hasLegend = true;
  hover = -1;
  allowDialogX = false;
  allowDialogY = false;
}

CStats_Univariate* CUPlotX_Uni_Histogram::GetFigures() const {
  return IsReady() && calculator->IsItem(0) ? dynamic_cast<CStats_Univariate*>(calculator) : nullptr;
}

CStats_Histogram* CUPlotX_Uni_Histogram::GetHistogram() const {
  auto* figures = GetFigures();
  return figures != nullptr && figures->binnedHistogram.GetBinCount() > 0 ? &figures->binnedHistogram : nullptr;
}

const CHistogramBin& CUPlotX_Uni_Histogram::GetBin(int index) const {
  return GetHistogram()->bins[static_cast<std::size_t>(index)];
}

void CUPlotX_Uni_Histogram::TakeExtents() {
  const auto* figures = GetFigures();
  if (figures == nullptr) return;
  titleX = calculator->GetItemData(0)->GetValueName(calculator->GetItemDim(0));
  extents.min = {figures->minimum, 0, 0};
  extents.max = {figures->maximum, 1, 1};
  if (!HasWidth()) {  // nothing will be drawn, but the axes need a range
    const double at = std::isfinite(figures->minimum) ? figures->minimum : 0;
    extents.min[0] = extents.max[0] = at;
  }
  binsPerBar = -1;
}

bool CUPlotX_Uni_Histogram::HasWidth() const {
  const double width = extents.max[0] - extents.min[0];
  return width != 0 && std::isfinite(width);
}

CString CUPlotX_Uni_Histogram::GetEmptyReason() {
  auto* figures = GetFigures();
  if (figures == nullptr) return {};
  const CString name = calculator->GetItemData(0)->GetValueName(calculator->GetItemDim(0));
  if (figures->total == 0) return "The table has no stations";
  if (GetHistogram() == nullptr) return "No valid values in " + name;
  if (!std::isfinite(figures->minimum) || !std::isfinite(figures->maximum)) {
    return "No bins in " + name + ": it has infinite values";
  }
  if (!std::isfinite(figures->maximum - figures->minimum))
    return "No bins in " + name + ": its values lie too far apart";
  if (figures->minimum == figures->maximum) {
    return "All valid values in " + name + " are " + FormatLocale(figures->minimum, kShownDigits);
  }
  return {};
}

// The selection.

void CUPlotX_Uni_Histogram::ResetSelCount() {
  auto* histogram = GetHistogram();
  if (histogram == nullptr) return;
  selectedCounts.assign(static_cast<std::size_t>(histogram->GetBinCount()), 0);
  const auto* selection = GetShownSelection();
  if (selection == nullptr) return;

  constexpr int kBlock = 512;
  double values[kBlock];
  unsigned char valid[kBlock];
  int bins[kBlock];
  const int dim = calculator->GetItemDim(0);
  for (int start = 0; start < selection->GetSize(); start += kBlock) {
    int first = start;
    int end = std::min(start + kBlock, selection->GetSize());
    ShrinkToSet(*selection, first, end);
    if (first >= end) continue;
    data->ReadValues(dim, first, end - first, values, valid);
    int kept = 0;
    for (int i = 0; i < end - first; ++i) {
      if (valid[i] != 0 && selection->Get(first + i)) values[kept++] = values[i];
    }
    histogram->GetBinIndices(values, kept, bins);
    for (int i = 0; i < kept; ++i) ++selectedCounts[static_cast<std::size_t>(bins[i])];
  }
}

// Gestures.

double CUPlotX_Uni_Histogram::GetBinWidth() const {
  return std::fabs(extents.max[0] - extents.min[0]) / GetHistogram()->GetBinCount();
}

int CUPlotX_Uni_Histogram::GetBinAt(CPoint point) const {
  if (GetHistogram() == nullptr || !HasWidth()) return -1;
  const double x = Data2World(Device2Data(Client2Device(point)))[0];
  const double bin = std::trunc((x - extents.min[0]) / GetBinWidth());
  return bin >= 0 && bin < GetHistogram()->GetBinCount() ? static_cast<int>(bin) : -1;
}

bool CUPlotX_Uni_Histogram::PutHover(CPoint point) {
  const int bin = GetBinAt(point);
  if (bin < 0) return false;
  hover = bin;
  TellHovered();
  return true;
}

bool CUPlotX_Uni_Histogram::Select(CPoint& point, bool) {
  return PutHover(point);
}

bool CUPlotX_Uni_Histogram::SelectMove(CPoint& point, bool) {
  return hover >= 0 && PutHover(point);
}

bool CUPlotX_Uni_Histogram::CancelSelect(CPoint&, bool) {
  hover = -1;
  TellHovered();
  return true;
}

bool CUPlotX_Uni_Histogram::Select(CRect& rect, bool include) {
  if (GetFigures() == nullptr) return false;
  AddSelRegion(MakeRange(Rect2World(rect), include));
  return true;
}

std::unique_ptr<CStats_Rgn> CUPlotX_Uni_Histogram::MakeRange(const Box& box, bool include) const {
  auto region = std::make_unique<CStats_RgnDataRange>();
  region->include = include;
  region->box = box;
  region->field = calculator->GetItemDim(0);
  region->SetDims(spatial->GetSpatialDimX(), spatial->GetSpatialDimY(), spatial->GetSpatialDimZ(),
                  spatial->GetSpatialDimCount());
  return region;
}

std::unique_ptr<CStats_Rgn> CUPlotX_Uni_Histogram::MakeRegionOf(int index) {
  if (index < 0 || index >= GetHoverCount() || !(GetBin(index).count > 0)) return nullptr;
  Box box;
  box.min = {GetBin(index).dataMin, 0, 0};
  box.max = {GetBin(index).dataMax, 1, 1};
  const auto at = static_cast<std::size_t>(index);
  const bool allSelected = at < selectedCounts.size() && selectedCounts[at] >= GetBin(index).count;
  return MakeRange(box, !allSelected);
}

int CUPlotX_Uni_Histogram::PickAt(CPoint point) {
  return GetHitArea(point) == eData ? GetBinAt(point) : -1;
}

int CUPlotX_Uni_Histogram::GetHoverCount() const {
  return GetHistogram() != nullptr && HasWidth() ? GetHistogram()->GetBinCount() : 0;
}

// The middle of what a bar of its own shows, or of the edges.
double CUPlotX_Uni_Histogram::GetCentre(int index) const {
  const auto& bin = GetBin(index);
  if (binsPerBar <= 1 && bin.count > 0) return (bin.dataMin + bin.dataMax) * 0.5;
  return (bin.binMin + bin.binMax) * 0.5;
}

bool CUPlotX_Uni_Histogram::GetPlace(int index, double& x, double& y) {
  if (index < 0 || index >= GetHoverCount()) return false;
  x = GetCentre(index);
  y = GetBin(index).count * scale;
  return true;
}

CString CUPlotX_Uni_Histogram::Describe(int index) {
  if (index < 0 || index >= GetHoverCount()) return {};
  const auto& bin = GetBin(index);
  CString text = "bin " + std::to_string(index + 1) + ": " + FormatLocale(bin.binMin, kShownDigits) + " to " +
                 FormatLocale(bin.binMax, kShownDigits) + ", " + CountText(bin.count, "station", "stations");
  if (GetShownSelection() != nullptr && selectedCounts.size() == GetHistogram()->bins.size()) {
    text += ", " + std::to_string(selectedCounts[static_cast<std::size_t>(index)]) + " selected";
  }
  return text;
}

CString CUPlotX_Uni_Histogram::GetDataText() {
  if (GetHistogram() == nullptr) return {};
  CStats_HistData table;
  table.histogram = GetHistogram();
  const bool selected = GetShownSelection() != nullptr && selectedCounts.size() == table.histogram->bins.size();
  CString text;
  for (int field = 0; field < table.GetValueSize(); ++field) {
    text += (field > 0 ? "\t" : "") + table.GetValueName(field);
  }
  text += selected ? "\tSelected\n" : "\n";
  for (int bin = 0; bin < table.GetSize(); ++bin) {
    for (int field = 0; field < table.GetValueSize(); ++field) {
      if (field > 0) text += "\t";
      if (table.IsValueValid(field, bin)) {
        text += FormatLocale(static_cast<CStats_Data&>(table).GetValue(field, bin), kCopiedDigits);
      }
    }
    if (selected) text += "\t" + std::to_string(selectedCounts[static_cast<std::size_t>(bin)]);
    text += "\n";
  }
  return text;
}

}  // namespace tallyscope
