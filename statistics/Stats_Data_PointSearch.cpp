// SPDX-License-Identifier: MIT
#include "spatial/Stats_PointSearch.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

void CStats_Data::PointSearchDeleter::operator()(CStats_PointSearch* search) const {
  delete search;
}

CStats_PointSearch* CStats_Data::GetPointSearch() {
  if (pointSearch_ == nullptr) pointSearch_.reset(new CStats_PointSearch(this));
  return pointSearch_.get();
}

void CStats_Data::DestroyPointSearch() {
  pointSearch_.reset();
}

void CStats_Data::DropPointSearch(const DataChange& change) {
  if (pointSearch_ == nullptr) return;
  if (change.kind != DataChange::kColumn) {
    DestroyPointSearch();  // its dims name other columns now
    return;
  }
  const int fields[3] = {pointSearch_->GetFieldX(), pointSearch_->GetFieldY(), pointSearch_->GetFieldZ()};
  const int* end = fields + pointSearch_->GetDimensions();
  if (std::find(fields, end, change.dim) != end) pointSearch_->SetPartitioned(false);
}

bool CStats_Data::PreparePointSearch(CProgressSink* progress) {
  CStats_PointSearch* search = GetPointSearch();
  return search != nullptr && search->Prepare(progress);
}

}  // namespace tallyscope
