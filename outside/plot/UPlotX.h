// SPDX-License-Identifier: MIT
#pragma once

#include "outside/plot/AxisMap.h"
#include "platform/core/Box.h"
#include "platform/core/Geometry.h"
#include "platform/core/String.h"
#include "platform/ui/DC.h"

namespace tallyscope {

class CProgressSink;
class CUPlotX_Container;

// A place in a plot's plane: x, y, and z, which the plane leaves alone.
using XVector = Point3;

struct PlotMargins {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
};

// Base of every plot in the plane. It knows where its frame lies and what of the data is visible in it:
//   client   the mouse's whole pixels
//   device   the same with fractions
//   data     evenly spaced values: the world through the axes' maps
//   world    the fields' values
// A subclass draws its data and answers gestures. The container lays it out, draws its axes and runs the gestures.
class CUPlotX {
 public:
  // Where a point of the client area lies, seen from the frame.
  enum eHitArea : int { eNone = 0, eLeft = 1, eRight = 2, eBottom = 3, eTop = 4, eData = 5 };
  enum eScaling : int {
    eNatural = 0,  // a unit of x is as long as a unit of y
    eFit = 1,      // the range asked for fills the frame
    eManual = 2    // as eFit; ZoomFit leaves the range alone
  };

  CUPlotX() = default;
  CUPlotX(const CUPlotX&) = delete;
  CUPlotX& operator=(const CUPlotX&) = delete;
  virtual ~CUPlotX() = default;

  // Set-up.
  Box extents{{0, 0, 0}, {100, 100, 1}, 1};    // of the data, world; equal ends are opened by half a unit each way
  double padding = 0;                          // of a fitted view: this part of the extents more on each side
  Box axisRange{{0, 0, 0}, {100, 100, 1}, 1};  // world, what has been asked to be visible
  AxisMap maps[3];
  int scaling = eFit;
  PlotMargins margins{25, 15, 15, 25};  // least pixels outside the frame
  CString titleX;
  CString titleY;
  bool hasLegend = false;  // a strip above the frame is kept for Render_OwnerDraw

  CUPlotX_Container* GetContainer() const { return container_; }

  // Makes what the drawing stands on (ranges, searches, curves) where it isn't there. Quick where it is. Drawing makes
  // nothing: what is missing is left out. False after a cancel.
  virtual bool Prepare(CProgressSink* /*progress*/) { return true; }

  // What the plot draws, prepared: all but the hover mark on the layer that is kept between repaints, then the mark.
  void Render_OwnerDraw(CDC& dc) {
    Prepare(nullptr);
    RenderLayer(dc);
    RenderHover(dc);
  }
  virtual void RenderLayer(CDC& dc) = 0;
  virtual void RenderHover(CDC&) {}
  // What a picture shows to the right of the frame, and the pixels that it takes there.
  virtual int GetSideRoom() { return 0; }
  virtual void RenderSide(CDC&) {}
  // Why there is nothing to show, as "No valid values in om"; empty where there is something. Once prepared.
  virtual CString GetEmptyReason() { return {}; }

  // Gestures: a pick at button down, its move, its end; a rectangle; the polygon whose corners the container holds.
  // `include` is false where the gesture takes stations out. False: nothing was done.
  virtual bool Select(CPoint& /*point*/, bool /*include*/) { return false; }
  virtual bool SelectMove(CPoint& /*point*/, bool /*include*/) { return false; }
  virtual bool CancelSelect(CPoint& /*point*/, bool /*include*/) { return false; }
  virtual bool Select(CRect& /*rect*/, bool /*include*/) { return false; }
  virtual bool Select(bool /*include*/) { return false; }

  // The view. Zoom axes: 1 x only, 2 y only, 3 both. Each leaves a view that is finite and wider than its rounding.
  void ZoomFit();          // all data
  void SetWindowExtent();  // axisRange, as the scaling has it
  void ZoomTo(const DrawRect& rect, int axes);
  void ZoomAbout(const DrawPoint& place, double factor, int axes);  // above 1 comes nearer; the place stays
  void Pan(double dx, double dy, int axes);                         // the data follow the pixels
  // World, the corners of the frame.
  Box GetVisible() const;
  const Box& GetWindowExtent() const { return window_; }  // data
  void PutWindowExtent(const Box& window) { window_ = window; }

  // The chain.
  XVector Client2Device(CPoint point) const { return {double(point.x), double(point.y), 0}; }
  XVector Device2Data(const XVector& device) const;
  XVector Data2World(const XVector& data) const;
  XVector World2Data(const XVector& world) const;
  XVector Data2Device(const XVector& data) const;
  CPoint Device2Client(const XVector& device) const;  // rounded, halves away from zero
  XVector World2Device(double x, double y) const { return Data2Device(World2Data({x, y, 0})); }
  XVector Device2World(double x, double y) const { return Data2World(Device2Data({x, y, 0})); }
  // The corners of a rectangle in client pixels, as world: `min` is that of its left bottom.
  Box Rect2World(const CRect& rect) const;

  // The frame round the data, and the legend strip above it, in client pixels. SetLayout is the container's.
  const CRect& GetFrame() const { return frame_; }
  const CRect& GetLegend() const { return legend_; }
  eHitArea GetHitArea(CPoint point) const;
  DrawRect Clip2Data() const { return ToDrawRect(frame_); }  // for a DrawClip
  DrawRect Clip2Client() const { return ToDrawRect(client_); }
  void SetLayout(CUPlotX_Container* container, const CRect& client, const CRect& frame, const CRect& legend);

 private:
  void TakeWindow(const Box& window, int axes);

  CUPlotX_Container* container_ = nullptr;
  CRect client_{0, 0, 100, 100};
  CRect frame_{0, 0, 100, 100};
  CRect legend_;
  Box window_{{0, 0, 0}, {100, 100, 1}, 1};
};

}  // namespace tallyscope
