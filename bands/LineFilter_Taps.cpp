// SPDX-License-Identifier: MIT
// The weighted sum under the window, tap by tap.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "bands/DSPConvolution.h"
#include "bands/LaneSums.h"
#include "bands/LineFilter.h"
#include "platform/core/WideVectors.h"

namespace tallyscope {

namespace {

TALLYSCOPE_WIDE_VECTORS
void Widen(const float* from, double* to, int count) {
  for (int i = 0; i < count; ++i) to[i] = from[i];
}

void Widen(const double* from, double* to, int count) {
  std::copy_n(from, count, to);
}

// One tap after the other over all samples of a block: the inner loops run over plain arrays.
TALLYSCOPE_WIDE_VECTORS
void AddTap(const double* samples, double weight, double* sums, int count) {
  for (int i = 0; i < count; ++i) sums[i] += samples[i] * weight;
}

TALLYSCOPE_WIDE_VECTORS
void AddToEach(double weight, double* sums, int count) {
  for (int i = 0; i < count; ++i) sums[i] += weight;
}

// Four taps at once keep the sums in registers; each sum still takes them one by one.
TALLYSCOPE_WIDE_VECTORS
void AddFourTaps(const double* s0, const double* s1, const double* s2, const double* s3, const double* weights,
                 double* sums, int count) {
  const double w0 = weights[0], w1 = weights[1], w2 = weights[2], w3 = weights[3];
  for (int i = 0; i < count; ++i) {
    double sum = sums[i];
    sum += s0[i] * w0;
    sum += s1[i] * w1;
    sum += s2[i] * w2;
    sum += s3[i] * w3;
    sums[i] = sum;
  }
}

}  // namespace

void CLineFilter::TapBlock(const DSPLine& line, const Block& block) {
  LoadTaps(line, block);
  sums_.assign(static_cast<std::size_t>(block.count), 0.0);
  if (anyNull_) missing_.assign(static_cast<std::size_t>(block.count), before_);
  if (options_.edgeMode == CDSPConvolution::kCentred && MeetsEnds(block)) {
    SumShrinkingTaps(block);
  } else {
    SumTaps(block);
  }
  if (beyond_ > half_) AddTapsBeyond(block);
  StoreBlock(line, block);
}

void CLineFilter::LoadTaps(const DSPLine& line, const Block& block) {
  const auto room = static_cast<std::size_t>(block.count) + 2 * static_cast<std::size_t>(half_);
  const int from = std::max(-half_, -block.first);
  const int to = std::min(block.count + half_, block.lineCount - block.first);
  anyNull_ = from > -half_ || to < block.count + half_;
  samples_.resize(room);
  std::fill(samples_.begin(), samples_.begin() + (from + half_), 0.0);
  std::fill(samples_.begin() + (to + half_), samples_.end(), 0.0);
  double* const slots = samples_.data() + half_;
  WithSamples(line.In(), line.overlap->input->data->elementType, 0, [&](const auto* band) {
    const auto* const source = band + line.inFirst + static_cast<std::ptrdiff_t>(block.first) * line.inStride;
    if (line.inStride == 1) {
      Widen(source + from, slots + from, to - from);
    } else {
      for (int i = from; i < to; ++i) slots[i] = source[static_cast<std::ptrdiff_t>(i) * line.inStride];
    }
  });
  LoadNulls(line, block, from, to);
}

void CLineFilter::LoadNulls(const DSPLine& line, const Block& block, int from, int to) {
  const bvector* const mask = line.In().mask;
  const int first = line.inFirst + block.first * line.inStride;
  const bool clear = mask == nullptr || (line.inStride == 1 && AllClear(*mask, first + from, to - from));
  if (clear && !anyNull_) return;
  nulls_.assign(samples_.size(), 0.0);
  std::fill(nulls_.begin(), nulls_.begin() + (from + half_), 1.0);
  std::fill(nulls_.begin() + (to + half_), nulls_.end(), 1.0);
  if (clear) return;
  const auto setNull = [this](int i) {
    nulls_[static_cast<std::size_t>(i + half_)] = 1.0;
    samples_[static_cast<std::size_t>(i + half_)] = 0.0;
    anyNull_ = true;
  };
  if (line.inStride != 1) {
    for (int i = from; i < to; ++i) {
      if (mask->Get(first + i * line.inStride)) setNull(i);
    }
    return;
  }
  for (int i = from; i < to; i += kMaskWord) {
    for (auto bits = LoadBits(*mask, first + i, std::min(kMaskWord, to - i)); bits != 0; bits &= bits - 1) {
      setNull(i + std::countr_zero(bits));
    }
  }
}

// Where the whole window is required, what is missing is counted, not weighed: weights may cancel.
double CLineFilter::GetMissingWeight(const Tap& tap) const {
  return options_.requireFullWindow ? 1.0 : tap.weight;
}

void CLineFilter::SumTaps(const Block& block) {
  const double* const samples = samples_.data() + half_;
  const double* const nulls = nulls_.data() + half_;
  std::size_t i = 0;
  for (; i + 4 <= taps_.size(); i += 4) {
    const Tap* const t = taps_.data() + i;
    const double weights[4] = {t[0].weight, t[1].weight, t[2].weight, t[3].weight};
    AddFourTaps(samples + t[0].offset, samples + t[1].offset, samples + t[2].offset, samples + t[3].offset, weights,
                sums_.data(), block.count);
    if (!anyNull_) continue;
    const double lacks[4] = {GetMissingWeight(t[0]), GetMissingWeight(t[1]), GetMissingWeight(t[2]),
                             GetMissingWeight(t[3])};
    AddFourTaps(nulls + t[0].offset, nulls + t[1].offset, nulls + t[2].offset, nulls + t[3].offset, lacks,
                missing_.data(), block.count);
  }
  for (; i < taps_.size(); ++i) {
    AddTap(samples + taps_[i].offset, taps_[i].weight, sums_.data(), block.count);
    if (anyNull_) AddTap(nulls + taps_[i].offset, GetMissingWeight(taps_[i]), missing_.data(), block.count);
  }
}

// The same where windows shrink towards the ends of the line. A tap is in those of the samples that are as far from
// both ends as it reaches, and missing from the others.
void CLineFilter::SumShrinkingTaps(const Block& block) {
  for (const Tap& tap : taps_) {
    const int reach = std::abs(tap.offset);
    const int from = std::clamp(reach - block.first, 0, block.count);
    const int to = std::clamp(block.lineCount - reach - block.first, from, block.count);
    const double lack = GetMissingWeight(tap);
    const double* const samples = samples_.data() + half_ + tap.offset;
    const double* const nulls = nulls_.data() + half_ + tap.offset;
    AddTap(samples + from, tap.weight, sums_.data() + from, to - from);
    AddTap(nulls + from, lack, missing_.data() + from, to - from);
    AddToEach(lack, missing_.data(), from);
    AddToEach(lack, missing_.data() + to, block.count - to);
  }
}

// The weights that come after all that the line can meet, made as they are needed.
void CLineFilter::AddTapsBeyond(const Block& block) {
  constexpr int kWeights = 1024;
  double weights[kWeights];
  missing_.resize(static_cast<std::size_t>((block.count + kLanes - 1) / kLanes * kLanes));
  for (int offset = half_; offset < beyond_;) {
    const int count = std::min(kWeights, beyond_ - offset);
    for (int i = 0; i < count; ++i) weights[i] = options_.GetWeight(++offset);
    for (std::size_t i = 0; i < missing_.size(); i += kLanes) AddToLanes(weights, count, missing_.data() + i);
  }
}

}  // namespace tallyscope
