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
