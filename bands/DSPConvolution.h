// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include "bands/DSPOperation.h"

namespace tallyscope {

// Slides a window of weights over a band: each sample becomes the weighted mean (or, with rawSum, the weighted sum) of
// the samples about it. Tap o multiplies sample p + o. A tap that falls on a null or off the line is missing, and the
// other weights make up for it, unless the whole window is required. A sample that can't be filtered becomes null, or
// keeps its value with keepUnfiltered. A null stays null unless filterNulls is set.
//   CDSPConvolution smooth;
//   smooth.SetGaussianKernel(1, 11, 1, 1);
//   smooth.edgeMode = CDSPConvolution::kCentred;   // options come after the kernel
// Without a kernel, as after a refused one, it copies.
class CDSPConvolution : public CDSPOperation {
 public:
  enum FilterKind : int { kNoFilter = 0, kBox = 3, kGaussian = 4, kDifference = 11 };
  // What happens where the window runs off the line.
  enum EdgeMode : int {
    kPartial = 0,  // the window is cut on that side
    kCentred = 1,  // it shrinks on both, so the first and last samples stand as they were
    kInside = 2    // the sample isn't filtered
  };

  CDSPConvolution() { outputFlags = kSeparateOutput; }

  // Widths are odd and at least 1; a dimension of 1 to 3 uses as many. False, and no kernel is left, for any other and
  // for more than kMostTaps taps. The options are cleared.
  bool SetBoxKernel(int kernelDimension, int widthX, int widthY, int widthZ);
  // The weight halves a quarter of the smallest width from the centre.
  bool SetGaussianKernel(int kernelDimension, int widthX, int widthY, int widthZ);
  void SetDifferenceKernel(int order);  // along x; orders are limited to 1 to 8

  bool Process1D(CDSPProgress* progress) override;
  // Pass by pass along each axis, which every kernel of more than one dimension allows. Each pass makes up for its own
  // missing taps.
  bool Process2D(CDSPProgress* progress) override;
  bool Process3D(CDSPProgress* progress) override;
  bool IsRepeating() override { return true; }

  static constexpr int kMostTaps = 1 << 26;

  int filterKind = kNoFilter;
  bool requireFullWindow = false;
  int edgeMode = kPartial;
  bool rawSum = false;
  bool keepUnfiltered = false;
  bool filterNulls = false;
  std::vector<double> kernel;   // all taps, x running fastest
  std::array<int, 3> widths{};  // taps along x, y, z
  std::array<std::vector<double>, 3> axisKernels;
  bool separable = false;
  std::array<bool, 3> boxAxes{};  // the axis kernel is all ones
  int passAxis = 0;               // 0 the whole kernel, 1 to 3 one axis of a separable one

 private:
  bool StartKernel(int kernelDimension, const std::array<int, 3>& asked);
  void FillKernel(double gaussianWidth);  // 0: box
  bool RunPasses(CDSPProgress* progress);
};

}  // namespace tallyscope
