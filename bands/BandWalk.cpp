// SPDX-License-Identifier: MIT
#include "bands/BandWalk.h"

#include <algorithm>
#include <cstdint>

namespace tallyscope {

namespace {

bool HasSamples(const CDSPData& data, const CDSPDataBand& band) {
  return data.elementType == CDSPData::kDouble ? band.doubleData != nullptr : band.floatData != nullptr;
}

std::vector<DSPBandPair> GetActiveBands(const CDSPOperation& operation, int index, CDSPData& in, CDSPData& out) {
  std::vector<DSPBandPair> active;
  const auto sources =
      operation.GetBandSources(static_cast<int>(in.bands.size()), static_cast<int>(out.bands.size()), index);
  for (std::size_t i = 0; i < sources.size(); ++i) {
    if (sources[i] < 0) continue;
    const auto source = static_cast<std::size_t>(sources[i]);
    if (!HasSamples(in, *in.bands[source]) || !HasSamples(out, *out.bands[i])) continue;
    if (in.bands[source]->mask != nullptr) in.EnsureMask(sources[i], false);  // long enough to be read
    out.EnsureMask(static_cast<int>(i), false);
    active.push_back({sources[i], in.bands[source].get(), out.bands[i].get()});
  }
  return active;
}

int IndexFrom(const CDSPOperationData& entry, int i, int j, int k) {
  return entry.data->GetIndex(entry.start[0] + i, entry.start[1] + j, entry.start[2] + k);
}

}  // namespace

int DSPOverlap::InIndex(int i, int j, int k) const {
  return IndexFrom(*input, i, j, k);
}

int DSPOverlap::OutIndex(int i, int j, int k) const {
  return IndexFrom(*output, i, j, k);
}

std::vector<DSPOverlap> GetOverlaps(const CDSPOperation& operation, bool severalElements) {
  std::vector<DSPOverlap> overlaps;
  if (operation.storage == nullptr) return overlaps;
  auto& inputs = operation.storage->inputs;
  auto& outputs = operation.storage->outputs;
  for (std::size_t i = 0; i < std::min(inputs.size(), outputs.size()); ++i) {
    CDSPData* in = inputs[i]->data;
    CDSPData* out = outputs[i]->data;
    if (in == nullptr || out == nullptr || !operation.IsInputEnabled(static_cast<int>(i))) continue;
    if (in->elementsPerSample != out->elementsPerSample) continue;
    if (in->elementsPerSample != 1 && !severalElements) continue;
    DSPOverlap& overlap = overlaps.emplace_back();
    overlap.index = static_cast<int>(i);
    overlap.input = inputs[i].get();
    overlap.output = outputs[i].get();
    for (int axis = 0; axis < 3; ++axis) {
      overlap.count[static_cast<std::size_t>(axis)] = std::min(inputs[i]->GetCount(axis), outputs[i]->GetCount(axis));
    }
    if (std::find(overlap.count.begin(), overlap.count.end(), 0) != overlap.count.end()) overlap.count = {};
    overlap.bands = GetActiveBands(operation, overlap.index, *in, *out);
  }
  return overlaps;
}

namespace {

int GetStride(const CDSPData& data, int axis) {
  return axis == 0 ? 1 : axis == 1 ? data.sizeX : data.planeSize;
}

// The overlap's axes with `axis` as the innermost.
std::array<std::size_t, 3> OrderAxes(int axis) {
  if (axis == 0) return {2, 1, 0};
  if (axis == 1) return {2, 0, 1};
  return {1, 0, 2};
}

bool Walk(std::vector<DSPOverlap>& overlaps, int axis, CDSPProgress* progress,
          const std::function<void(const DSPLine&)>& visit) {
  const auto [outer, inner, along] = OrderAxes(axis);
  std::int64_t total = 0;
  for (const auto& overlap : overlaps) total += std::int64_t{overlap.count[outer]} * overlap.count[inner];
  std::int64_t done = 0;
  for (const auto& overlap : overlaps) {
    DSPLine line;
    line.overlap = &overlap;
    line.count = overlap.count[along];
    line.inStride = GetStride(*overlap.input->data, axis);
    line.outStride = GetStride(*overlap.output->data, axis);
    std::array<int, 3> at{};
    for (at[outer] = 0; at[outer] < overlap.count[outer]; ++at[outer]) {
      for (at[inner] = 0; at[inner] < overlap.count[inner]; ++at[inner]) {
        line.inFirst = overlap.InIndex(at[0], at[1], at[2]);
        line.outFirst = overlap.OutIndex(at[0], at[1], at[2]);
        for (const DSPBandPair& pair : overlap.bands) {
          line.pair = &pair;
          visit(line);
        }
        if (progress != nullptr && !progress->Report(++done, total)) return false;
      }
    }
  }
  return true;
}

}  // namespace

bool WalkLines(const CDSPOperation& operation, int axis, CDSPProgress* progress,
               const std::function<void(const DSPLine&)>& visit) {
  auto overlaps = GetOverlaps(operation);
  return Walk(overlaps, axis, progress, visit);
}

namespace {

void CopyLine(const DSPLine& line) {
  const auto elements = static_cast<std::size_t>(line.overlap->input->data->elementsPerSample);
  const int inType = line.overlap->input->data->elementType;
  const int outType = line.overlap->output->data->elementType;
  const CDSPDataBand& in = line.In();
  CDSPDataBand& out = line.Out();
  WithSamples(in, inType, static_cast<std::size_t>(line.inFirst) * elements, [&](const auto* from) {
    WithSamples(out, outType, static_cast<std::size_t>(line.outFirst) * elements, [&]<class Out>(Out* to) {
      for (int i = 0; i < line.count; ++i, from += elements, to += elements) {
        const bool null = in.IsNull(line.inFirst + i);
        for (std::size_t e = 0; e < elements; ++e) to[e] = static_cast<Out>(null ? out.nullValue : from[e]);
        out.mask->Set(line.outFirst + i, null);
      }
    });
  });
}

}  // namespace

bool CopySamples(const CDSPOperation& operation, CDSPProgress* progress) {
  auto overlaps = GetOverlaps(operation, true);
  return Walk(overlaps, 0, progress, [](const DSPLine& line) {
    if (line.overlap->input->data->elementsPerSample == 1) {
      MapLine(line, [](double x) { return x; });
    } else {
      CopyLine(line);
    }
  });
}

}  // namespace tallyscope
