// SPDX-License-Identifier: MIT
#include "bands/LineFilter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "bands/DSPConvolution.h"
#include "platform/core/WideVectors.h"

namespace tallyscope {

namespace {

constexpr double kNoWeight = 2.220446049250313e-14;
constexpr int kBlock = 2048;

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

}  // namespace

CLineFilter::CLineFilter(const CDSPConvolution& options, const std::vector<double>& taps)
    : options_(options), half_(static_cast<int>(taps.size() / 2)) {
  for (std::size_t i = 0; i < taps.size(); ++i) {
    if (!(std::abs(taps[i]) >= kNoWeight)) continue;
    taps_.push_back({taps[i], static_cast<int>(i) - half_});
    total_ += taps[i];
  }
}

void CLineFilter::Run(const DSPLine& line) {
  const int block = std::max(kBlock, half_);
  for (int first = 0; first < line.count; first += block) {
    const int count = std::min(block, line.count - first);
    LoadBlock(line, first, count);
    SumBlock(count);
    StoreBlock(line, first, count);
  }
}

void CLineFilter::LoadBlock(const DSPLine& line, int first, int count) {
  const auto room = static_cast<std::size_t>(count) + 2 * static_cast<std::size_t>(half_);
  samples_.assign(room, 0.0);
  nulls_.assign(room, 1.0);
  const int from = std::max(-half_, -first);
  const int to =
      static_cast<int>(std::min<std::int64_t>(std::int64_t{count} + half_, std::int64_t{line.count} - first));
  anyNull_ = from > -half_ || to < count + half_;
  const CDSPDataBand& in = line.In();
  WithSamples(in, line.overlap->input->data->elementType, 0, [&](const auto* band) {
    for (int i = from; i < to; ++i) {
      const int at = line.inFirst + (first + i) * line.inStride;
      const auto slot = static_cast<std::size_t>(i + half_);
      if (in.IsNull(at)) {
        anyNull_ = true;
        continue;
      }
      samples_[slot] = band[at];
      nulls_[slot] = 0.0;
    }
  });
}

void CLineFilter::SumBlock(int count) {
  sums_.assign(static_cast<std::size_t>(count), 0.0);
  missing_.assign(static_cast<std::size_t>(count), 0.0);
  const double* const samples = samples_.data() + half_;
  const double* const nulls = nulls_.data() + half_;
  std::size_t i = 0;
  for (; i + 4 <= taps_.size(); i += 4) {
    const Tap* const t = taps_.data() + i;
    const double weights[4] = {t[0].weight, t[1].weight, t[2].weight, t[3].weight};
    AddFourTaps(samples + t[0].offset, samples + t[1].offset, samples + t[2].offset, samples + t[3].offset, weights,
                sums_.data(), count);
    if (!anyNull_) continue;
    // Where the whole window is required, what is missing is counted, not weighed: weights may cancel.
    const double ones[4] = {1, 1, 1, 1};
    AddFourTaps(nulls + t[0].offset, nulls + t[1].offset, nulls + t[2].offset, nulls + t[3].offset,
                options_.requireFullWindow ? ones : weights, missing_.data(), count);
  }
  for (; i < taps_.size(); ++i) {
    AddTap(samples + taps_[i].offset, taps_[i].weight, sums_.data(), count);
    if (!anyNull_) continue;
    AddTap(nulls + taps_[i].offset, options_.requireFullWindow ? 1.0 : taps_[i].weight, missing_.data(), count);
  }
}

// Near the ends of a line with a centred window, which shrinks on both sides.
void CLineFilter::FilterCentred(int first, int at, int lineCount) {
  const int position = first + at;
  const int reach = std::min(position, lineCount - 1 - position);
  double sum = 0;
  double missing = 0;
  for (const Tap& tap : taps_) {
    const bool outside = std::abs(tap.offset) > reach;
    const auto slot = static_cast<std::size_t>(std::int64_t{at} + half_ + (outside ? 0 : tap.offset));
    if (outside || nulls_[slot] != 0) {
      missing += options_.requireFullWindow ? 1.0 : tap.weight;
    } else {
      sum += samples_[slot] * tap.weight;
    }
  }
  sums_[static_cast<std::size_t>(at)] = sum;
  missing_[static_cast<std::size_t>(at)] = missing;
}

void CLineFilter::StoreBlock(const DSPLine& line, int first, int count) {
  const CDSPDataBand& in = line.In();
  CDSPDataBand& out = line.Out();
  const int last = line.count - 1;
  WithSamples(in, line.overlap->input->data->elementType, 0, [&](const auto* from) {
    WithSamples(out, line.overlap->output->data->elementType, 0, [&]<class Out>(Out* to) {
      for (int i = 0; i < count; ++i) {
        const int position = first + i;
        const auto slot = static_cast<std::size_t>(i);
        const bool null = nulls_[slot + static_cast<std::size_t>(half_)] != 0;
        const bool nearEnd = position < half_ || position > last - half_;
        bool good = (!null || options_.filterNulls) && !(nearEnd && options_.edgeMode == CDSPConvolution::kInside);
        if (good && nearEnd && options_.edgeMode == CDSPConvolution::kCentred) FilterCentred(first, i, line.count);
        double value = sums_[slot];
        if (options_.requireFullWindow && missing_[slot] != 0) good = false;
        if (!options_.rawSum) {
          const double divisor = options_.requireFullWindow ? total_ : total_ - missing_[slot];
          if (divisor >= -kNoWeight && divisor <= kNoWeight) good = false;
          value /= divisor;
        }
        const int at = line.outFirst + position * line.outStride;
        const bool keeps = !good && options_.keepUnfiltered && !null;
        if (keeps) value = from[line.inFirst + position * line.inStride];
        to[at] = good || keeps ? static_cast<Out>(value) : static_cast<Out>(out.nullValue);
        out.mask->Set(at, !good && !keeps);
      }
    });
  });
}

}  // namespace tallyscope
