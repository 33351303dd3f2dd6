// SPDX-License-Identifier: MIT
#include "statistics/Analysis.h"

#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/AnalysisKind.h"
#include "statistics/Stats_Data.h"
#include "statistics/WorkProgress.h"

namespace tallyscope {

bool CAnalysis::IsPossible(CStats_Data& data, CTallyscope::eAnalysisMode mode) {
  return GetAnalysisKind(mode).IsPossible(data);
}

bool CAnalysis::Start(CTallyscope::eAnalysisMode mode, int key, int ancillary, CProgressSink* progress) {
  const AnalysisKind& kind = GetAnalysisKind(mode);
  session_.SetMode(mode);
  (session_.*kind.setKey)(key);
  if (kind.fields > 1) session_.SetBiDim2(ancillary);
  return Start(progress);
}

bool CAnalysis::Start(CProgressSink* progress) {
  const AnalysisKind& kind = GetAnalysisKind(session_.GetMode());
  (session_.*kind.setKey)((session_.*kind.getKey)());
  if (kind.fields > 1) session_.SetBiDim2(session_.GetBiDim2());
  if (!kind.CanStart(*session_.GetData()) || !HasFields()) return false;
  session_.DestroyCalculator();
  session_.CreateSpatialCalculator();
  session_.CreateCalculator();
  CCancelWatch watched(progress);
  kind.compute(session_, watched.GetSink());
  if (kind.searchedBy == SearchedBy::kFields)
    SearchBy(session_.GetKeyDim(), session_.GetAncDim(), -3, 2, watched.GetSink());
  if (kind.searchedBy == SearchedBy::kAxes)
    SearchBy(-1, -2, -3, session_.GetData()->GetSpatialSize(), watched.GetSink());
  return !watched.WasCancelled();
}

bool CAnalysis::HasFields() const {
  CStats_Data& data = *session_.GetData();
  for (const int dim : session_.GetDims()) {
    if (dim < -data.GetSpatialSize() || dim >= data.GetValueSize()) return false;
  }
  return true;
}

// Gives the selection and the table's search the same dims, and builds the search.
void CAnalysis::SearchBy(int x, int y, int z, int count, CProgressSink* progress) {
  session_.GetSpatialCalculator()->SetSpatialDims(x, y, z, count);
  CStats_Data* data = session_.GetData();
  auto* search = picksStations_ ? data->GetPointSearch() : nullptr;
  if (search == nullptr) return;
  search->SetFields(x, y, z, count);
  data->PreparePointSearch(progress);
}

CStats_Univariate* CAnalysis::GetUnivariate() const {
  return session_.GetUniStats(session_.GetKeyDim());
}

CStats_SampleVariogram* CAnalysis::GetVariogram() const {
  return session_.GetVariogram(session_.GetKeyDim());
}

}  // namespace tallyscope
