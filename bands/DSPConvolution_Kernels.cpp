// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "bands/DSPConvolution.h"

namespace tallyscope {

bool CDSPConvolution::StartKernel(int kernelDimension, const std::array<int, 3>& asked) {
  filterKind = kNoFilter;
  requireFullWindow = rawSum = keepUnfiltered = filterNulls = separable = false;
  edgeMode = kPartial;
  kernel.clear();
  widths = {};
  axisKernels = {};
  boxAxes = {};
  passAxis = 0;
  if (kernelDimension < 1 || kernelDimension > 3) return false;
  std::int64_t taps = 1;
  std::array<int, 3> used{1, 1, 1};
  for (int axis = 0; axis < kernelDimension; ++axis) {
    const int width = asked[static_cast<std::size_t>(axis)];
    if (width < 1 || width % 2 == 0 || width > kMostTaps) return false;
    taps *= width;
    if (taps > kMostTaps) return false;
    used[static_cast<std::size_t>(axis)] = width;
  }
  widths = used;
  dimension = kernelDimension;
  axes = kernelDimension == 1 ? 1 : kernelDimension == 2 ? 3 : 7;
  return true;
}

void CDSPConvolution::FillKernel(double gaussianWidth) {
  const auto weight = [gaussianWidth](double distance) {
    if (gaussianWidth == 0) return 1.0;
    const double r = distance / gaussianWidth;
    return std::pow(2.0, -(r * r));
  };
  separable = true;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (static_cast<int>(axis) >= dimension) continue;
    for (int o = -(widths[axis] / 2); o <= widths[axis] / 2; ++o) axisKernels[axis].push_back(weight(std::abs(o)));
    boxAxes[axis] = gaussianWidth == 0;
  }
  kernel.reserve(static_cast<std::size_t>(widths[0]) * static_cast<std::size_t>(widths[1]) *
                 static_cast<std::size_t>(widths[2]));
  for (int z = -(widths[2] / 2); z <= widths[2] / 2; ++z) {
    for (int y = -(widths[1] / 2); y <= widths[1] / 2; ++y) {
      for (int x = -(widths[0] / 2); x <= widths[0] / 2; ++x) {
        const double distance = dimension == 1 ? std::abs(x) : std::sqrt(1.0 * x * x + 1.0 * y * y + 1.0 * z * z);
        kernel.push_back(weight(distance));
      }
    }
  }
}

bool CDSPConvolution::SetBoxKernel(int kernelDimension, int widthX, int widthY, int widthZ) {
  if (!StartKernel(kernelDimension, {widthX, widthY, widthZ})) return false;
  filterKind = kBox;
  FillKernel(0);
  return true;
}

bool CDSPConvolution::SetGaussianKernel(int kernelDimension, int widthX, int widthY, int widthZ) {
  if (!StartKernel(kernelDimension, {widthX, widthY, widthZ})) return false;
  filterKind = kGaussian;
  FillKernel(0.25 * *std::min_element(widths.begin(), widths.begin() + kernelDimension));
  return true;
}

void CDSPConvolution::SetDifferenceKernel(int order) {
  static const std::array<std::vector<double>, 8> kTaps{{{-0.5, 0, 0.5},
                                                         {1, -2, 1},
                                                         {0.5, -1, 0, 1, -0.5},
                                                         {1, -4, 6, -4, 1},
                                                         {1, -5, 10, 0, -10, 5, -1},
                                                         {1, -6, 15, -20, 15, -6, 1},
                                                         {1, -7, 21, -35, 0, 35, -21, 7, -1},
                                                         {1, -8, 28, -56, 70, -56, 28, -8, 1}}};
  const auto& taps = kTaps[static_cast<std::size_t>(std::clamp(order, 1, 8) - 1)];
  StartKernel(1, {static_cast<int>(taps.size()), 1, 1});
  filterKind = kDifference;
  kernel = axisKernels[0] = taps;
  requireFullWindow = rawSum = true;
  edgeMode = kInside;
}

}  // namespace tallyscope
