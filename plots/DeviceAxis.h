// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "outside/plot/UPlotX.h"

namespace tallyscope {

// One axis of a plot's way from the world to the device, for loops over many values. It stands as long as the view.
class DeviceAxis {
 public:
  DeviceAxis(const CUPlotX& plot, std::size_t axis) : map_(plot.maps[axis]), low_(plot.GetWindowExtent().min[axis]) {
    const Box& window = plot.GetWindowExtent();
    start_ = plot.Data2Device(window.min)[axis];
    scale_ = (plot.Data2Device(window.max)[axis] - start_) / (window.max[axis] - low_);
  }

  void Convert(const double* world, int count, double* device) const {
    map_.ToDataNearly(world, count, device);
    for (int i = 0; i < count; ++i) device[i] = start_ + (device[i] - low_) * scale_;
  }

 private:
  AxisMap map_;
  double low_;
  double start_ = 0;
  double scale_ = 1;
};

}  // namespace tallyscope
