// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ui/DC.h"

namespace tallyscope {

// A thin line that runs from left to right as columns of whole device pixels, one filled rectangle a column. Where a
// line goes up and down within every column that takes a fraction of the time of stroking it, and covers the same
// pixels. A column that is left and come back to, or whose line has a gap, is filled from its top to its bottom.
class TraceRaster {
 public:
  // Rectangles end a little outside of `frame`, so that no co-ordinate is too large for a device.
  TraceRaster(CDC& dc, const DrawRect& frame);
  TraceRaster(const TraceRaster&) = delete;
  TraceRaster& operator=(const TraceRaster&) = delete;
  ~TraceRaster() { Flush(); }

  // On whole device pixels, in units of the device context.
  void MoveTo(COLORREF colour, DrawPoint point);
  void LineTo(DrawPoint point);
  void Flush();

 private:
  void Cover(double column, double y0, double y1);

  CDC& dc_;
  double scale_;
  DrawRect limits_;  // device pixels, as all below
  COLORREF colour_ = 0;
  DrawPoint place_;
  bool open_ = false;
  double column_ = 0;
  double top_ = 0;
  double bottom_ = 0;
  COLORREF columnColour_ = 0;
};

}  // namespace tallyscope
