// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <span>

#include "bands/DSPConvolution.h"

namespace tallyscope {

namespace {

constexpr double kFirst[] = {-0.5, 0, 0.5};
constexpr double kSecond[] = {1, -2, 1};
constexpr double kThird[] = {0.5, -1, 0, 1, -0.5};
constexpr double kFourth[] = {1, -4, 6, -4, 1};
constexpr double kFifth[] = {1, -5, 10, 0, -10, 5, -1};
constexpr double kSixth[] = {1, -6, 15, -20, 15, -6, 1};
constexpr double kSeventh[] = {1, -7, 21, -35, 0, 35, -21, 7, -1};
constexpr double kEighth[] = {1, -8, 28, -56, 70, -56, 28, -8, 1};
constexpr std::span<const double> kDifferences[] = {kFirst, kSecond, kThird,   kFourth,
                                                    kFifth, kSixth,  kSeventh, kEighth};

}  // namespace

bool CDSPConvolution::StartKernel(int kernelDimension, const std::array<int, 3>& asked) {
  filterKind = kNoFilter;
  requireFullWindow = rawSum = keepUnfiltered = filterNulls = false;
  edgeMode = kPartial;
  widths = {};
  passAxis = 0;
  if (kernelDimension < 1 || kernelDimension > 3) return false;
  std::array<int, 3> used{1, 1, 1};
  for (int axis = 0; axis < kernelDimension; ++axis) {
    const int width = asked[static_cast<std::size_t>(axis)];
    if (width < 1 || width % 2 == 0) return false;
    used[static_cast<std::size_t>(axis)] = width;
  }
  widths = used;
  dimension = kernelDimension;
  axes = kernelDimension == 1 ? 1 : kernelDimension == 2 ? 3 : 7;
  return true;
}

bool CDSPConvolution::SetBoxKernel(int kernelDimension, int widthX, int widthY, int widthZ) {
  if (!StartKernel(kernelDimension, {widthX, widthY, widthZ})) return false;
  filterKind = kBox;
  return true;
}

bool CDSPConvolution::SetGaussianKernel(int kernelDimension, int widthX, int widthY, int widthZ) {
  if (!StartKernel(kernelDimension, {widthX, widthY, widthZ})) return false;
  filterKind = kGaussian;
  halfWidth_ = 0.25 * *std::min_element(widths.begin(), widths.begin() + kernelDimension);
  return true;
}

void CDSPConvolution::SetDifferenceKernel(int order) {
  order_ = std::clamp(order, 1, 8);
  StartKernel(1, {static_cast<int>(kDifferences[order_ - 1].size()), 1, 1});
  filterKind = kDifference;
  requireFullWindow = rawSum = true;
  edgeMode = kInside;
}

double CDSPConvolution::GetWeight(int offset) const {
  assert(filterKind != kNoFilter);
  if (filterKind == kBox) return 1.0;
  if (filterKind == kDifference) {
    const auto taps = kDifferences[order_ - 1];
    return taps[taps.size() / 2 + static_cast<std::size_t>(offset)];
  }
  const double r = std::abs(offset) / halfWidth_;
  return std::pow(2.0, -(r * r));
}

}  // namespace tallyscope
