// SPDX-License-Identifier: MIT
#include "bands/LineFilter.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>

#include "bands/DSPConvolution.h"
#include "platform/core/WideVectors.h"

namespace tallyscope {

namespace {

constexpr double kNoWeight = 2.220446049250313e-14;

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

bool HoldsFloats(const CDSPOperationData& entry) {
  return entry.data->elementType != CDSPData::kDouble;
}

}  // namespace

CLineFilter::CLineFilter(const CDSPConvolution& options, int axis)
    : options_(options),
      whole_(options.widths[static_cast<std::size_t>(axis)] / 2),
      box_(options.filterKind == CDSPConvolution::kBox) {}

void CLineFilter::Run(const DSPLine& line) {
  const bool floats = HoldsFloats(*line.overlap->input) && HoldsFloats(*line.overlap->output);
  FitTo(line.count, box_ && floats);
  if (box_ && floats) {
    RunBox(line);
    return;
  }
  for (int first = 0; first < line.count;) {
    const Block block{first, std::min(kBlock, line.count - first), line.count};
    TapBlock(line, block);
    first += block.count;
  }
}

// Taps farther off than the line is long meet nothing. Without them the divisor of a box, a whole number, stays what it
// is; other weights are summed all the same, for what they leave in its last bits.
void CLineFilter::FitTo(int lineCount, bool slides) {
  if (lineCount == lineCount_ && slides == slides_) return;
  lineCount_ = lineCount;
  slides_ = slides;
  half_ = std::min(whole_, lineCount);
  const bool divides = !options_.rawSum && !options_.requireFullWindow;
  const bool everywhere = options_.edgeMode != CDSPConvolution::kInside;
  beyond_ = box_ || !divides || !everywhere ? half_ : whole_;
  plain_ = divides && everywhere && !options_.filterNulls && beyond_ == half_;
  taps_.clear();
  if (slides_) {
    total_ = 2.0 * half_ + 1;
    return;
  }
  before_ = total_ = 0;
  for (int offset = -beyond_; offset <= beyond_; ++offset) {
    if (offset == -half_) before_ = total_;
    const double weight = options_.GetWeight(offset);
    if (!(std::abs(weight) >= kNoWeight)) continue;
    total_ += weight;
    if (std::abs(offset) <= half_) taps_.push_back({weight, offset});
  }
}

bool CLineFilter::IsNearEnd(const Block& block, int at) const {
  const int position = block.first + at;
  return position < half_ || position >= block.lineCount - half_;
}

// Whether a window of the block runs off the line.
bool CLineFilter::MeetsEnds(const Block& block) const {
  return block.first < half_ || block.count > block.lineCount - half_ - block.first;
}

// Bits of the samples from `at` on that have no result.
std::uint64_t CLineFilter::FindUnfiltered(const DSPLine& line, const Block& block, int at, int count) const {
  if (!anyNull_) return options_.rawSum || !IsNoWeight(total_) ? 0 : LowBits(count);
  const bvector* const mask = line.In().mask;
  if (plain_ && line.inStride == 1) {
    return mask != nullptr ? LoadBits(*mask, line.inFirst + block.first + at, count) : 0;
  }
  std::uint64_t bits = 0;
  for (int i = 0; i < count; ++i) {
    const double missing = missing_[static_cast<std::size_t>(at + i)];
    const bool null = mask != nullptr && mask->Get(line.inFirst + (block.first + at + i) * line.inStride);
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
