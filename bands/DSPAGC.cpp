// SPDX-License-Identifier: MIT
#include "bands/DSPAGC.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "bands/BandWalk.h"
#include "bands/DSPConvolution.h"
#include "bands/DSPPower.h"
#include "bands/DSPProcess.h"

namespace tallyscope {

namespace {

void DivideLine(const DSPLine& line) {
  const CDSPDataBand& in = line.In();
  CDSPDataBand& out = line.Out();
  WithSamples(in, line.overlap->input->data->elementType, 0, [&](const auto* from) {
    WithSamples(out, line.overlap->output->data->elementType, 0, [&]<class Out>(Out* to) {
      for (int i = 0; i < line.count; ++i) {
        const int read = line.inFirst + i * line.inStride;
        const int written = line.outFirst + i * line.outStride;
        const Out envelope = to[written];
        const double size = std::abs(static_cast<double>(envelope));
        const bool null = in.IsNull(read) || std::max(size, 0.0) * 1e-10 >= size;
        to[written] = null ? static_cast<Out>(out.nullValue)
                           : static_cast<Out>(static_cast<float>(from[read]) / static_cast<float>(envelope));
        out.mask->Set(written, null);
      }
    });
  });
}

}  // namespace

bool CDSPAGC::WriteEnvelope(CDSPConvolution& window, CDSPProgress* progress) {
  CDSPPower square;
  CDSPPower root;
  square.exponent = 2.0;
  root.exponent = 0.5;
  CDSPProcess process;
  process.WorkFor(*this);
  process.AppendPart(square);
  process.AppendPart(window);
  process.AppendPart(root);
  return process.Run(progress);
}

// Whether each sample is written where it was read. The envelope then needs no copy of the samples, only the division.
bool CDSPAGC::WorksInPlace() const {
  const auto same = [](const auto& input, const auto& output) {
    return input->data == output->data && input->start == output->start && input->end == output->end;
  };
  const auto& inputs = storage->inputs;
  const auto& outputs = storage->outputs;
  return bandEnable.empty() && std::equal(inputs.begin(), inputs.end(), outputs.begin(), outputs.end(), same);
}

bool CDSPAGC::Divide(CDSPProgress* progress) {
  if (storage == nullptr) return false;
  const int side = std::clamp(dimension, 1, 3);
  CDSPConvolution window;
  if (windowFilter != nullptr) {
    window = *windowFilter;
  } else {
    window.SetBoxKernel(side, width, width, width);
  }
  if (window.filterKind == CDSPConvolution::kNoFilter) return CopySamples(*this, progress);
  // The envelope goes into the outputs, so inputs that lie there are divided from a copy.
  CDSPOperationStorage::Entries copies;
  if (InputsOverlapOutputs()) {
    for (const auto& input : storage->inputs) copies.push_back(input->Clone(true));
  }
  const bool inPlace = WorksInPlace();
  const bool swaps = !copies.empty();
  bool enveloped = false;
  if (inPlace) enveloped = WriteEnvelope(window, progress);
  if (swaps) storage->inputs.swap(copies);
  if (!inPlace) enveloped = WriteEnvelope(window, progress);
  const bool divided = WalkLines(*this, 0, progress, DivideLine);
  if (swaps) storage->inputs.swap(copies);
  return enveloped && divided;
}

}  // namespace tallyscope
