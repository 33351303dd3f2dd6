// SPDX-License-Identifier: MIT
#include "bands/DSPConvolution.h"

#include <cstddef>

#include "bands/BandWalk.h"
#include "bands/DSPProcess.h"
#include "bands/LineFilter.h"

namespace tallyscope {

bool CDSPConvolution::Process1D(CDSPProgress* progress) {
  if (filterKind == kNoFilter) return CopySamples(*this, progress);
  const int axis = axes == 2 ? 1 : axes == 4 ? 2 : 0;
  CLineFilter filter(*this, passAxis >= 1 && passAxis <= 3 ? passAxis - 1 : 0);
  return WalkLines(*this, axis, progress, [&filter](const DSPLine& line) { filter.Run(line); });
}

bool CDSPConvolution::Process2D(CDSPProgress* progress) {
  return RunPasses(progress);
}

bool CDSPConvolution::Process3D(CDSPProgress* progress) {
  return RunPasses(progress);
}

bool CDSPConvolution::RunPasses(CDSPProgress* progress) {
  if (filterKind == kNoFilter) return CopySamples(*this, progress);
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
