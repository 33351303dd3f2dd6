// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <vector>

#include <QCursor>

#include "outside/plot/PlotColours.h"
#include "outside/plot/PlotTool.h"
#include "outside/plot/UPlotX.h"

namespace tallyscope {

class CPlotListener;
class CProgressSink;

// Lays out the plots of one canvas, draws their frame and axes, and runs the gestures of the mouse on the active one.
// It tells its window of what happens. Without one it draws pictures:
//   CUPlotX_Container container;
//   container.AddPlot(&plot, true);
//   container.SetClientSize({1600, 900});
//   container.InitialiseExtents();
//   container.ZoomFit();
//   container.Render(dc);
class CUPlotX_Container {
 public:
  enum eCursorMode : int {
    eZoomIn = PlotTool::kZoomIn,
    eZoomOut = PlotTool::kZoomOut,
    ePan = PlotTool::kPan,
    ePointer = PlotTool::kPointer,
    eRectangle = PlotTool::kRectangle,
    ePolygon = PlotTool::kPolygon,
    eRectangleExclude = 7,
    ePolygonExclude = 8
  };

  CUPlotX_Container() = default;
  CUPlotX_Container(const CUPlotX_Container&) = delete;
  CUPlotX_Container& operator=(const CUPlotX_Container&) = delete;
  virtual ~CUPlotX_Container() = default;

  // Set-up. Neither plots nor the window are owned; the window may be null.
  void SetWindow(CPlotListener* window) { window_ = window; }
  void SetClientSize(CSize size);
  void AddPlot(CUPlotX* plot, bool active);
  int GetPlotCount() const { return static_cast<int>(plots_.size()); }
  CUPlotX* GetPlot(int index) const { return plots_[static_cast<std::size_t>(index)]; }
  void SetActivePlot(CUPlotX* plot) { active_ = plot; }
  CUPlotX* GetActivePlot() const { return active_; }
  PlotColours colours;     // of paper, text, frame and grid
  bool isPicture = false;  // it draws a picture that stands alone, with the legends that a window has beside the plot

  void InitialiseExtents();  // frames and views of all plots from their sizes, margins, texts and ranges
  void ZoomFit();
  void SetWindowExtent();
  CRect GetClientRect() const { return {0, 0, size_.cx, size_.cy}; }

  // All plots; see CUPlotX::Prepare.
  bool Prepare(CProgressSink* progress);
  // Everything, prepared first; or what is kept between repaints (paper, axes, the plots' layers) and what lies over it
  // (hover marks, rubber band), as they have been prepared.
  void Render(CDC& dc);
  void RenderKept(CDC& dc);
  void RenderOver(CDC& dc);

  // All is to be drawn anew; or only what lies over the kept layer.
  void Invalidate();
  void InvalidateOver();
  // For plots: what has happened on them.
  void TellHovered(int index);
  void TellSelectionMade();

  bool IsHit(CPoint point) const { return GetClientRect().PtInRect(point); }

  // What the mouse does, as a tool or as its number. A change ends the gesture under way.
  void SetTool(const PlotTool& tool);
  const PlotTool& GetTool() const { return tool_; }
  void SetCursorMode(int mode) { SetTool(tool_.WithMode(mode)); }
  int GetCursorMode() const { return tool_.GetMode(); }
  bool IsIncluding() const { return !tool_.IsExcluding(); }
  bool IsPolygonMode() const { return tool_.kind == PlotTool::kPolygon; }
  bool IsRectangleMode() const { return tool_.kind == PlotTool::kRectangle; }
  void SetZoomAxes(int axes) { zoomAxes_ = axes; }  // 1 x, 2 y, 3 both
  int GetZoomAxes() const { return zoomAxes_; }

  void OnLButtonDown(CPoint point);
  void OnMouseMove(CPoint point, bool pressed);
  void OnLButtonUp(CPoint point);
  bool OnLButtonDblClk(CPoint point);  // closes a polygon; true when it did
  bool OnRButtonDown(CPoint point);    // the same
  void OnWheel(CPoint point, double steps);
  // Esc: drops the last corner of a polygon, or ends the gesture. True when there was one.
  bool CancelStep();
  void ZoomStep(double factor);  // about the middle of the frame
  bool IsInGesture() const { return gesture_ != kNone || !points_.empty(); }

  const std::vector<CPoint>& GetPoints() const { return points_; }  // corners of the polygon, client

  QCursor GetCursor(CPoint point) const;
  virtual QCursor ShowZoomInCursor() const;
  virtual QCursor ShowZoomOutCursor() const;
  virtual QCursor ShowPanCursor() const;

  // Colours as hue, saturation and lightness, each 0 to 1, and back (outside/colour/Hsl.h).
  static void RGB2HSL(double red, double green, double blue, double& hue, double& saturation, double& lightness);
  static void HSL2RGB(double hue, double saturation, double lightness, double& red, double& green, double& blue);
  static COLORREF RGB2CREF(double red, double green, double blue);
  static void CREF2RGB(COLORREF colour, double& red, double& green, double& blue);

 private:
  enum Gesture { kNone, kPick, kDrag, kClick };

  void ChangeView();
  void EndPolygon();
  void KeepCorners(const std::function<void()>& change);
  void RenderBand(CDC& dc);
  void RenderEmpty(CDC& dc, CUPlotX& plot);
  CRect GetBand() const;

  CPlotListener* window_ = nullptr;
  CSize size_{100, 100};
  std::vector<CUPlotX*> plots_;
  CUPlotX* active_ = nullptr;
  PlotTool tool_;
  int zoomAxes_ = 3;
  Gesture gesture_ = kNone;
  bool lasso_ = false;  // the polygon is being drawn with the button down
  CPoint start_;        // of the gesture
  CPoint last_;
  std::vector<CPoint> points_;
};

}  // namespace tallyscope
