// SPDX-License-Identifier: MIT
#include "workbench/SessionController.h"

#include <tuple>

#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/AnalysisKind.h"
#include "statistics/DimIndex.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Region.h"
#include "statistics/Stats_RgnIndexList.h"
#include "statistics/Stats_RgnIndexRange.h"

namespace tallyscope {

namespace {

using Spatial = CStats_Spatial;

// The selection's bits if they fit the table; null otherwise.
const bvector* GetSelection(const Spatial* spatial, CStats_Data* table) {
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

void SetExtraction(Spatial& spatial, unsigned off, unsigned on) {
  spatial.extractFlags = (spatial.extractFlags & ~off) | on;
}

}  // namespace

void SessionController::Push(CStats_Data* data, bool owns) {
  sessions_.push_back(std::make_unique<CTallyscope>());
  GetTop()->Fill(data, owns);
}

bool SessionController::Pop() {
  if (GetDepth() < 2) return false;
  sessions_.pop_back();
  return true;
}

void SessionController::EndAll() {
  while (Pop()) continue;
  if (sessions_.empty()) return;
  if (auto* data = GetTop()->GetData()) {
    data->GetPointSearch()->SetFields(-1, -2, -3, data->GetSpatialSize());
    data->PreparePointSearch(nullptr);
  }
  sessions_.pop_back();
}

// Fields.

int SessionController::RepairedDim(int dim) const {
  auto* data = GetTop()->GetData();
  return IsDimInRange(dim, data->GetSpatialSize(), data->GetValueSize()) ? dim : 0;
}

void SessionController::RepairFields() {
  auto& session = *GetTop();
  const AnalysisKind& kind = GetAnalysisKind(session.GetMode());
  if (kind.fields == 1) return (session.*kind.setKey)(RepairedDim((session.*kind.getKey)()));
  session.SetBiDim1(session.GetBiDim1());
  session.SetBiDim2(session.GetBiDim2());
  if (session.GetKeyDim() == session.GetAncDim()) {
    session.SetBiDim1(-1);
    session.SetBiDim2(0);
  }
  session.SetBiDim1(RepairedDim(session.GetKeyDim()));
  if (!HasKeyAndAncillary()) session.SetBiDim2(session.GetData()->GetValueSize() > 1 ? 1 : -1);
}

bool SessionController::HasKeyAndAncillary() const {
  const auto& session = *GetTop();
  const int axes = session.GetData()->GetSpatialSize();
  const int fields = session.GetData()->GetValueSize();
  return IsDimInRange(session.GetKeyDim(), axes, fields) && IsDimInRange(session.GetAncDim(), axes, fields);
}

// Order of rows.

bool SessionController::WantsSort() const {
  const auto& session = *GetTop();
  return session.sort.sorted && allowSelection && session.GetSSData() != nullptr &&
         session.GetSSData() == session.GetData();
}

bool SessionController::SortStands() const {
  const auto& sort = GetTop()->sort;
  return GetTop()->GetData()->IsSorted(sort.field, sort.descending);
}

// Something else may have sorted the column the other way since: rows, arrow and ranks have to agree.
bool SessionController::IsSorted() {
  if (!WantsSort()) return false;
  if (SortStands()) return true;
  auto& sort = GetTop()->sort;
  auto* data = GetTop()->GetData();
  data->Sort(sort.field, sort.descending, nullptr);
  data->GetRanks(sort.field, sort.ranks);
  return SortStands();
}

int SessionController::GetStation(int position) {
  return IsSorted() ? GetTop()->GetData()->GetSortedStation(GetTop()->sort.field, position) : position;
}

int SessionController::GetPosition(int station) {
  const auto& ranks = GetTop()->sort.ranks;
  const bool known = station >= 0 && static_cast<std::size_t>(station) < ranks.size();
  return known && IsSorted() ? ranks[static_cast<std::size_t>(station)] : station;
}

bool SessionController::SortBy(int column, bool ascending) {
  auto* data = GetTop()->GetSSData();
  if (data == nullptr || data != GetTop()->GetData()) return false;
  auto& sort = GetTop()->sort;
  const int dim = DimFromColumn(column, data->GetSpatialSize());
  if (!IsDimInRange(dim, data->GetSpatialSize(), data->GetValueSize())) return false;
  const int descending = ascending ? 0 : 1;
  const bool stands = data->IsSorted(dim, descending);
  sort.column = column;
  sort.field = dim;
  sort.descending = descending;
  sort.sorted = !stands;
  data->ClearSort();
  if (stands) return true;
  data->Sort(dim, descending, nullptr);
  data->GetRanks(dim, sort.ranks);
  return true;
}

// The selection.

bool SessionController::IsSelected(int station) const {
  const auto* selection = GetSelection(GetTop()->GetSpatialCalculator(), GetTop()->GetSSData());
  return selection != nullptr && selection->Get(station);
}

int SessionController::CountSelected() const {
  const auto* selection = GetSelection(GetTop()->GetSpatialCalculator(), GetTop()->GetData());
  return selection != nullptr ? selection->Count() : 0;
}

// From the nearest selected row above, or else below, to the one clicked.
std::pair<int, int> SessionController::FindExtendedRange(int position) {
  for (int above = position; above >= 0; --above) {
    if (IsSelected(GetStation(above))) return {above, position};
  }
  for (int below = position + 1; below < GetTop()->GetSSData()->GetSize(); ++below) {
    if (IsSelected(GetStation(below))) return {position, below};
  }
  return {position, position};
}

std::unique_ptr<CStats_Rgn> SessionController::MakeRowRegion(int first, int last) {
  if (!IsSorted()) return MakeStationRange(first, last);
  auto region = std::make_unique<CStats_RgnIndexList>();
  for (int position = first; position <= last; ++position) region->stations.push_back(GetStation(position));
  return region;
}

bool SessionController::SelectRow(int position, RowClick click) {
  auto* table = GetTop()->GetSSData();
  auto* spatial = GetTop()->GetSpatialCalculator();
  if (!allowSelection || table == nullptr || spatial == nullptr) return false;
  if (position < 0 || position >= table->GetSize()) return false;
  auto [first, last] = click.extends ? FindExtendedRange(position) : std::pair{position, position};
  SetExtraction(*spatial, Spatial::kRegularCells | Spatial::kLists | Spatial::kExtractZ,
                Spatial::kBitmaps | Spatial::kExtractX | Spatial::kExtractY | Spatial::kIncremental);

  std::unique_ptr<CStats_Rgn> region;
  const int station = GetStation(first);
  if (first == last && IsSelected(station)) {
    if (!click.removes) return false;
    region = MakeStationRange(station, station);
    region->include = false;
  } else {
    region = MakeRowRegion(first, last);
  }
  region->SetDims(spatial->GetSpatialDimX(), spatial->GetSpatialDimY(), spatial->GetSpatialDimZ(),
                  spatial->GetSpatialDimCount());
  SetExtraction(*spatial, 0, Spatial::kChanges);
  spatial->AddSelRegion(std::move(region));
  return true;
}

void SessionController::ForgetChanges() {
  auto* spatial = GetTop()->GetSpatialCalculator();
  if (spatial == nullptr) return;
  SetExtraction(*spatial, Spatial::kChanges, 0);
  spatial->changed.clear();
}

bool SessionController::CanPushSelection() const {
  auto* spatial = GetTop()->GetSpatialCalculator();
  return spatial != nullptr && spatial->regions.GetLastActive() != nullptr;
}

bool SessionController::PushSelection() {
  if (!CanPushSelection()) return false;
  auto* spatial = GetTop()->GetSpatialCalculator();
  SetExtraction(*spatial, Spatial::kRegularCells | Spatial::kExtractZ | Spatial::kIncremental,
                Spatial::kBitmaps | Spatial::kLists | Spatial::kExtractX | Spatial::kExtractY);
  spatial->ClearFlags(0, 1);
  spatial->Calculate(1, nullptr);
  Push(new CStats_Region(spatial), /*owns=*/true);
  GetTop()->SetMode(CTallyscope::eUnivariate);
  GetTop()->SetUniDim(RepairedDim(GetTop()->GetUniDim()));
  return true;
}

}  // namespace tallyscope
