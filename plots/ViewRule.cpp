// SPDX-License-Identifier: MIT
#include "plots/ViewRule.h"

#include "platform/core/Profile.h"
#include "plots/PlotSettings.h"
#include "statistics/AnalysisKind.h"

namespace tallyscope {

ViewSubject ViewSubject::Of(CTallyscope::eAnalysisMode mode, int session, int keyDim, int ancillaryDim) {
  const int fields = GetAnalysisKind(mode).viewFields;
  return {session, fields > 0 ? keyDim : kNoDim, fields > 1 ? ancillaryDim : kNoDim};
}

ViewSubject ViewSubject::Read(const CProfile& profile, const CString& prefix) {
  const ViewSubject none;
  return {profile.GetProfileInt(kPlotSection, prefix + "SESSIONID", none.session),
          profile.GetProfileInt(kPlotSection, prefix + "DIM1", none.dim1),
          profile.GetProfileInt(kPlotSection, prefix + "DIM2", none.dim2)};
}

void ViewSubject::Write(CProfile& profile, const CString& prefix) const {
  profile.WriteProfileInt(kPlotSection, prefix + "SESSIONID", session);
  profile.WriteProfileInt(kPlotSection, prefix + "DIM1", dim1);
  profile.WriteProfileInt(kPlotSection, prefix + "DIM2", dim2);
}

ViewChange ViewChange::Between(const ViewSubject& before, const ViewSubject& now) {
  return {before.session != now.session, before.dim1 != now.dim1, before.dim2 != now.dim2};
}

bool ViewChange::Resets(CTallyscope::eAnalysisMode mode) const {
  const int fields = GetAnalysisKind(mode).viewFields;
  return session || (fields > 0 && dim1) || (fields > 1 && dim2);
}

}  // namespace tallyscope
