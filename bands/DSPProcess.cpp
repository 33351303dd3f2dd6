// SPDX-License-Identifier: MIT
#include "bands/DSPProcess.h"

#include <cstddef>
#include <utility>

namespace tallyscope {

bool CDSPProcess::Run(CDSPProgress* progress) {
  owner = this;
  if (storage == nullptr) return false;
  if (operations.empty()) return CDSPOperation::Run(progress);
  CDSPOperationStorage intermediate;
  bool good = true;
  const int count = static_cast<int>(operations.size());
  for (int i = 0; i < count; ++i) {
    const DSPProgressPart part(progress, i, count);
    good &= RunOperation(*operations[static_cast<std::size_t>(i)], intermediate, i == 0, i == count - 1, progress);
  }
  operations.clear();
  return good;
}

void CDSPProcess::WorkFor(const CDSPOperation& whole) {
  own_.ClearInputs();
  own_.ClearOutputs();
  partBands_.clear();
  if (whole.storage == nullptr) return;
  const auto& inputs = whole.storage->inputs;
  const auto& outputs = whole.storage->outputs;
  for (std::size_t i = 0; i < inputs.size() && i < outputs.size(); ++i) {
    const int input = static_cast<int>(i);
    if (!whole.IsInputEnabled(input)) continue;
    own_.AddInput(inputs[i]->Clone(false));
    own_.AddOutput(outputs[i]->Clone(false));
    const int bands = inputs[i]->data != nullptr ? static_cast<int>(inputs[i]->data->bands.size()) : 0;
    bvector& enabled = partBands_.emplace_back(bands);
    for (int band = 0; band < bands; ++band) enabled.Set(band, whole.IsBandEnabled(input, band));
  }
}

void CDSPProcess::AppendPart(CDSPOperation& step) {
  step.inputEnable.clear();
  step.bandEnable = partBands_;
  step.outputFlags |= kOutputHasAllBands;
  Append(step);
}

void CDSPProcess::Bind(CDSPOperation& operation, CDSPOperationStorage& intermediate, bool first, bool last) {
  if (first) {
    operation.TakeInputs(storage->inputs);
  } else {
    operation.BindInputs(intermediate);
  }
  if (last && !storage->outputs.empty()) {
    CDSPOperationStorage::Copy(storage->outputs, operation.storage->outputs, false);
  } else {
    operation.BindOutputs();
  }
}

bool CDSPProcess::RunOperation(CDSPOperation& operation, CDSPOperationStorage& intermediate, bool first, bool last,
                               CDSPProgress* progress) {
  operation.owner = this;
  CDSPOperationStorage local;
  const bool borrows = operation.storage == nullptr;
  if (borrows) {
    operation.storage = &local;
    Bind(operation, intermediate, first, last);
  }
  bool good = true;
  const int runs = operation.IsRepeating() && operation.passes > 1 ? operation.passes : 1;
  for (int pass = 0; pass < runs; ++pass) {
    const DSPProgressPart part(progress, pass, runs);
    if (pass > 0) CDSPOperationStorage::Copy(operation.storage->outputs, operation.storage->inputs, false);
    good &= RunPass(operation, progress);
  }
  if (!last) CDSPOperationStorage::Copy(operation.storage->outputs, intermediate.outputs, true);
  if (borrows) operation.storage = nullptr;
  return good;
}

bool CDSPProcess::RunPass(CDSPOperation& operation, CDSPProgress* progress) {
  const bool aside = (operation.outputFlags & CDSPOperation::kSeparateOutput) != 0 && operation.InputsOverlapOutputs();
  return aside ? RunAside(operation, progress) : operation.Run(progress);
}

namespace {

// An output of the shape and null values of `real`, null everywhere.
std::unique_ptr<CDSPOperationData> MakeLike(CDSPOperation& operation, const CDSPOperationData& real) {
  auto entry = real.Clone(false);
  if (real.data == nullptr) return entry;
  auto data = operation.NewData();
  data->SetDimensions(real.data->sizeX, real.data->sizeY, real.data->sizeZ);
  data->elementType = real.data->elementType;
  data->elementsPerSample = real.data->elementsPerSample;
  for (std::size_t i = 0; i < real.data->bands.size(); ++i) {
    CDSPDataBand& band = data->AddBand();
    data->NewSamples(band);
    band.SetMask(new bvector(data->sampleCount, true), true, real.data->bands[i]->nullValue);
    data->FillWithNull(static_cast<int>(i));
  }
  entry->SetData(data.release(), true);
  return entry;
}

}  // namespace

bool CDSPProcess::RunAside(CDSPOperation& operation, CDSPProgress* progress) {
  CDSPOperationStorage::Entries real = std::move(operation.storage->outputs);
  operation.storage->outputs.clear();
  for (const auto& output : real) operation.storage->AddOutput(MakeLike(operation, *output));
  bool good = operation.Run(progress);

  CDSPOperationStorage results;
  CDSPOperationStorage::Copy(operation.storage->outputs, results.inputs, true);
  for (std::size_t i = 0; i < real.size(); ++i) real[i]->origin = results.inputs[i]->origin;
  results.outputs = std::move(real);
  CDSPOperation copy;
  copy.dispatch = 0;
  copy.storage = &results;
  copy.inputEnable = operation.inputEnable;
  copy.bandEnable = operation.bandEnable;
  good &= copy.Run(nullptr);
  operation.storage->outputs = std::move(results.outputs);
  return good;
}

}  // namespace tallyscope
