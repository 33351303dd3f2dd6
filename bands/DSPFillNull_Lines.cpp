// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <tuple>
#include <type_traits>
#include <vector>

#include "bands/BandRegression.h"
#include "bands/BandWalk.h"
#include "bands/DSPFillNull.h"
#include "bands/LineFiller.h"

namespace tallyscope {

namespace {

// The lines of one band pair of an overlap along an axis. A line is as long as the input; what of it the output has
// room for is written.
class BandLines {
 public:
  BandLines(const DSPOverlap& overlap, const DSPBandPair& pair, int axis)
      : overlap_(overlap), pair_(pair), axis_(static_cast<std::size_t>(axis)) {
    length_ = overlap.input->GetCount(axis);
    written_ = overlap.count[axis_];
    const auto stride = [axis](const CDSPData& data) {
      return axis == 0 ? 1 : axis == 1 ? data.sizeX : data.planeSize;
    };
    inStride_ = stride(*overlap.input->data);
    outStride_ = stride(*overlap.output->data);
    nulls_.Resize(length_, false);
  }

  // The line through the overlap's sample `at`.
  void Fill(LineFiller& filler, std::array<int, 3> at, LineTrend trend) {
    at[axis_] = 0;
    const int in = overlap_.InIndex(at[0], at[1], at[2]);
    const int out = overlap_.OutIndex(at[0], at[1], at[2]);
    trend.first = in;
    trend.stride = inStride_;
    ReadNulls(in);
    WithSamples(*pair_.in, overlap_.input->data->elementType, static_cast<std::size_t>(in), [&](const auto* from) {
      WithSamples(*pair_.out, overlap_.output->data->elementType, static_cast<std::size_t>(out),
                  [&](auto* to) { FillSamples(filler, from, to, trend); });
    });
    ClearMask(out);
  }

 private:
  template <class In, class Out>
  void FillSamples(LineFiller& filler, const In* from, Out* to, const LineTrend& trend) {
    if constexpr (std::is_same_v<In, Out>) {
      if (inStride_ == 1 && outStride_ == 1 && written_ == length_) {
        if (from != to) std::copy_n(from, length_, to);
        filler.Fill(std::span<Out>(to, static_cast<std::size_t>(length_)), nulls_, trend);
        return;
      }
    }
    auto& line = std::get<std::vector<In>>(scratch_);
    line.resize(static_cast<std::size_t>(length_));
    for (std::size_t t = 0; t < line.size(); ++t) line[t] = from[t * static_cast<std::size_t>(inStride_)];
    filler.Fill(std::span<In>(line), nulls_, trend);
    for (std::size_t t = 0; t < static_cast<std::size_t>(written_); ++t) {
      to[t * static_cast<std::size_t>(outStride_)] = static_cast<Out>(line[t]);
    }
  }

  void ReadNulls(int in) {
    const bvector* mask = pair_.in->mask;
    if (mask == nullptr) return;
    if (inStride_ != 1) {
      for (int t = 0; t < length_; ++t) nulls_.Set(t, mask->Get(in + t * inStride_));
      return;
    }
    for (int t = 0; t < length_; t += kMaskWord) {
      const int count = std::min(kMaskWord, length_ - t);
      StoreBits(nulls_, t, count, LoadBits(*mask, in + t, count));
    }
  }

  void ClearMask(int out) {
    for (int t = 0; outStride_ != 1 && t < written_; ++t) pair_.out->mask->Set(out + t * outStride_, false);
    if (outStride_ == 1) pair_.out->mask->SetRange(out, out + written_ - 1, false);
  }

  const DSPOverlap& overlap_;
  const DSPBandPair& pair_;
  std::size_t axis_;
  int length_ = 0;
  int written_ = 0;
  int inStride_ = 1;
  int outStride_ = 1;
  bvector nulls_;
  std::tuple<std::vector<float>, std::vector<double>> scratch_;
};

bool HasNull(const DSPOverlap& overlap, const DSPBandPair& pair) {
  return pair.in->mask != nullptr && !AllClear(*pair.in->mask, 0, overlap.input->data->sampleCount);
}

}  // namespace

LineTrend CDSPFillNull::FitTrend(const DSPOverlap& overlap, const DSPBandPair& pair) const {
  if (!removeTrend || !HasNull(overlap, pair)) return {};
  const BandRegression line = RegressOnIndex(*overlap.input->data, pair.band);
  return {line.slope, line.intercept};
}

bool CDSPFillNull::FillLines(CDSPProgress* progress) {
  const int axis = axes == 4 ? 2 : axes == 2 ? 1 : 0;
  LineFiller filler({pinEnds, endValue, normalise, predict});
  const std::vector<DSPOverlap> overlaps = GetOverlaps(*this);
  std::int64_t total = 0;
  for (const auto& overlap : overlaps) {
    auto count = overlap.count;
    count[static_cast<std::size_t>(axis)] = 1;
    total += std::int64_t{count[0]} * count[1] * count[2] * static_cast<std::int64_t>(overlap.bands.size());
  }
  std::int64_t done = 0;
  for (const auto& overlap : overlaps) {
    auto count = overlap.count;
    count[static_cast<std::size_t>(axis)] = std::min(count[static_cast<std::size_t>(axis)], 1);
    for (const auto& pair : overlap.bands) {
      const LineTrend trend = FitTrend(overlap, pair);
      BandLines lines(overlap, pair, axis);
      for (int k = 0; k < count[2]; ++k) {
        for (int j = 0; j < count[1]; ++j) {
          for (int i = 0; i < count[0]; ++i) {
            lines.Fill(filler, {i, j, k}, trend);
            if (progress != nullptr && !progress->Report(++done, total)) return false;
          }
        }
      }
    }
  }
  return true;
}

}  // namespace tallyscope
