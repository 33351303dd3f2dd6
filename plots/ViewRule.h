// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/String.h"
#include "statistics/Dim.h"
#include "statistics/Tallyscope.h"

namespace tallyscope {

class CProfile;

// What a view was a view of. A view that was left comes back only where it shows the same again.
struct ViewSubject {
  int session = -1;  // its level id
  int dim1 = kNoDim;
  int dim2 = kNoDim;

  // Of a session in a mode: fields that the mode's plots don't show don't count.
  static ViewSubject Of(CTallyscope::eAnalysisMode mode, int session, int keyDim, int ancillaryDim);
  // Under `prefix` in the plots' section; what isn't there is as made.
  static ViewSubject Read(const CProfile& profile, const CString& prefix);
  void Write(CProfile& profile, const CString& prefix) const;
};

// In what two subjects differ.
struct ViewChange {
  bool session = true;
  bool dim1 = true;
  bool dim2 = true;

  static ViewChange Between(const ViewSubject& before, const ViewSubject& now);
  // Whether the view starts afresh.
  bool Resets(CTallyscope::eAnalysisMode mode) const;
};

}  // namespace tallyscope
