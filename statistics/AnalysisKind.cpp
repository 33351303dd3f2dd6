// SPDX-License-Identifier: MIT
#include "statistics/AnalysisKind.h"

#include <algorithm>
#include <cassert>

#include "platform/core/StringTable.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Multivariate.h"

namespace tallyscope {

namespace {

constexpr int kUnivariateStart = 11;  // basic figures, skewness, binned quantiles
constexpr int kBivariateStart = 15;   // everything
constexpr int kAxesStart = 1;

// A field's own calculator has the field as its item from the session's filling on.
void AddOnce(CStats_Calculator& calculator, CTallyscope& session) {
  if (!calculator.IsItem(0)) calculator.Add(session.GetData(), session.GetKeyDim());
}

void ComputeUnivariate(CTallyscope& session, CProgressSink* sink) {
  CStats_Univariate& field = *session.GetUniStats(session.GetKeyDim());
  AddOnce(field, session);
  field.Calculate(kUnivariateStart, sink);
}

void ComputeBivariate(CTallyscope& session, CProgressSink* sink) {
  const int key = session.GetKeyDim();
  const int ancillary = session.GetAncDim();
  CStats_Bivariate& pair = *session.GetBivariate();
  pair.Add(session.GetData(), key);
  pair.Add(session.GetData(), ancillary);
  pair.xLink = session.GetUniStats(key);
  pair.yLink = session.GetUniStats(ancillary);
  pair.Calculate(kBivariateStart, sink);
}

void ComputeSpatial(CTallyscope& session, CProgressSink* sink) {
  CStats_Multivariate& axes = *session.GetMultivariate();
  for (int axis = 1; axis <= session.GetData()->GetSpatialSize(); ++axis) axes.Add(session.GetData(), -axis);
  axes.Calculate(kAxesStart, sink);
}

// Nothing is computed yet: the variogram itself is made on demand.
void ComputeVariogram(CTallyscope& session, CProgressSink*) {
  AddOnce(*session.GetVariogram(session.GetKeyDim()), session);
}

using T = CTallyscope;

// A multivariate analysis is for programs that use the library: it has no start of its own.
// clang-format off
constexpr AnalysisKind kKinds[] = {
    {T::eUnivariate, "univariate", true, kStringUnivariate, 1, 0, 1, 1,
     &T::SetUniDim, &T::GetUniDim, &T::SetUniDim, ComputeUnivariate, SearchedBy::kNothing},
    {T::eBivariate, "bivariate", true, kStringBivariate, 2, 0, 2, 2,
     &T::SetBiDim1, &T::GetBiDim1, &T::SetBiDim2, ComputeBivariate, SearchedBy::kFields},
    {T::eMultivariate, "multivariate", false, kStringBivariate, 2, 0, 2, 2,
     &T::SetBiDim1, &T::GetBiDim1, nullptr, nullptr, SearchedBy::kNothing},
    {T::eSpatial, "spatial", true, kStringSpatial, 2, 2, 1, 0,
     &T::SetSPDim, &T::GetSPDim, &T::SetSPDim, ComputeSpatial, SearchedBy::kAxes},
    {T::eVariogram, "variogram", false, kStringVariogram, 2, 2, 1, 1,
     &T::SetVarDim, &T::GetVarDim, nullptr, ComputeVariogram, SearchedBy::kAxes},
};
// clang-format on

}  // namespace

bool AnalysisKind::CanStart(CStats_Data& data) const {
  return compute != nullptr && data.GetSpatialSize() >= axes;
}

bool AnalysisKind::IsPossible(CStats_Data& data) const {
  return CanStart(data) && data.GetSpatialSize() + data.GetValueSize() >= columns;
}

std::span<const AnalysisKind> GetAnalysisKinds() {
  return kKinds;
}

const AnalysisKind& GetAnalysisKind(CTallyscope::eAnalysisMode mode) {
  const auto* found =
      std::find_if(std::begin(kKinds), std::end(kKinds), [&](const AnalysisKind& kind) { return kind.mode == mode; });
  assert(found != std::end(kKinds));
  return *found;
}

}  // namespace tallyscope
