// SPDX-License-Identifier: MIT
#include "bands/LineFilter.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <type_traits>

#include "bands/BoxSums.h"
#include "bands/DSPConvolution.h"
#include "platform/core/WideVectors.h"

namespace tallyscope {

namespace {

constexpr double kNoWeight = 2.220446049250313e-14;
constexpr int kBlock = 2048;
constexpr int kWindows = 16;   // of half the width that a block has room for, so that its first sums cost little
constexpr int kNarrowBox = 8;  // up to which the taps are quicker

bool IsNoWeight(double weight) {
  return weight >= -kNoWeight && weight <= kNoWeight;
}

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

TALLYSCOPE_WIDE_VECTORS
void DivideEach(double* sums, double total, const double* missing, int count) {
  for (int i = 0; i < count; ++i) sums[i] /= total - missing[i];
}

TALLYSCOPE_WIDE_VECTORS
void Narrow(const double* sums, double divisor, float* to, int count) {
  for (int i = 0; i < count; ++i) to[i] = static_cast<float>(sums[i] / divisor);
}

void Narrow(const double* sums, double divisor, double* to, int count) {
  for (int i = 0; i < count; ++i) to[i] = sums[i] / divisor;
}

TALLYSCOPE_WIDE_VECTORS
void Widen(const float* from, double* to, int count) {
  for (int i = 0; i < count; ++i) to[i] = from[i];
}

void Widen(const double* from, double* to, int count) {
  std::copy_n(from, count, to);
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

CLineFilter::CLineFilter(const CDSPConvolution& options, const std::vector<double>& taps)
    : options_(options), half_(static_cast<int>(taps.size() / 2)), means_(static_cast<int>(taps.size())) {
  for (std::size_t i = 0; i < taps.size(); ++i) {
    if (!(std::abs(taps[i]) >= kNoWeight)) continue;
    taps_.push_back({taps[i], static_cast<int>(i) - half_});
    total_ += taps[i];
  }
  const double centre = taps[static_cast<std::size_t>(half_)];
  plain_ = !options.rawSum && !options.requireFullWindow && !options.filterNulls &&
           options.edgeMode != CDSPConvolution::kInside && centre > 2 * kNoWeight * static_cast<double>(taps.size()) &&
           std::all_of(taps.begin(), taps.end(), [](double tap) { return tap >= 0; });
  box_ = std::all_of(taps.begin(), taps.end(), [](double tap) { return tap == 1.0; });
  slides_ = box_ && taps.size() > kNarrowBox;
}

bool CLineFilter::IsNearEnd(const Block& block, int at) const {
  const int position = block.first + at;
  return position < half_ || position >= block.lineCount - half_;
}

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

void CLineFilter::Run(const DSPLine& line) {
  const int size = std::max(kBlock, half_ > line.count / kWindows ? line.count : kWindows * half_);
  for (int first = 0; first < line.count; first += size) {
    const Block block{first, std::min(size, line.count - first), line.count};
    if (!MeanBlock(line, block)) FilterBlock(line, block);
    if (line.count - first <= size) break;  // first + size may be beyond an int
  }
}

// A block of floats under a box, away from the ends of the line: false, and nothing is done, for any other, and where
// sums could be rounded.
bool CLineFilter::MeanBlock(const DSPLine& line, const Block& block) {
  const bool floats = line.overlap->input->data->elementType != CDSPData::kDouble &&
                      line.overlap->output->data->elementType != CDSPData::kDouble;
  if (!box_ || !floats || line.inStride != 1 || line.outStride != 1 || block.count % CBoxMeans::kStep != 0)
    return false;
  if (block.first < half_ || block.lineCount - block.first - block.count < half_ + CBoxMeans::kAhead) return false;
  const int first = line.inFirst + block.first - half_;
  const bvector* const mask = line.In().mask;
  const float* const from = line.In().floatData + first;
  float* const to = line.Out().floatData + line.outFirst + block.first;
  anyNull_ = mask != nullptr && !AllClear(*mask, first, block.count + 2 * half_);
  if (!anyNull_) {
    if (!means_.Run(from, options_.rawSum ? 1.0 : total_, to, block.count)) return false;
  } else if (!plain_ || !means_.RunAroundNulls(from, *mask, first, to, block.count)) {
    return false;
  }
  StoreNulls(line, block);
  return true;
}

void CLineFilter::FilterBlock(const DSPLine& line, const Block& block) {
  LoadBlock(line, block);
  const int width = 2 * half_ + 1;
  const auto spread = slides_ && floats_
                          ? GetSumSpread(std::span<const double>(samples_), width + 16, 2 * block.count + width)
                          : SumSpread{};
  if (spread.finite) {
    SumBox(block, spread.bound);
  } else {
    SumTaps(block);
  }
  StoreBlock(line, block);
}

void CLineFilter::LoadBlock(const DSPLine& line, const Block& block) {
  const auto room = static_cast<std::size_t>(block.count) + 2 * static_cast<std::size_t>(half_);
  const int from = std::max(-half_, -block.first);
  const int to =
      static_cast<int>(std::min(std::int64_t{block.count} + half_, std::int64_t{block.lineCount} - block.first));
  anyNull_ = from > -half_ || to < block.count + half_;
  samples_.resize(room);
  std::fill(samples_.begin(), samples_.begin() + (from + half_), 0.0);
  std::fill(samples_.begin() + (to + half_), samples_.end(), 0.0);
  double* const slots = samples_.data() + half_;
  WithSamples(line.In(), line.overlap->input->data->elementType, 0, [&]<class In>(const In* band) {
    floats_ = std::is_same_v<In, float>;
    const In* const source = band + line.inFirst + static_cast<std::ptrdiff_t>(block.first) * line.inStride;
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

// Bits of the samples from `at` on that have no result.
std::uint64_t CLineFilter::FindUnfiltered(const DSPLine& line, const Block& block, int at, int count) const {
  if (!anyNull_) return options_.rawSum || !IsNoWeight(total_) ? 0 : LowBits(count);
  if (plain_ && line.inStride == 1) {
    return line.In().mask != nullptr ? LoadBits(*line.In().mask, line.inFirst + block.first + at, count) : 0;
  }
  std::uint64_t bits = 0;
  for (int i = 0; i < count; ++i) {
    const auto slot = static_cast<std::size_t>(at + i);
    const double missing = missing_[slot];
    const bool null = nulls_[slot + static_cast<std::size_t>(half_)] != 0;
    const bool inside = options_.edgeMode != CDSPConvolution::kInside || !IsNearEnd(block, at + i);
    const bool enough = !options_.requireFullWindow || missing == 0;
    const bool weighs = options_.rawSum || !IsNoWeight(total_ - missing);
    const bool good = (!null || options_.filterNulls) && inside && enough && weighs;
    bits |= std::uint64_t{!good} << i;
  }
  return bits;
}

void CLineFilter::StoreBlock(const DSPLine& line, const Block& block) {
  // Where the whole window is required, all weights are there or the sample has no result.
  const bool even = options_.rawSum || !anyNull_ || options_.requireFullWindow;
  const double divisor = options_.rawSum || !even ? 1.0 : total_;
  if (!even) DivideEach(sums_.data(), total_, missing_.data(), block.count);
  const int first = line.outFirst + block.first * line.outStride;
  WithSamples(line.Out(), line.overlap->output->data->elementType, 0, [&]<class Out>(Out* band) {
    Out* const to = band + first;
    if (line.outStride == 1) {
      Narrow(sums_.data(), divisor, to, block.count);
      return;
    }
    for (int i = 0; i < block.count; ++i) {
      to[static_cast<std::ptrdiff_t>(i) * line.outStride] =
          static_cast<Out>(sums_[static_cast<std::size_t>(i)] / divisor);
    }
  });
  StoreNulls(line, block);
}

// What has no result: the null value and the mask.
void CLineFilter::StoreNulls(const DSPLine& line, const Block& block) {
  const CDSPDataBand& in = line.In();
  CDSPDataBand& out = line.Out();
  const auto inAt = [&](int i) { return line.inFirst + (block.first + i) * line.inStride; };
  const auto outAt = [&](int i) { return line.outFirst + (block.first + i) * line.outStride; };
  WithSamples(in, line.overlap->input->data->elementType, 0, [&](const auto* from) {
    WithSamples(out, line.overlap->output->data->elementType, 0, [&]<class Out>(Out* to) {
      for (int first = 0; first < block.count; first += kMaskWord) {
        const int count = std::min(kMaskWord, block.count - first);
        auto nulls = FindUnfiltered(line, block, first, count);
        for (auto bits = nulls; bits != 0; bits &= bits - 1) {
          const int i = std::countr_zero(bits);
          const bool keeps = options_.keepUnfiltered && !in.IsNull(inAt(first + i));
          to[outAt(first + i)] = static_cast<Out>(keeps ? from[inAt(first + i)] : out.nullValue);
          if (keeps) nulls &= ~(std::uint64_t{1} << i);
        }
        if (line.outStride == 1) {
          StoreBits(*out.mask, outAt(first), count, nulls);
        } else {
          for (int i = 0; i < count; ++i) out.mask->Set(outAt(first + i), (nulls >> i & 1) != 0);
        }
      }
    });
  });
}

}  // namespace tallyscope
