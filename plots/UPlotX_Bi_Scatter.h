// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "plots/UPlotX_Scatter.h"

namespace tallyscope {

class CancelNote;
class CStats_Bivariate;
class CStats_Univariate;

// The stations in the plane of two fields, the items 0 and 1 of a CStats_Bivariate, with three curves: the display line
// of the regression, the conditional expectation of Y given X, and the quantiles of Y against those of X.
class CUPlotX_Bi_Scatter : public CUPlotX_Scatter {
 public:
  CUPlotX_Bi_Scatter();

  // Titles and extents from the calculator.
  void TakeExtents();

  bool Prepare(CProgressSink* progress) override;  // the curves too
  void RenderLayer(CDC& dc) override;

 protected:
  bool GetFields(Fields& fields) const override;
  int GetStationCount() const override;
  StationStyles::Nulls GetNulls() const override { return StationStyles::Nulls::kPlain; }
  bool SnapsToStation() const override { return true; }

 private:
  CStats_Bivariate* GetPair() const;
  std::vector<DrawPoint> MakeRegression(const CStats_Bivariate& pair) const;
  std::vector<DrawPoint> MakeExpectation(const CStats_Bivariate& pair) const;
  std::vector<DrawPoint> MakeQuantiles() const;
  void RenderCurves(CDC& dc);
  void RenderLegend(CDC& dc);

  // The quantiles of a field that has been connected, from 5 to 95 percent.
  struct Quantiles {
    CStats_Data* data = nullptr;
    int dim = 0;
    std::vector<double> values;
  };
  static void PrepareQuantiles(CStats_Bivariate& pair, int item, CStats_Univariate* shared, Quantiles& quantiles,
                               CancelNote& note);
  Quantiles xQuantiles_;
  Quantiles yQuantiles_;
};

}  // namespace tallyscope
