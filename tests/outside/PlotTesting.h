// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "outside/plot/PlotListener.h"
#include "outside/plot/UPlotX.h"
#include "outside/plot/UPlotX_Container.h"

namespace tallyscope {

// A plot that notes what it is asked for, and draws a cross from corner to corner of its extents.
class NotingPlot : public CUPlotX {
 public:
  std::vector<std::string> calls;
  CRect rect;
  std::vector<CPoint> polygon;
  CString emptyReason;

  void RenderLayer(CDC& dc) override {
    calls.push_back("layer");
    const DrawClip clip(dc, Clip2Data());
    const auto low = World2Device(extents.min[0], extents.min[1]);
    const auto high = World2Device(extents.max[0], extents.max[1]);
    dc.SelectPen({PenStyle::kSolid, 2, 0xff});
    dc.MoveTo(low[0], low[1]);
    dc.LineTo(high[0], high[1]);
  }
  void RenderHover(CDC&) override { calls.push_back("hover"); }
  CString GetEmptyReason() override { return emptyReason; }
  bool Select(CPoint& at, bool include) override { return Note("pick", at, include); }
  bool SelectMove(CPoint& at, bool include) override { return Note("move", at, include); }
  bool CancelSelect(CPoint& at, bool include) override { return Note("end", at, include); }
  bool Select(CRect& at, bool include) override {
    rect = at;
    calls.push_back(include ? "rectangle" : "rectangle out");
    return true;
  }
  bool Select(bool include) override {
    polygon = GetContainer()->GetPoints();
    calls.push_back(include ? "polygon" : "polygon out");
    return true;
  }

  std::string Take() {
    std::string text;
    for (const auto& call : calls) text += (text.empty() ? "" : ", ") + call;
    calls.clear();
    return text;
  }

 private:
  bool Note(const char* what, CPoint at, bool) {
    calls.push_back(what + std::string(" ") + std::to_string(at.x) + " " + std::to_string(at.y));
    return true;
  }
};

// A window that notes what it is told.
class NotingWindow : public CPlotListener {
 public:
  std::string told;

  void OnRedraw(bool all) override { told += all ? 'A' : 'o'; }
  void OnViewChanged() override { told += 'v'; }
  void OnHovered(int index) override { told += "h" + std::to_string(index); }
  void OnSelectionMade() override { told += 's'; }

  // Since the last time, without what is to be drawn over the kept layer.
  std::string Take() {
    const auto taken = std::exchange(told, {});
    std::string text;
    std::copy_if(taken.begin(), taken.end(), std::back_inserter(text), [](char each) { return each != 'o'; });
    return text;
  }
};

// One in a container of 400 x 300 pixels without a window, fitted to its extents.
struct PlotStage {
  explicit PlotStage(const Box& extents = {{0, 0, 0}, {100, 50, 1}, 1}) {
    plot.extents = extents;
    container.AddPlot(&plot, true);
    container.SetClientSize({400, 300});
    container.ZoomFit();
    plot.calls.clear();
  }
  // The middle of the frame, and so many pixels from it.
  CPoint At(int dx, int dy) const {
    const auto& frame = plot.GetFrame();
    return {(frame.left + frame.right) / 2 + dx, (frame.top + frame.bottom) / 2 + dy};
  }

  NotingPlot plot;
  CUPlotX_Container container;
};

}  // namespace tallyscope
