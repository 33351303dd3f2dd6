// SPDX-License-Identifier: MIT
#pragma once

#include "outside/plot/UPlotX_Container.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"
#include "tests/support/RecorderDC.h"

namespace tallyscope {

// A plot of one field without a window: its frame is `width` x `height` pixels with its top left corner at (100, 50),
// and a margin of 100 and 50 on the other sides.
template <class Plot>
class UnivariateScene {
 public:
  explicit UnivariateScene(CStats_Data& table, int dim = 0, int width = 800, int height = 400) {
    figures.Add(&table, dim);
    figures.Calculate(11, nullptr);
    spatial.Add(&table, dim);
    spatial.SetSpatialDims(-1, -2, -3, table.GetSpatialSize());
    plot.calculator = &figures;
    plot.spatial = &spatial;
    plot.data = &table;
    plot.TakeExtents();
    SetFrame(width, height);
    plot.ZoomFit();
  }

  CStats_Univariate figures;
  CStats_Spatial spatial;
  CUPlotX_Container container;
  Plot plot;

  void SetFrame(int width, int height) {
    size_ = {width + 200, height + 100};
    plot.SetLayout(&container, {0, 0, size_.cx, size_.cy}, {100, 50, 100 + width, 50 + height},
                   {100, 20, 100 + width, 50});
  }
  // What is visible, world.
  void Show(double left, double right, double bottom, double top) {
    plot.axisRange.min = {left, bottom, 0};
    plot.axisRange.max = {right, top, 1};
    plot.SetWindowExtent();
  }
  RecorderDC Draw() {
    RecorderDC dc(size_);
    plot.Render_OwnerDraw(dc);
    return dc;
  }
  // A drag over these world values of x, across the frame.
  void SelectBetween(double left, double right, bool include = true) {
    const auto x = [&](double value) { return static_cast<int>(std::lround(plot.World2Device(value, 0)[0])); };
    CRect rect{x(left), 50, x(right), size_.cy - 50};
    plot.Select(rect, include);
  }
  bool IsSelected(int station) const { return !spatial.bitmaps.empty() && spatial.bitmaps.front().Get(station); }
  CSize GetSize() const { return size_; }

 private:
  CSize size_;
};

}  // namespace tallyscope
