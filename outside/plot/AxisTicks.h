// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <vector>

#include "outside/plot/AxisMap.h"
#include "platform/core/String.h"

namespace tallyscope {

struct AxisTick {
  double world = 0;
  CString label;  // in the user's number characters; empty for a minor tick
  bool IsMajor() const { return !label.empty(); }
};

struct AxisTicks {
  std::vector<AxisTick> ticks;  // majors with the minors between them, not sorted
  int exponent = 0;             // the labels are of values over this power of ten, a multiple of three
};

// Ticks at 1, 2, 2.5 and 5 times a power of ten over the world range that is visible, up to eight majors. On a
// logarithmic axis that shows more than a decade: zero and powers of ten. `fits` answers whether labels of this many
// characters at most stand apart when majors are this many pixels from each other.
AxisTicks MakeAxisTicks(double low, double high, const AxisMap& map, double pixels,
                        const std::function<bool(const CString& label, double pixelsApart)>& fits);

}  // namespace tallyscope
