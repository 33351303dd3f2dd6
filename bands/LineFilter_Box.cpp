// SPDX-License-Identifier: MIT
// The sums under a box over floats, from sum to sum.
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "bands/DSPConvolution.h"
#include "bands/LineFilter.h"

namespace tallyscope {

namespace {

constexpr int kWindows = 4;  // of half the width that a block holds, so that its first sum costs little

int RoundUp(int count) {
  return (count + kMaskWord - 1) / kMaskWord * kMaskWord;
}

int CountNulls(const bvector& mask, int first, int count) {
  int nulls = 0;
  for (int i = 0; i < count; i += kMaskWord) {
    nulls += std::popcount(LoadBits(mask, first + i, std::min(kMaskWord, count - i)));
  }
  return nulls;
}

}  // namespace

// The ends of the line, where windows differ in width, apart from what lies between. That starts at a whole word of the
// mask, and so do its blocks.
void CLineFilter::RunBox(const DSPLine& line) {
  means_.SetWidth(2 * half_ + 1);
  const int left = std::min(RoundUp(half_), line.count);
  const int inner = std::max(0, line.count - left - half_ - CBoxMeans::kAhead);
  const int right = left + inner / CBoxMeans::kStep * CBoxMeans::kStep;
  RunBoxBlocks(line, 0, left);
  RunBoxBlocks(line, left, right);
  RunBoxBlocks(line, right, line.count);
}

void CLineFilter::RunBoxBlocks(const DSPLine& line, int first, int end) {
  const auto size = std::max(std::int64_t{kBlock}, std::int64_t{kWindows} * RoundUp(half_));
  while (first < end) {
    const auto count = static_cast<int>(std::min(size, std::int64_t{end} - first));
    const Block block{first, count, line.count};
    if (!MeanBlock(line, block)) BoxBlock(line, block);
    first += count;
  }
}

// A block of samples in a row, away from the ends of the line. False, and nothing is done, for any other, and where
// samples are not finite.
bool CLineFilter::MeanBlock(const DSPLine& line, const Block& block) {
  if (line.inStride != 1 || line.outStride != 1 || block.count % CBoxMeans::kStep != 0) return false;
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
  SettleMeans(line, block);
  StoreNulls(line, block);
  return true;
}

// The means that were left open, but for those of nulls.
void CLineFilter::SettleMeans(const DSPLine& line, const Block& block) {
  constexpr std::size_t kFew = 256;
  if (means_.GetOpen().empty()) return;
  const int width = 2 * half_ + 1;
  const int first = line.inFirst + block.first - half_;
  const bvector* const mask = anyNull_ ? line.In().mask : nullptr;
  windows_.clear();
  divisors_.clear();
  int counted = 0;  // the window that nulls is of
  int nulls = mask != nullptr ? CountNulls(*mask, first, width) : 0;
  for (const int at : means_.GetOpen()) {
    if (mask != nullptr) {
      if (mask->Get(first + at + half_)) continue;
      const int step = std::min(at - counted, width);
      nulls += CountNulls(*mask, first + at + width - step, step) - CountNulls(*mask, first + counted, step);
      counted = at;
    }
    windows_.push_back({at, at + width});
    divisors_.push_back(options_.rawSum ? 1.0 : total_ - nulls);
  }
  sums_.resize(windows_.size());
  const auto met = static_cast<std::size_t>(block.count) + static_cast<std::size_t>(width) - 1;
  const std::span<const float> samples(means_.GetSamples(), met);
  if (windows_.size() <= kFew) {
    SumInOrder(samples, windows_, sums_.data());
  } else {
    boxSums_.Start(samples, width);
    boxSums_.Sum(windows_, divisors_.data(), sums_.data());
  }
  float* const to = line.Out().floatData + line.outFirst + block.first;
  for (std::size_t i = 0; i < windows_.size(); ++i) to[windows_[i].from] = static_cast<float>(sums_[i] / divisors_[i]);
}

// What the windows of the block meet is loaded once; the windows come a few at a time, so that they need little room.
void CLineFilter::BoxBlock(const DSPLine& line, const Block& block) {
  LoadBox(line, block);
  boxSums_.Start(floats_, 2 * half_ + 1);
  for (int done = 0; done < block.count;) {
    const Block part{block.first + done, std::min(kBlock, block.count - done), block.lineCount};
    FindWindows(part);
    sums_.resize(windows_.size());
    boxSums_.Sum(windows_, divisors_.data(), sums_.data());
    StoreBlock(line, part);
    done += part.count;
  }
}

// How far the window of a sample goes: less than half its width where it shrinks at the ends of the line.
int CLineFilter::GetReach(const Block& block, int at) const {
  if (options_.edgeMode != CDSPConvolution::kCentred || !IsNearEnd(block, at)) return half_;
  const int position = block.first + at;
  return std::min(position, block.lineCount - 1 - position);
}

// The samples under the window of a sample, as far as they lie on the line.
BoxWindow CLineFilter::GetWindow(const Block& block, int at) const {
  const std::int64_t position = std::int64_t{block.first} + at;
  const int reach = GetReach(block, at);
  const auto from = std::max<std::int64_t>(position - reach, 0);
  const auto to = std::min<std::int64_t>(position + reach + 1, block.lineCount);
  return {static_cast<int>(from), static_cast<int>(to)};
}

void CLineFilter::LoadBox(const DSPLine& line, const Block& block) {
  firstMet_ = GetWindow(block, 0).from;
  const int count = GetWindow(block, block.count - 1).to - firstMet_;
  const int first = line.inFirst + firstMet_ * line.inStride;
  const auto at = [&](int i) { return first + i * line.inStride; };
  floats_.resize(static_cast<std::size_t>(count));
  const float* const source = line.In().floatData;
  for (int i = 0; i < count; ++i) floats_[static_cast<std::size_t>(i)] = source[at(i)];
  anyNull_ = MeetsEnds(block);
  nullsBefore_.clear();
  const bvector* const mask = line.In().mask;
  if (mask == nullptr || (line.inStride == 1 && AllClear(*mask, first, count))) return;
  anyNull_ = true;
  nullsBefore_.resize(floats_.size() + 1);
  int nulls = 0;
  for (int i = 0; i < count; ++i) {
    nullsBefore_[static_cast<std::size_t>(i)] = nulls;
    if (!mask->Get(at(i))) continue;
    floats_[static_cast<std::size_t>(i)] = 0;
    ++nulls;
  }
  nullsBefore_.back() = nulls;
}

// The windows over floats_, and what they miss.
void CLineFilter::FindWindows(const Block& block) {
  const auto count = static_cast<std::size_t>(block.count);
  windows_.resize(count);
  missing_.resize(count);
  divisors_.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    auto [from, to] = GetWindow(block, static_cast<int>(i));
    from -= firstMet_;
    to -= firstMet_;
    windows_[i] = {from, to};
    const auto before = [this](int at) { return nullsBefore_[static_cast<std::size_t>(at)]; };
    const int valid = to - from - (nullsBefore_.empty() ? 0 : before(to) - before(from));
    missing_[i] = total_ - valid;
    divisors_[i] = options_.rawSum ? 1.0 : valid;
  }
}

}  // namespace tallyscope
