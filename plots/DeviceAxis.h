// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "outside/plot/Span.h"
#include "outside/plot/UPlotX.h"

namespace tallyscope {

// One axis of a plot's way from the world to the device, for loops over many values. It stands as long as the view.
class DeviceAxis {
 public:
  DeviceAxis(const CUPlotX& plot, std::size_t axis) : map_(plot.maps[axis]) {
    const Box& window = plot.GetWindowExtent();
    halfLow_ = window.min[axis] / 2;
    start_ = plot.Data2Device(window.min)[axis];
    scale_ = (plot.Data2Device(window.max)[axis] - start_) / HalfSpan(window.min[axis], window.max[axis]);
  }

  void Convert(const double* world, int count, double* device) const {
    map_.ToDataNearly(world, count, device);
    for (int i = 0; i < count; ++i) device[i] = start_ + (device[i] / 2 - halfLow_) * scale_;
  }

 private:
  AxisMap map_;
  double halfLow_ = 0;
  double start_ = 0;
  double scale_ = 1;  // device by half a unit of data: the whole window may be wider than any number
};

}  // namespace tallyscope
