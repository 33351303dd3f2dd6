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
//
// No weights are stored, so a window may be far wider than any line and costs no memory. A box takes the same time
// whatever its width. Of any other kernel each tap is met at each sample, also those that lie off the line, since their
// weights are summed in order too.
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

  // Widths are odd and at least 1; a dimension of 1 to 3 uses as many. False, and no kernel is left, for any other. The
  // options are cleared.
  bool SetBoxKernel(int kernelDimension, int widthX, int widthY, int widthZ);
  // The weight halves a quarter of the smallest width from the centre.
  bool SetGaussianKernel(int kernelDimension, int widthX, int widthY, int widthZ);
  void SetDifferenceKernel(int order);  // along x; orders are limited to 1 to 8

  // Of the tap `offset` from the centre, the same along each axis; a kernel of more than one dimension is the product.
  // REQUIRES: a kernel, and an offset of no more than half its width.
  double GetWeight(int offset) const;

  bool Process1D(CDSPProgress* progress) override;
  // Pass by pass along each axis. Each pass makes up for its own missing taps.
  bool Process2D(CDSPProgress* progress) override;
  bool Process3D(CDSPProgress* progress) override;
  bool IsRepeating() override { return true; }

  int filterKind = kNoFilter;
  bool requireFullWindow = false;
  int edgeMode = kPartial;
  bool rawSum = false;
  bool keepUnfiltered = false;
  bool filterNulls = false;
  std::array<int, 3> widths{};  // taps along x, y, z; 1 where the kernel has no extent
  int passAxis = 0;             // 1 to 3: the pass along one axis of the kernel; 0: the one along x

 private:
  bool StartKernel(int kernelDimension, const std::array<int, 3>& asked);
  bool RunPasses(CDSPProgress* progress);

  double halfWidth_ = 0;  // of a Gaussian: where its weight is a half
  int order_ = 0;         // of a difference
};

}  // namespace tallyscope
