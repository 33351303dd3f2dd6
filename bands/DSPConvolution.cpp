// SPDX-License-Identifier: MIT
#include "bands/DSPConvolution.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "bands/BandWalk.h"
#include "bands/DSPProcess.h"
#include "bands/LineFilter.h"

namespace tallyscope {

bool CDSPConvolution::Process1D(CDSPProgress* progress) {
  const int axis = axes == 2 ? 1 : axes == 4 ? 2 : 0;
  const auto& taps = passAxis >= 1 && passAxis <= 3 ? axisKernels[static_cast<std::size_t>(passAxis - 1)] : kernel;
  if (filterKind == kNoFilter || taps.empty()) return CopySamples(*this, progress);
  CLineFilter filter(*this, taps);
  return WalkLines(*this, axis, progress, [&filter](const DSPLine& line) { filter.Run(line); });
}

bool CDSPConvolution::Process2D(CDSPProgress* progress) {
  return RunPasses(progress);
}

bool CDSPConvolution::Process3D(CDSPProgress* progress) {
  return RunPasses(progress);
}

bool CDSPConvolution::RunPasses(CDSPProgress* progress) {
  if (filterKind == kNoFilter || kernel.empty()) return CopySamples(*this, progress);
  const int all = axes == 0 ? (dimension == 2 ? 3 : 7) : axes;
  std::array<CDSPConvolution, 3> steps;
  CDSPProcess process;
  process.WorkFor(*this);
  int kernelAxis = 0;
  for (int axis = 0; axis < 3; ++axis) {
    if ((all >> axis & 1) == 0) continue;
    CDSPConvolution& step = steps[static_cast<std::size_t>(axis)];
    step = *this;
    step.storage = nullptr;
    step.dimension = 1;
    step.passes = 1;
    step.axes = 1 << axis;
    step.passAxis = ++kernelAxis;
    process.AppendPart(step);
  }
  return process.Run(progress);
}

}  // namespace tallyscope
