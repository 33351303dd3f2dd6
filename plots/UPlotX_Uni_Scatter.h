// SPDX-License-Identifier: MIT
#pragma once

#include "plots/TraceColourMeans.h"
#include "plots/TraceReducer.h"
#include "plots/UPlotX_Tallyscope.h"

namespace tallyscope {

class CStats_Univariate;

// One field over the station's number, as a trace that breaks at nulls. A rectangle selects the stations between its
// sides. What is picked is a station; -1 rests.
class CUPlotX_Uni_Scatter : public CUPlotX_Tallyscope {
 public:
  CUPlotX_Uni_Scatter();

  // Titles and extents from the calculator, a CStats_Univariate.
  void TakeExtents();

  bool Prepare(CProgressSink* progress) override;
  void RenderLayer(CDC& dc) override;
  void RenderHover(CDC& dc) override;
  // As RenderLayer, but station by station however many there are: what columns of many stations are measured by.
  void RenderPlain(CDC& dc);
  CString GetEmptyReason() override;

  using CUPlotX_Tallyscope::Select;  // the polygon does nothing
  bool Select(CPoint& point, bool include) override;
  bool SelectMove(CPoint& point, bool include) override;
  bool CancelSelect(CPoint& point, bool include) override;
  bool Select(CRect& rect, bool include) override;

  int PickAt(CPoint point) override;
  int GetHoverCount() const override { return GetStationCount(); }
  bool GetPlace(int index, double& x, double& y) override;
  CString Describe(int index) override;
  CString GetDataText() override;

 private:
  enum Way { kColumnsWhereDense, kStations };

  bool HasItem() const;
  CStats_Data* GetItem() const;
  int GetDim() const;
  int GetStationCount() const;
  CStats_Univariate* GetFigures() const;
  bool IsColoured() const;
  void FindShown(int& begin, int& end) const;
  void RenderTrace(CDC& dc, Way way);
  void DrawMark(CDC& dc, int station, double width);
  int GetStationAt(CPoint point) const;
  bool PutHover(CPoint point);

  TraceReducer reducer_;
  TraceColourMeans means_{reducer_};
};

}  // namespace tallyscope
