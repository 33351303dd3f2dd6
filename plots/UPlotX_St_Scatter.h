// SPDX-License-Identifier: MIT
#pragma once

#include "plots/UPlotX_Scatter.h"

namespace tallyscope {

// A map: the stations in X and Y, a unit of one as long as a unit of the other. A station with a null in a modulation's
// field isn't on it.
class CUPlotX_St_Scatter : public CUPlotX_Scatter {
 public:
  CUPlotX_St_Scatter();

  // Titles and extents from the table's axes.
  void TakeExtents();

  void RenderLayer(CDC& dc) override;

 protected:
  bool GetFields(Fields& fields) const override;
  StationStyles::Nulls GetNulls() const override { return StationStyles::Nulls::kHidden; }
  CString GetNoPlaneReason() const override { return "The table has no X and Y"; }
  bool SnapsToStation() const override { return false; }  // the mark finds the station when it is drawn
};

}  // namespace tallyscope
