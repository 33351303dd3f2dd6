// SPDX-License-Identifier: MIT
// The sums under the window, by taps and by boxes.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "bands/BoxSums.h"
#include "bands/DSPConvolution.h"
#include "bands/LineFilter.h"
#include "platform/core/WideVectors.h"

namespace tallyscope {

namespace {

// One tap after the other over all samples of a block: the inner loops run over plain arrays.
TALLYSCOPE_WIDE_VECTORS
void AddTap(const double* samples, double weight, double* sums, int count) {
  for (int i = 0; i < count; ++i) sums[i] += samples[i] * weight;
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

// 1 where sums within `bound` of this one would be narrowed to different floats, or to a zero whose sign may differ.
TALLYSCOPE_WIDE_VECTORS
void FindOpen(const double* sums, double total, const double* missing, double bound, bool divides, unsigned char* open,
              int count) {
  for (int i = 0; i < count; ++i) {
    const double divisor = divides ? total - missing[i] : 1.0;
    const auto low = static_cast<float>((sums[i] - bound) / divisor);
    const auto high = static_cast<float>((sums[i] + bound) / divisor);
    open[i] = static_cast<unsigned char>(!(low == high) | (low == 0.0f));
  }
}

}  // namespace

// How far the window of a sample goes: less than half its width where it shrinks at the ends of the line.
int CLineFilter::GetReach(const Block& block, int at) const {
  if (options_.edgeMode != CDSPConvolution::kCentred || !IsNearEnd(block, at)) return half_;
  const int position = block.first + at;
  return std::min(position, block.lineCount - 1 - position);
}

// Each sample of the block whose window runs off the line, in order.
template <class Visit>
void CLineFilter::VisitEnds(const Block& block, Visit visit) const {
  const int left = std::clamp(half_ - block.first, 0, block.count);
  const int right = std::clamp(block.lineCount - half_ - block.first, left, block.count);
  for (int at = 0; at < left; ++at) visit(at);
  for (int at = right; at < block.count; ++at) visit(at);
}

void CLineFilter::SumTaps(const Block& block) {
  sums_.assign(static_cast<std::size_t>(block.count), 0.0);
  if (anyNull_) missing_.assign(static_cast<std::size_t>(block.count), 0.0);
  const double* const samples = samples_.data() + half_;
  const double* const nulls = nulls_.data() + half_;
  // Where the whole window is required, what is missing is counted, not weighed: weights may cancel.
  const double ones[4] = {1, 1, 1, 1};
  std::size_t i = 0;
  for (; i + 4 <= taps_.size(); i += 4) {
    const Tap* const t = taps_.data() + i;
    const double weights[4] = {t[0].weight, t[1].weight, t[2].weight, t[3].weight};
    AddFourTaps(samples + t[0].offset, samples + t[1].offset, samples + t[2].offset, samples + t[3].offset, weights,
                sums_.data(), block.count);
    if (!anyNull_) continue;
    AddFourTaps(nulls + t[0].offset, nulls + t[1].offset, nulls + t[2].offset, nulls + t[3].offset,
                options_.requireFullWindow ? ones : weights, missing_.data(), block.count);
  }
  for (; i < taps_.size(); ++i) {
    AddTap(samples + taps_[i].offset, taps_[i].weight, sums_.data(), block.count);
    if (!anyNull_) continue;
    AddTap(nulls + taps_[i].offset, options_.requireFullWindow ? 1.0 : taps_[i].weight, missing_.data(), block.count);
  }
  if (options_.edgeMode != CDSPConvolution::kCentred) return;
  VisitEnds(block, [&](int at) { SumInOrder(block, at); });
}

// One sample, tap by tap.
void CLineFilter::SumInOrder(const Block& block, int at) {
  const int reach = GetReach(block, at);
  double sum = 0;
  double missing = 0;
  for (const Tap& tap : taps_) {
    const bool outside = std::abs(tap.offset) > reach;
    const auto slot = static_cast<std::size_t>(std::int64_t{at} + half_ + (outside ? 0 : tap.offset));
    if (outside || (anyNull_ && nulls_[slot] != 0)) {
      missing += options_.requireFullWindow ? 1.0 : tap.weight;
    } else {
      sum += samples_[slot] * tap.weight;
    }
  }
  sums_[static_cast<std::size_t>(at)] = sum;
  if (anyNull_) missing_[static_cast<std::size_t>(at)] = missing;
}

void CLineFilter::SumBox(const Block& block, double bound) {
  const auto count = static_cast<std::size_t>(block.count);
  const int width = 2 * half_ + 1;
  sums_.resize(count);
  SlideBox(samples_.data(), width, sums_.data(), block.count, room_);
  if (anyNull_) {
    missing_.resize(count);
    SlideBox(nulls_.data(), width, missing_.data(), block.count, room_);
  }
  if (options_.edgeMode == CDSPConvolution::kCentred) SlideEnds(block);
  if (bound > 0) SettleBox(block, bound);
}

// The shrinking windows at the ends of the line: each differs from its neighbour's by two samples. What is missing is
// the rest of the width, and counts whole.
void CLineFilter::SlideEnds(const Block& block) {
  double sum = 0;
  double nulls = 0;
  int first = 0;  // of the window that sum and nulls are of, and one past its last, as slots
  int end = 0;
  VisitEnds(block, [&](int at) {
    const int reach = GetReach(block, at);
    const int from = at + half_ - reach;
    const int to = at + half_ + reach + 1;
    if (end == 0 || from > end || to < first) {
      first = end = from;
      sum = nulls = 0;
    }
    const auto move = [&](int slot, double sign) {
      sum += sign * samples_[static_cast<std::size_t>(slot)];
      nulls += sign * nulls_[static_cast<std::size_t>(slot)];
    };
    for (; end < to; ++end) move(end, 1);
    for (; first > from; --first) move(first - 1, 1);
    for (; first < from; ++first) move(first, -1);
    for (; end > to; --end) move(end - 1, -1);
    sums_[static_cast<std::size_t>(at)] = sum;
    missing_[static_cast<std::size_t>(at)] = 2.0 * (half_ - reach) + nulls;
  });
}

void CLineFilter::SettleBox(const Block& block, double bound) {
  std::vector<unsigned char> open(static_cast<std::size_t>(block.count));
  if (!anyNull_) missing_.assign(open.size(), 0.0);
  FindOpen(sums_.data(), total_, missing_.data(), bound, !options_.rawSum, open.data(), block.count);
  for (int at = 0; at < block.count; ++at) {
    if (open[static_cast<std::size_t>(at)] != 0) SumInOrder(block, at);
  }
}

}  // namespace tallyscope
