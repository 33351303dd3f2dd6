// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>

namespace tallyscope {

class CProgressSink;
class CStats_Data;

// A plane through the values of a field, v' = a + b x' + c y', by least squares on co-ordinates that are normalised:
// x' = (x - start) / range. Zeros where the stations lie on one line.
struct SurfaceFit {
  struct Scale {
    double start = 0;
    double range = 1;
  };

  double a = 0, b = 0, c = 0;
  Scale x, y, value;
};

// Over the stations with a value and both co-ordinates, finite ones; `dims` are the columns of x, y and the value,
// which the table must have. The scales are those of the whole columns. Nothing when the sink cancels.
std::optional<SurfaceFit> FitSurface(CStats_Data& data, const std::array<int, 3>& dims, CProgressSink* progress);

}  // namespace tallyscope
