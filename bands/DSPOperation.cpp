// SPDX-License-Identifier: MIT
#include "bands/DSPOperation.h"

#include <algorithm>
#include <cstddef>

#include "bands/BandWalk.h"
#include "bands/DSPProcess.h"

namespace tallyscope {

namespace {

int Count(const CDSPOperationStorage::Entries& entries) {
  return static_cast<int>(entries.size());
}

CDSPOperationData& At(const CDSPOperationStorage::Entries& entries, int index) {
  return *entries[static_cast<std::size_t>(index)];
}

int BandCount(const CDSPOperationData& entry) {
  return entry.data == nullptr ? 0 : static_cast<int>(entry.data->bands.size());
}

bool SharesArray(const CDSPData& a, const CDSPData& b) {
  for (const auto& one : a.bands) {
    for (const auto& other : b.bands) {
      if (one->floatData != nullptr && one->floatData == other->floatData) return true;
      if (one->doubleData != nullptr && one->doubleData == other->doubleData) return true;
    }
  }
  return false;
}

bool SharesArray(const CDSPOperationStorage::Entries& some, const CDSPOperationStorage::Entries& others) {
  for (const auto& one : some) {
    for (const auto& other : others) {
      if (one->data != nullptr && other->data != nullptr && SharesArray(*one->data, *other->data)) return true;
    }
  }
  return false;
}

}  // namespace

int CDSPOperation::GetSetting(int input) const {
  const auto at = static_cast<std::size_t>(input);
  return at < boundFrom_.size() ? boundFrom_[at] : input;
}

bool CDSPOperation::IsInputEnabled(int input) const {
  const auto at = static_cast<std::size_t>(GetSetting(input));
  return at >= inputEnable.size() || inputEnable[at];
}

bool CDSPOperation::IsBandEnabled(int input, int band) const {
  const auto at = static_cast<std::size_t>(GetSetting(input));
  return at >= bandEnable.size() || band >= bandEnable[at].GetSize() || bandEnable[at].Get(band);
}

std::vector<int> CDSPOperation::GetBandSources(int inputBands, int outputBands, int input) const {
  std::vector<int> enabled;
  for (int band = 0; band < inputBands; ++band) {
    if (IsBandEnabled(input, band)) enabled.push_back(band);
  }
  // An output with a band for each enabled one holds those; one of the input's own width has every band in its place.
  std::vector<int> sources(static_cast<std::size_t>(outputBands), -1);
  const bool packed = outputBands < inputBands && outputBands == static_cast<int>(enabled.size());
  for (std::size_t i = 0; i < enabled.size(); ++i) {
    const auto at = packed ? i : static_cast<std::size_t>(enabled[i]);
    if (at < sources.size()) sources[at] = enabled[i];
  }
  return sources;
}

bool CDSPOperation::Fits(const CDSPOperationData& entry, int taken) const {
  if (entry.data == nullptr) return false;
  if ((inputFlags & kExactInputs) != 0 && taken >= requiredInputs) return false;
  const bool counted =
      (inputFlags & kInputsHaveRequired) != 0 || ((inputFlags & kFollowersHaveRequired) != 0 && taken > 0);
  return !counted || BandCount(entry) == requiredBands;
}

void CDSPOperation::TakeInputs(CDSPOperationStorage::Entries& inputs) {
  boundFrom_.clear();
  CDSPOperationStorage::Copy(inputs, storage->inputs, false);
  for (const auto& input : storage->inputs) OnInputBound(*input);
}

void CDSPOperation::BindInputs(CDSPOperationStorage& previous) {
  storage->ClearInputs();
  boundFrom_.clear();
  std::vector<int> taken;
  for (int i = 0; i < Count(previous.outputs); ++i) {
    CDSPOperationData& entry = At(previous.outputs, i);
    if (!IsInputEnabled(i) || !Fits(entry, static_cast<int>(taken.size()))) continue;
    storage->AddInput(entry.Clone(false)).MoveOwnership(entry);
    taken.push_back(i);
  }
  boundFrom_ = std::move(taken);
  for (const auto& input : storage->inputs) OnInputBound(*input);
}

// The owner's inputs need no keeping where its own outputs will overwrite them.
bool CDSPOperation::KeepsInputs() const {
  if (owner == nullptr || !owner->keepInputs || owner->storage == nullptr) return false;
  return SharesArray(storage->inputs, owner->storage->inputs) &&
         !SharesArray(owner->storage->inputs, owner->storage->outputs);
}

void CDSPOperation::BindOutputs() {
  storage->ClearOutputs();
  if ((outputFlags & kOutputsAreInputs) != 0 || ((outputFlags & kSeparateOutput) == 0 && !KeepsInputs())) {
    CDSPOperationStorage::Copy(storage->inputs, storage->outputs, true);
    return;
  }
  const int made = (outputFlags & kExactOutputs) != 0 ? requiredOutputs : Count(storage->inputs);
  for (int i = 0; i < std::min(made, Count(storage->inputs)); ++i) CreateOutput(i);
}

bool CDSPOperation::SameShape(const CDSPOperationStorage::Entries& side, const CDSPOperationStorage::Entries& other) {
  return std::equal(side.begin(), side.end(), other.begin(), other.end(), [](const auto& a, const auto& b) {
    if (a->data == nullptr || b->data == nullptr) return a->data == b->data;
    return a->data->sizeX == b->data->sizeX && a->data->sizeY == b->data->sizeY && a->data->sizeZ == b->data->sizeZ &&
           a->data->bands.size() == b->data->bands.size();
  });
}

bool CDSPOperation::InputsOverlapOutputs() {
  return storage != nullptr && SharesArray(storage->inputs, storage->outputs);
}

void CDSPOperation::ShiftOutputOrigins() {
  if (storage == nullptr) return;
  for (int i = 0; i < std::min(Count(storage->inputs), Count(storage->outputs)); ++i) {
    const CDSPOperationData& input = At(storage->inputs, i);
    CDSPOperationData& output = At(storage->outputs, i);
    for (std::size_t axis = 0; axis < 3; ++axis) output.origin[axis] += input.start[axis] - output.start[axis];
  }
}

std::unique_ptr<CDSPOperationData> CDSPOperation::MakeRegion(int x0, int y0, int z0, int x1, int y1, int z1, int step) {
  auto entry = std::make_unique<CDSPOperationData>();
  entry->SetRegion({x0, y0, z0}, {x1, y1, z1}, step);
  return entry;
}

std::array<int, 3> CDSPOperation::GetOutputOrigin(int index) {
  return At(storage->inputs, index).origin;
}

void CDSPOperation::CreateOutput(int inputIndex) {
  const CDSPOperationData& input = At(storage->inputs, inputIndex);
  if (input.data == nullptr) return;
  std::vector<int> sources;
  for (int band = 0; band < BandCount(input); ++band) {
    if ((outputFlags & kOutputHasAllBands) != 0 || IsBandEnabled(inputIndex, band)) sources.push_back(band);
  }
  if ((outputFlags & kOutputHasRequired) != 0) sources.resize(static_cast<std::size_t>(std::max(requiredBands, 0)), -1);

  auto data = NewData();
  data->elementType = input.data->elementType;
  data->elementsPerSample = input.data->elementsPerSample;
  const std::array<int, 3> count{input.GetCount(0), input.GetCount(1), input.GetCount(2)};
  data->SetDimensions(count[0], count[1], count[2]);
  for (std::size_t i = 0; i < sources.size(); ++i) {
    CDSPDataBand& band = data->AddBand();
    data->NewSamples(band);
    const float null = sources[i] < 0 ? CDSPDataBand::kDefaultNull
                                      : input.data->bands[static_cast<std::size_t>(sources[i])]->nullValue;
    band.SetMask(new bvector(data->sampleCount, true), true, null);
    data->FillWithNull(static_cast<int>(i));
  }
  auto output = MakeRegion(0, 0, 0, data->sizeX - 1, data->sizeY - 1, data->sizeZ - 1, input.step);
  output->SetData(data.release(), true);
  output->origin = GetOutputOrigin(inputIndex);
  storage->AddOutput(std::move(output));
}

bool CDSPOperation::CheckAxes() {
  if (storage == nullptr || storage->inputs.empty()) return true;
  const int spanned = storage->inputs.front()->GetAxes();
  const std::array<int, 3> lines{1, 2, 4};
  const std::array<int, 3> planes{3, 5, 6};
  if (dimension != 1 && dimension != 2) return true;
  const auto& choices = dimension == 1 ? lines : planes;
  if (axes == 0) {
    const auto found =
        std::find_if(choices.begin(), choices.end(), [=](int choice) { return (spanned & choice) == choice; });
    if (found != choices.end()) axes = *found;
  }
  return std::find(choices.begin(), choices.end(), axes) != choices.end();
}

bool CDSPOperation::Run(CDSPProgress* progress) {
  if (storage == nullptr) return false;
  CheckAxes();
  bool good = true;
  if (dispatch == 0) {
    good = CDSPOperation::ProcessAny(progress);
  } else if (dimension == 1) {
    good = Process1D(progress);
  } else if (dimension == 2) {
    good = Process2D(progress);
  } else if (dimension == 3) {
    good = Process3D(progress);
  } else {
    good = ProcessAny(progress);
  }
  ShiftOutputOrigins();
  if (!good) return false;
  for (const auto& output : storage->outputs) {
    if (output->data != nullptr) good &= output->data->OnProcessed();
  }
  return good;
}

bool CDSPOperation::ProcessAny(CDSPProgress* progress) {
  return CopySamples(*this, progress);
}

}  // namespace tallyscope
