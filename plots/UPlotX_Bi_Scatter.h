// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "plots/UPlotX_Scatter.h"

namespace tallyscope {

class CStats_Bivariate;

// The stations in the plane of two fields, the items 0 and 1 of a CStats_Bivariate, with three curves: the display line
// of the regression, the conditional expectation of Y given X, and the quantiles of Y against those of X.
class CUPlotX_Bi_Scatter : public CUPlotX_Scatter {
 public:
  CUPlotX_Bi_Scatter();

  // Titles and extents from the calculator.
  void TakeExtents();

  void RenderLayer(CDC& dc) override;
  CString GetEmptyReason() override;

 protected:
  bool GetFields(Fields& fields) const override;
  int GetStationCount() const override;
  StationStyles::Nulls GetNulls() const override { return StationStyles::Nulls::kPlain; }
  bool SnapsToStation() const override { return true; }

 private:
  CStats_Bivariate* GetPair() const;
  std::vector<DrawPoint> MakeRegression(const CStats_Bivariate& pair) const;
  std::vector<DrawPoint> MakeExpectation(const CStats_Bivariate& pair) const;
  std::vector<DrawPoint> MakeQuantiles(CStats_Bivariate& pair) const;
  void RenderCurves(CDC& dc);
  void RenderLegend(CDC& dc);
};

}  // namespace tallyscope
