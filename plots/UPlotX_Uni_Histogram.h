// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "plots/UPlotX_Tallyscope.h"

namespace tallyscope {

class CStats_Histogram;
class CStats_Univariate;
struct CHistogramBin;

// The binned histogram of one field: bars with a red lower part for the selected stations, the cumulative curve, and
// the quartiles read off it. Bars are drawn from the bins alone, so the number of stations doesn't matter. What is
// picked is a bin; -1 rests. A rectangle selects the stations whose values lie between its sides.
class CUPlotX_Uni_Histogram : public CUPlotX_Tallyscope {
 public:
  CUPlotX_Uni_Histogram();

  std::vector<int> selectedCounts;  // stations of each bin that are valid and selected
  int binsPerBar = -1;              // what `scale` was made for
  double scale = 1.0;               // 1 / stations of the highest bar

  // Titles and extents from the calculator, a CStats_Univariate with its binned histogram.
  void TakeExtents();
  // Counts the selected stations of each bin anew. Whatever changes the selection through this plot calls it.
  void ResetSelCount();

  void RenderLayer(CDC& dc) override;
  void RenderHover(CDC& dc) override;
  CString GetEmptyReason() override;

  using CUPlotX_Tallyscope::Select;  // the polygon does nothing
  bool Select(CPoint& point, bool include) override;
  bool SelectMove(CPoint& point, bool include) override;
  bool CancelSelect(CPoint& point, bool include) override;
  bool Select(CRect& rect, bool include) override;

  int PickAt(CPoint point) override;
  int GetHoverCount() const override;
  bool GetPlace(int index, double& x, double& y) override;
  CString Describe(int index) override;
  // The values of the bin's stations: its edges would take in a station that stands on one and counts for the next bin.
  // Takes them out where all are selected. Null for an empty bin.
  std::unique_ptr<CStats_Rgn> MakeRegionOf(int index) override;
  CString GetDataText() override;

 protected:
  void TakeSelection() override { ResetSelCount(); }

 private:
  // How the bars stand in this view.
  struct Bars {
    int first = 0;  // bins
    int last = -1;
    bool showsSelection = false;
    COLORREF blue = 0;
    COLORREF red = 0;
  };

  CStats_Univariate* GetFigures() const;
  CStats_Histogram* GetHistogram() const;  // null without bins
  const CHistogramBin& GetBin(int index) const;
  double GetBinWidth() const;
  bool HasWidth() const;  // whether the bins span a range to draw over
  double GetCentre(int index) const;
  double GetX(double value) const;
  double GetY(double height) const;
  std::unique_ptr<CStats_Rgn> MakeRange(const Box& box, bool include) const;
  int GetBinAt(CPoint point) const;
  bool PutHover(CPoint point);

  // Drawing (UPlotX_Uni_Histogram_Drawing.cpp).
  void SetGrouping();
  double CountStations(int first, int last) const;
  double CountSelected(int first, int last) const;
  Bars FindBars() const;
  void DrawBins(CDC& dc, const Bars& bars);
  void DrawGroups(CDC& dc, const Bars& bars);
  void FillBar(CDC& dc, const DrawRect& bar, double selectedTop, const Bars& bars);
  void DrawCurve(CDC& dc, const Bars& bars);
  void DrawQuartiles(CDC& dc);
  void DrawMark(CDC& dc, int bin, double width);
};

}  // namespace tallyscope
