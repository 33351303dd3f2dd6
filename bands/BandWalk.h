// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <vector>

#include "bands/DSPOperation.h"
#include "bands/MaskBits.h"

namespace tallyscope {

// The walk of every operation over the part that input and output have in common.

// A band of the input and the band of the output that it goes to.
struct DSPBandPair {
  int band = 0;  // in the input
  CDSPDataBand* in = nullptr;
  CDSPDataBand* out = nullptr;
};

// Input i with output i: the smaller extent along each axis, each from its own region's first sample.
struct DSPOverlap {
  int index = 0;
  CDSPOperationData* input = nullptr;
  CDSPOperationData* output = nullptr;
  std::array<int, 3> count{};      // samples along x, y, z; all 0 when nothing is shared
  std::vector<DSPBandPair> bands;  // the active ones, in order

  int InIndex(int i, int j, int k) const;  // linear, of sample (i, j, k) of the overlap
  int OutIndex(int i, int j, int k) const;
};

// The overlaps of an operation, in order. An input that is switched off has none. Output bands get masks that are long
// enough. Sets of several elements a sample come only when asked for, and then with the same number on both sides.
std::vector<DSPOverlap> GetOverlaps(const CDSPOperation& operation, bool severalElements = false);

// A line of samples of one band, at first, first + stride ...
struct DSPLine {
  const DSPOverlap* overlap = nullptr;
  const DSPBandPair* pair = nullptr;
  int inFirst = 0;
  int inStride = 1;
  int outFirst = 0;
  int outStride = 1;
  int count = 0;

  const CDSPDataBand& In() const { return *pair->in; }
  CDSPDataBand& Out() const { return *pair->out; }
};

// Visits every line along an axis (0, 1, 2), slower axes outermost, and at each line the active bands in order. Reports
// after each line; false when the sink cancels.
bool WalkLines(const CDSPOperation& operation, int axis, CDSPProgress* progress,
               const std::function<void(const DSPLine&)>& visit);

// Copies the samples that are no null.
bool CopySamples(const CDSPOperation& operation, CDSPProgress* progress);

// Calls visit with the band's array, a float* or a double*, at element `first`.
template <class Visit>
void WithSamples(const CDSPDataBand& band, int elementType, std::size_t first, Visit visit) {
  if (elementType == CDSPData::kDouble) {
    visit(band.doubleData + first);
  } else {
    visit(band.floatData + first);
  }
}

// Samples first to first + count of a line along x, `nulls` their mask bits: y = f(x) in double, narrowed on the store.
// In place is fine.
template <class In, class Out, class Formula>
void MapSamples(const In* in, Out* out, int count, std::uint64_t nulls, float nullValue, const Formula& f) {
  if (nulls == 0) {
    for (int i = 0; i < count; ++i) out[i] = static_cast<Out>(f(static_cast<double>(in[i])));
    return;
  }
  for (int i = 0; i < count; ++i) {
    out[i] = (nulls >> i & 1) != 0 ? static_cast<Out>(nullValue) : static_cast<Out>(f(static_cast<double>(in[i])));
  }
}

template <class Formula>
void MapLine(const DSPLine& line, const Formula& f) {
  const CDSPDataBand& in = line.In();
  CDSPDataBand& out = line.Out();
  const int inType = line.overlap->input->data->elementType;
  const int outType = line.overlap->output->data->elementType;
  WithSamples(in, inType, static_cast<std::size_t>(line.inFirst), [&](const auto* from) {
    WithSamples(out, outType, static_cast<std::size_t>(line.outFirst), [&](auto* to) {
      for (int first = 0; first < line.count; first += kMaskWord) {
        const int count = line.count - first < kMaskWord ? line.count - first : kMaskWord;
        const auto nulls = in.mask == nullptr ? 0 : LoadBits(*in.mask, line.inFirst + first, count);
        MapSamples(from + first, to + first, count, nulls, out.nullValue, f);
        StoreBits(*out.mask, line.outFirst + first, count, nulls);
      }
    });
  });
}

// The whole of a pointwise operation: y = f(x) for each sample that is no null.
template <class Formula>
bool MapOverlap(const CDSPOperation& operation, CDSPProgress* progress, const Formula& f) {
  return WalkLines(operation, 0, progress, [&](const DSPLine& line) { MapLine(line, f); });
}

}  // namespace tallyscope
