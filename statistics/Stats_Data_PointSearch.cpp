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

bool CStats_Data::PreparePointSearch(CProgressSink* progress) {
  CStats_PointSearch* search = GetPointSearch();
  return search != nullptr && search->Prepare(progress);
}

}  // namespace tallyscope
