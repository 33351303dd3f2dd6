// SPDX-License-Identifier: MIT
#pragma once

#include "statistics/Tallyscope.h"

namespace tallyscope {

class CProgressSink;

// Sets a session up for an analysis, for a window, a picture, a report or a script alike: the calculators of the mode,
// what they compute at the start, and the table's search on the columns in which the mode shows stations.
//   CTallyscope session;
//   session.Fill(&table, false);
//   CAnalysis analysis(session);
//   if (!analysis.Start(CTallyscope::eBivariate, 0, 3, progress)) return;
//   analysis.GetBivariate()->correlation ...
// It keeps nothing itself: what it hands out is the session's, and null where the last start made none of that type.
class CAnalysis {
 public:
  // The session isn't owned. Who picks no stations needs no search before something asks for one.
  explicit CAnalysis(CTallyscope& session, bool picksStations = true)
      : session_(session), picksStations_(picksStations) {}

  // Whether a table has what a user wants in a mode: one column for univariate, two for bivariate, two axes for spatial
  // and variogram.
  static bool IsPossible(CStats_Data& data, CTallyscope::eAnalysisMode mode);

  // Starts the session's mode on the fields that it remembers for it. False, with nothing made, where the table
  // lacks the axes or a field, and in multivariate mode; false as well when the sink cancels: what was computed by then
  // stands, and another start does the rest. A table too large to sort has no rank correlation and no curves, and
  // starts.
  [[nodiscard]] bool Start(CProgressSink* progress);
  // The same on other fields. The ancillary one counts in bivariate mode only.
  [[nodiscard]] bool Start(CTallyscope::eAnalysisMode mode, int key, int ancillary, CProgressSink* progress);

  CTallyscope& GetSession() const { return session_; }
  CStats_Univariate* GetUnivariate() const;  // of the key field; for fields that exist
  CStats_Bivariate* GetBivariate() const { return session_.GetBivariate(); }
  CStats_Multivariate* GetAxes() const { return session_.GetMultivariate(); }  // joint figures of the axes
  CStats_SampleVariogram* GetVariogram() const;  // of the key field, to be computed on demand
  CStats_Spatial* GetSelection() const { return session_.GetSpatialCalculator(); }

 private:
  bool HasFields() const;
  void SearchBy(int x, int y, int z, int count, CProgressSink* progress);

  CTallyscope& session_;
  bool picksStations_;
};

}  // namespace tallyscope
