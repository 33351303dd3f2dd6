// SPDX-License-Identifier: MIT
#pragma once

#include "outside/colour/Modulation.h"
#include "platform/ui/DC.h"
#include "plots/TraceColourMeans.h"
#include "plots/TraceReducer.h"

namespace tallyscope {

class CUPlotX;
class TraceRaster;
class bvector;

// Draws stations of one field as a trace over their number, counted from 1. A station owns the trace to the middle
// between it and each of its neighbours; where there is none, half a unit to that side.
class TraceDrawer {
 public:
  struct Look {
    COLORREF plain = 0;
    COLORREF selected = 0xff;
    const bvector* selection = nullptr;  // null: not shown
    ColourModulation modulation;         // off: all in `plain`
  };

  // All of these must outlive it. `means` is asked while the modulation is on.
  TraceDrawer(const CUPlotX& plot, CDC& dc, TraceReducer& reducer, TraceColourMeans& means, const Look& look);

  // Stations from `begin` to before `end`, from 0. Each by itself:
  void DrawStations(int begin, int end);
  // Or column by column of the device's pixels: the line from the column's first station over its lowest and highest to
  // its last one covers the same pixels from top to bottom. A column is coloured by the mean of its stations' colour
  // values. Selected stations come last, over the others, so that a single one among thousands is seen.
  void DrawColumns(int begin, int end);
  // Columns of the device between two stations.
  double CountColumns(int begin, int end) const;

 private:
  DrawPoint Place(double number, double value) const;
  DrawPoint Snap(DrawPoint point) const;
  DrawPoint Start(const TraceStretch& stretch, double previous) const;
  DrawPoint End(const TraceStretch& stretch, double next) const;
  DrawPoint Middle(DrawPoint a, DrawPoint b) const;
  bool IsSelected(int station) const;
  COLORREF GetColour(double colourValue) const;

  double GetColumn(int station) const;
  int FindColumnEnd(int begin, int end) const;
  template <class Draw>
  void VisitColumns(int begin, int end, Draw draw);
  void DrawStretch(TraceRaster& raster, COLORREF colour, const TraceStretch& stretch);

  const CUPlotX& plot_;
  TraceReducer& reducer_;
  TraceColourMeans& means_;
  const Look& look_;
  CDC& dc_;
  double scale_;
};

}  // namespace tallyscope
