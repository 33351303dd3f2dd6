// SPDX-License-Identifier: MIT
#include "statistics/Analysis.h"

#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Multivariate.h"
#include "statistics/WorkProgress.h"

namespace tallyscope {

namespace {

constexpr int kUnivariateStart = 11;  // basic figures, skewness, binned quantiles
constexpr int kBivariateStart = 15;   // everything
constexpr int kAxesStart = 1;

// A field's own calculator has the field as its item from the session's filling on.
void AddOnce(CStats_Calculator& calculator, CStats_Data* data, int dim) {
  if (!calculator.IsItem(0)) calculator.Add(data, dim);
}

}  // namespace

bool CAnalysis::IsPossible(CStats_Data& data, CTallyscope::eAnalysisMode mode) {
  const int axes = data.GetSpatialSize();
  const int columns = axes + data.GetValueSize();
  switch (mode) {
    case CTallyscope::eUnivariate:
      return columns > 0;
    case CTallyscope::eBivariate:
      return columns > 1;
    case CTallyscope::eSpatial:
    case CTallyscope::eVariogram:
      return axes > 1;
    default:
      return false;
  }
}

bool CAnalysis::Start(CTallyscope::eAnalysisMode mode, int key, int ancillary, CProgressSink* progress) {
  session_.SetMode(mode);
  if (mode == CTallyscope::eUnivariate) session_.SetUniDim(key);
  if (mode == CTallyscope::eSpatial) session_.SetSPDim(key);
  if (mode == CTallyscope::eVariogram) session_.SetVarDim(key);
  if (mode == CTallyscope::eBivariate) {
    session_.SetBiDim1(key);
    session_.SetBiDim2(ancillary);
  }
  return Start(progress);
}

bool CAnalysis::Start(CProgressSink* progress) {
  if (session_.GetMode() == CTallyscope::eUnivariate) session_.SetUniDim(session_.GetUniDim());
  if (session_.GetMode() == CTallyscope::eSpatial) session_.SetSPDim(session_.GetSPDim());
  if (session_.GetMode() == CTallyscope::eVariogram) session_.SetVarDim(session_.GetVarDim());
  if (session_.GetMode() == CTallyscope::eBivariate) {
    session_.SetBiDim1(session_.GetBiDim1());
    session_.SetBiDim2(session_.GetBiDim2());
  }
  if (!IsPossible(*session_.GetData(), session_.GetMode()) || !HasFields()) return false;
  session_.DestroyCalculator();
  session_.CreateSpatialCalculator();
  session_.CreateCalculator();
  CCancelWatch watched(progress);
  Compute(watched.GetSink());
  return !watched.WasCancelled();
}

bool CAnalysis::HasFields() const {
  CStats_Data& data = *session_.GetData();
  for (const int dim : session_.GetDims()) {
    if (dim < -data.GetSpatialSize() || dim >= data.GetValueSize()) return false;
  }
  return true;
}

void CAnalysis::Compute(CProgressSink* progress) {
  CStats_Data* data = session_.GetData();
  const int axes = data->GetSpatialSize();
  switch (session_.GetMode()) {
    case CTallyscope::eUnivariate:
      AddOnce(*GetUnivariate(), data, session_.GetKeyDim());
      GetUnivariate()->Calculate(kUnivariateStart, progress);
      return;
    case CTallyscope::eBivariate:
      return ComputeBivariate(progress);
    case CTallyscope::eSpatial:
      SearchBy(-1, -2, -3, axes, progress);
      return ComputeAxes(progress);
    case CTallyscope::eVariogram:
      SearchBy(-1, -2, -3, axes, progress);
      AddOnce(*GetVariogram(), data, session_.GetKeyDim());
      return;
    default:
      return;
  }
}

void CAnalysis::ComputeBivariate(CProgressSink* progress) {
  const int key = session_.GetKeyDim();
  const int ancillary = session_.GetAncDim();
  CStats_Bivariate& pair = *GetBivariate();
  pair.Add(session_.GetData(), key);
  pair.Add(session_.GetData(), ancillary);
  pair.xLink = session_.GetUniStats(key);
  pair.yLink = session_.GetUniStats(ancillary);
  pair.Calculate(kBivariateStart, progress);
  SearchBy(key, ancillary, -3, 2, progress);
}

void CAnalysis::ComputeAxes(CProgressSink* progress) {
  CStats_Data* data = session_.GetData();
  for (int axis = 1; axis <= data->GetSpatialSize(); ++axis) GetAxes()->Add(data, -axis);
  GetAxes()->Calculate(kAxesStart, progress);
}

// Gives the selection and the table's search the same dims, and builds the search.
void CAnalysis::SearchBy(int x, int y, int z, int count, CProgressSink* progress) {
  session_.GetSpatialCalculator()->SetSpatialDims(x, y, z, count);
  CStats_Data* data = session_.GetData();
  if (auto* search = data->GetPointSearch()) search->SetFields(x, y, z, count);
  data->PreparePointSearch(progress);
}

CStats_Univariate* CAnalysis::GetUnivariate() const {
  return session_.GetUniStats(session_.GetKeyDim());
}

CStats_SampleVariogram* CAnalysis::GetVariogram() const {
  return session_.GetVariogram(session_.GetKeyDim());
}

}  // namespace tallyscope
