// SPDX-License-Identifier: MIT
#include "bands/BoxSums.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "bands/LaneSums.h"
#include "platform/core/WideVectors.h"

namespace tallyscope {

namespace {

constexpr int kFew = 8 * kLanes;     // windows that are summed in order at once
constexpr int kGap = 16;             // between open windows that are taken together
constexpr double kFiner = 1.0 / 16;  // of a step, from which on quick sums are worth a second try

std::size_t At(int i) {
  return static_cast<std::size_t>(i);
}

// 1 where sums within `bound` of this one would be narrowed to different floats, or to a zero whose sign may differ.
TALLYSCOPE_WIDE_VECTORS
void FindOpen(const double* sums, const double* divisors, double bound, unsigned char* open, int count) {
  for (int i = 0; i < count; ++i) {
    const auto low = static_cast<float>((sums[i] - bound) / divisors[i]);
    const auto high = static_cast<float>((sums[i] + bound) / divisors[i]);
    open[i] = static_cast<unsigned char>(!(low == high) | (low == 0.0f));
  }
}

// One past the last open window of a run that begins at `first`.
int FindRunEnd(const std::vector<unsigned char>& open, int first) {
  int end = first + 1;
  for (int i = end; i < static_cast<int>(open.size()) && i - end < kGap; ++i) {
    if (open[At(i)] != 0) end = i + 1;
  }
  return end;
}

// Windows each of which overlaps the one before it, by their indices. A lane takes all samples, but what it holds
// counts from its window's first sample to the last.
void SumOverlapping(const float* samples, std::span<const BoxWindow> windows, std::span<const int> indices,
                    double* sums) {
  double lanes[kLanes] = {};
  const auto window = [&](std::size_t lane) { return windows[At(indices[lane])]; };
  std::size_t begun = 0;
  std::size_t ended = 0;
  for (int at = window(0).from;;) {
    for (; begun < indices.size() && window(begun).from == at; ++begun) lanes[begun] = 0;
    for (; ended < begun && window(ended).to == at; ++ended) sums[indices[ended]] = lanes[ended];
    if (ended == indices.size()) return;
    int next = ended < begun ? window(ended).to : std::numeric_limits<int>::max();
    if (begun < indices.size()) next = std::min(next, window(begun).from);
    AddToLanes(samples + at, next - at, lanes);
    at = next;
  }
}

void SumInOrder(std::span<const float> samples, std::span<const BoxWindow> windows, std::span<const int> indices,
                double* sums) {
  for (std::size_t first = 0; first < indices.size();) {
    std::size_t end = first + 1;
    while (end < indices.size() && end - first < kLanes &&
           windows[At(indices[end])].from < windows[At(indices[end - 1])].to) {
      ++end;
    }
    SumOverlapping(samples.data(), windows, indices.subspan(first, end - first), sums);
    first = end;
  }
}

}  // namespace

void SumInOrder(std::span<const float> samples, std::span<const BoxWindow> windows, double* sums) {
  std::vector<int> all(windows.size());
  std::iota(all.begin(), all.end(), 0);
  SumInOrder(samples, windows, all, sums);
}

void CBoxSums::Start(std::span<const float> samples, int width) {
  samples_ = samples;
  odd_.clear();
  if (!grid_.Fit(samples_, width)) {
    TakeOutOdd();
    grid_.Fit(samples_, width);
  }
  from_ = to_ = 0;
  sum_ = 0;
  firstOdd_ = 0;
}

void CBoxSums::TakeOutOdd() {
  finite_.assign(samples_.begin(), samples_.end());
  samples_ = finite_;
  for (std::size_t i = 0; i < finite_.size(); ++i) {
    if (std::isfinite(finite_[i])) continue;
    odd_.push_back({static_cast<int>(i), static_cast<double>(finite_[i]), 0});
    finite_[i] = 0;
  }
  for (std::size_t i = odd_.size(); i-- > 0;) {
    const bool goesOn = i + 1 < odd_.size() && odd_[i].value == odd_[i + 1].value;
    odd_[i].differing = goesOn ? odd_[i + 1].differing : i + 1;
  }
}

void CBoxSums::Sum(std::span<const BoxWindow> windows, const double* divisors, double* sums) {
  Slide(windows, sums);
  if (!grid_.IsExact()) {
    open_.resize(windows.size());
    FindOpen(sums, divisors, grid_.GetBound(), open_.data(), static_cast<int>(open_.size()));
    Settle(windows, divisors, sums);
  }
  if (!odd_.empty()) ApplyOdd(windows, sums);
}

// Sums of rounded samples, each from the one before it. Nothing longer than a window is summed on the way.
void CBoxSums::Slide(std::span<const BoxWindow> windows, double* sums) {
  const double beside = grid_.GetBeside();
  const auto sample = [&](int i) { return (static_cast<double>(samples_[At(i)]) + beside) - beside; };
  for (const BoxWindow& window : windows) {
    if (window.from >= to_) {
      from_ = to_ = window.from;
      sum_ = 0;
    }
    for (; from_ < window.from; ++from_) sum_ -= sample(from_);
    for (; to_ < window.to; ++to_) sum_ += sample(to_);
    *sums++ = sum_;
  }
}

void CBoxSums::Settle(std::span<const BoxWindow> windows, const double* divisors, double* sums) {
  rest_.clear();
  for (int i = 0; i < static_cast<int>(open_.size()); ++i) {
    if (open_[At(i)] == 0) continue;
    const int end = FindRunEnd(open_, i);
    SettleRun(windows, i, end, divisors, sums);
    i = end;
  }
  SumInOrder(samples_, windows, rest_, sums);
}

// What the quick sums leave open in long runs are windows that lie beside far larger samples, for which the grid was
// made: they, or a half of them, get their own. The others are summed in order.
void CBoxSums::SettleRun(std::span<const BoxWindow> windows, int first, int end, const double* divisors, double* sums) {
  if (end - first <= kFew) {
    for (int i = first; i < end; ++i) {
      if (open_[At(i)] != 0) rest_.push_back(i);
    }
  } else if (!SumApart(windows.subspan(At(first), At(end - first)), divisors + first, sums + first)) {
    const int middle = std::midpoint(first, end);
    SettleRun(windows, first, middle, divisors, sums);
    SettleRun(windows, middle, end, divisors, sums);
  }
}

// False, and nothing is done, where the samples that these windows meet have no much finer grid.
bool CBoxSums::SumApart(std::span<const BoxWindow> windows, const double* divisors, double* sums) const {
  const int first = windows.front().from;
  std::vector<BoxWindow> moved(windows.begin(), windows.end());
  int width = 0;
  for (BoxWindow& window : moved) {
    window = {window.from - first, window.to - first};
    width = std::max(width, window.to - window.from);
  }
  CBoxSums part;
  part.Start(samples_.subspan(At(first), At(moved.back().to)), width);
  if (!part.grid_.IsExact() && part.grid_.GetStep() > kFiner * grid_.GetStep()) return false;
  part.Sum(moved, divisors, sums);
  return true;
}

// A sum that meets an infinite sample stays that until it meets one that differs, and is no number from there on,
// whatever lies between them.
void CBoxSums::ApplyOdd(std::span<const BoxWindow> windows, double* sums) {
  for (std::size_t i = 0; i < windows.size(); ++i) {
    while (firstOdd_ < odd_.size() && odd_[firstOdd_].at < windows[i].from) ++firstOdd_;
    if (firstOdd_ == odd_.size()) return;
    const OddSample& odd = odd_[firstOdd_];
    if (odd.at >= windows[i].to) continue;
    const bool stays = std::isnan(odd.value) || odd.differing == odd_.size() || odd_[odd.differing].at >= windows[i].to;
    sums[i] = stays ? odd.value : odd.value + odd_[odd.differing].value;
  }
}

}  // namespace tallyscope
