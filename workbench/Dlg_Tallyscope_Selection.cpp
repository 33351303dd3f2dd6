// SPDX-License-Identifier: MIT
// Selecting rows of the spreadsheet, and pushing a selection as the new working table.

#include <memory>
#include <string>
#include <vector>

#include <QLabel>

#include "platform/core/Messages.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Region.h"
#include "statistics/Stats_RgnIndexList.h"
#include "statistics/Stats_RgnIndexRange.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_Tallyscope.h"
#include "workbench/PP_Base.h"
#include "workbench/PS_BaseTS.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {

namespace {

// The selection's bits if they fit the table; null otherwise.
const bvector* GetSelection(const CStats_Spatial* spatial, CStats_Data* table) {
  if (spatial == nullptr || table == nullptr || spatial->bitmaps.size() != 1) return nullptr;
  if (spatial->bitmaps.front().GetSize() != table->GetSize()) return nullptr;
  return &spatial->bitmaps.front();
}

std::unique_ptr<CStats_Rgn> MakeStationRange(int first, int last) {
  auto region = std::make_unique<CStats_RgnIndexRange>();
  region->box.min[0] = first;
  region->box.max[0] = last;
  return region;
}

}  // namespace

bool CDlg_Tallyscope::IsSelectedRow(int station) const {
  const auto* selection = GetSelection(GetSpatialCalculator(), GetSSData());
  return selection != nullptr && selection->Get(station);
}

// The rows that a click with the Shift key means: from the nearest selected row above, or else below, to the one
// clicked.
std::pair<int, int> CDlg_Tallyscope::FindShiftRange(int position) {
  for (int above = position; above >= 0; --above) {
    if (IsSelectedRow(GetStationSS(above))) return {above, position};
  }
  for (int below = position + 1; below < GetSSData()->GetSize(); ++below) {
    if (IsSelectedRow(GetStationSS(below))) return {position, below};
  }
  return {position, position};
}

std::unique_ptr<CStats_Rgn> CDlg_Tallyscope::MakeRowRegion(int first, int last) {
  if (!IsSortedSS()) return MakeStationRange(first, last);
  auto region = std::make_unique<CStats_RgnIndexList>();
  for (int position = first; position <= last; ++position) region->stations.push_back(GetStationSS(position));
  return region;
}

void CDlg_Tallyscope::SelectRow(int position, int shift, int control) {
  const int size = GetSSData() != nullptr ? GetSSData()->GetSize() : 0;
  const auto mode = grid_->GetSelectRowMode();
  auto* spatial = GetSpatialCalculator();
  if (position < 0 || position >= size || !allowSelection_ || mode == CTSSelectGridCtrl::eNone || spatial == nullptr) {
    return;
  }
  auto [first, last] = std::pair{position, position};
  if (shift != 0 && mode == CTSSelectGridCtrl::eExtended) std::tie(first, last) = FindShiftRange(position);
  using Spatial = CStats_Spatial;
  spatial->extractFlags &= ~(Spatial::kRegularCells | Spatial::kLists | Spatial::kExtractZ);
  spatial->extractFlags |= Spatial::kBitmaps | Spatial::kExtractX | Spatial::kExtractY | Spatial::kIncremental;

  std::unique_ptr<CStats_Rgn> region;
  const int station = GetStationSS(first);
  if (first == last && IsSelectedRow(station)) {
    if (control == 0) return;
    region = MakeStationRange(station, station);
    region->include = false;
  } else {
    region = MakeRowRegion(first, last);
  }
  region->SetDims(spatial->GetSpatialDimX(), spatial->GetSpatialDimY(), spatial->GetSpatialDimZ(),
                  spatial->GetSpatialDimCount());
  // The stations whose bit changes are recorded for the page that is told, and for no later selection.
  spatial->extractFlags |= Spatial::kChanges;
  spatial->AddSelRegion(std::move(region));
  OnSelectionChanged();
  spatial->extractFlags &= ~static_cast<unsigned>(Spatial::kChanges);
  spatial->changed.clear();
}

// After a change of the selection by rows. A page that enables its controls may have the window's enabled too; once is
// enough.
void CDlg_Tallyscope::OnSelectionChanged() {
  grid_->Invalidate();
  pageEnablesControls_ = true;
  RefreshPage();
  pageEnablesControls_ = false;
  EnableControls();
}

void CDlg_Tallyscope::RefreshPage() {
  auto* page = sheet_ ? sheet_->GetActivePage() : nullptr;
  if (page == nullptr) return;
  if (auto* ours = dynamic_cast<CPP_Base*>(page)) ours->EnableControls();
  page->SendMessage(kMessageSelectionChanged);
}

void CDlg_Tallyscope::ShowSelectedCount() {
  auto* label = GetControl<QLabel>(kControlSelected);
  if (label == nullptr || GetData() == nullptr) return;
  const int size = GetData()->GetSize();  // of the stations, also while the spreadsheet shows another table
  const auto* selection = GetSelection(GetSpatialCalculator(), GetData());
  const int selected = selection != nullptr ? selection->Count() : 0;
  label->setText(selected > 0 ? QString("%1 of %2 selected").arg(selected).arg(size)
                              : QString(size == 1 ? "%1 station" : "%1 stations").arg(size));
}

void CDlg_Tallyscope::OnPushData() {
  acts_.Run([this] { Push(); });
}

void CDlg_Tallyscope::Push() {
  auto* spatial = GetSpatialCalculator();
  if (spatial == nullptr || spatial->regions.GetLastActive() == nullptr) return;
  if (sheet_) sheet_->Process(0);
  ResetDialog();
  using Spatial = CStats_Spatial;
  spatial->extractFlags &= ~(Spatial::kRegularCells | Spatial::kExtractZ | Spatial::kIncremental);
  spatial->extractFlags |= Spatial::kBitmaps | Spatial::kLists | Spatial::kExtractX | Spatial::kExtractY;
  spatial->ClearFlags(0, 1);
  spatial->Calculate(1, nullptr);
  PushData(new CStats_Region(spatial), /*owns=*/true);
  SetMode(CTallyscope::eUnivariate);
  SetUniDim(RepairedDim(GetTallyscope()->GetUniDim()));
  ConnectSpreadsheet(GetSSData(), highlightKey_);
  UpdateData(false);
  CreatePS(0);
  EnableControls();
  FocusPage();
}

}  // namespace tallyscope
