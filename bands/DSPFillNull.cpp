// SPDX-License-Identifier: MIT
#include "bands/DSPFillNull.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "bands/BandWalk.h"

namespace tallyscope {

namespace {

// Nulls of the samples first to first + count of a line along x.
std::uint64_t LoadNulls(const DSPLine& line, int first, int count) {
  return line.In().mask != nullptr ? LoadBits(*line.In().mask, line.inFirst + first, count) : 0;
}

// A line along x with the nulls that `nulls` gives for a run of samples; of these the output holds `value`, and its
// mask bits become `set` of them.
template <class Nulls>
void CopyWithNulls(const DSPLine& line, float value, bool set, Nulls nulls) {
  WithSamples(line.In(), line.overlap->input->data->elementType, static_cast<std::size_t>(line.inFirst),
              [&](const auto* from) {
                WithSamples(line.Out(), line.overlap->output->data->elementType,
                            static_cast<std::size_t>(line.outFirst), [&](auto* to) {
                              for (int first = 0; first < line.count; first += kMaskWord) {
                                const int count = std::min(kMaskWord, line.count - first);
                                const std::uint64_t word = nulls(first, count);
                                MapSamples(from + first, to + first, count, word, value, [](double x) { return x; });
                                StoreBits(*line.Out().mask, line.outFirst + first, count, set ? word : 0);
                              }
                            });
              });
}

}  // namespace

bool CDSPFillNull::ProcessAny(CDSPProgress* progress) {
  return FillOrRestore(progress, &CDSPFillNull::FillConstant);
}

bool CDSPFillNull::Process1D(CDSPProgress* progress) {
  return FillOrRestore(progress, &CDSPFillNull::FillLines);
}

bool CDSPFillNull::Process2D(CDSPProgress* progress) {
  return FillOrRestore(progress, &CDSPFillNull::FillPlanes);
}

bool CDSPFillNull::Process3D(CDSPProgress* progress) {
  return FillOrRestore(progress, &CDSPFillNull::FillCube);
}

bool CDSPFillNull::FillOrRestore(CDSPProgress* progress, bool (CDSPFillNull::*fill)(CDSPProgress*)) {
  if (storage == nullptr) return false;
  for (const auto& input : storage->inputs) input->CoverAll();
  bool good = true;
  if (restore == 0) {
    if (rememberNulls) RememberNulls();
    good = (this->*fill)(progress);
  } else if (rememberNulls) {
    good = BringNullsBack(progress);
  }
  if (good) restore = restore == 0 ? 1 : 0;
  return good;
}

void CDSPFillNull::RememberNulls() {
  nulls_.assign(storage->inputs.size(), {});
  for (std::size_t i = 0; i < nulls_.size(); ++i) {
    if (storage->inputs[i]->data == nullptr) continue;
    for (const auto& band : storage->inputs[i]->data->bands) {
      nulls_[i].push_back(band->mask == nullptr ? bvector() : *band->mask);
    }
  }
}

bool CDSPFillNull::BringNullsBack(CDSPProgress* progress) {
  return WalkLines(*this, 0, progress, [&](const DSPLine& line) {
    const auto input = static_cast<std::size_t>(line.overlap->index);
    const auto band = static_cast<std::size_t>(line.pair->band);
    const bool known = input < nulls_.size() && band < nulls_[input].size();
    const bvector none;
    const bvector& remembered = known ? nulls_[input][band] : none;
    CopyWithNulls(line, line.Out().nullValue, true, [&](int first, int count) {
      const int left = std::clamp(remembered.GetSize() - (line.inFirst + first), 0, count);
      return LoadNulls(line, first, count) | LoadBits(remembered, line.inFirst + first, left);
    });
  });
}

bool CDSPFillNull::FillConstant(CDSPProgress* progress) {
  return WalkLines(*this, 0, progress, [&](const DSPLine& line) {
    CopyWithNulls(line, constant, false, [&](int first, int count) { return LoadNulls(line, first, count); });
  });
}

}  // namespace tallyscope
