// SPDX-License-Identifier: MIT
#include "bands/GapPredictor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "bands/MaskRuns.h"

namespace tallyscope {

void GapPredictor::Fill(std::span<float> line, const bvector& gaps) {
  line_ = line;
  const int n = static_cast<int>(line.size());
  int gap = 0;  // where the gap before the stretch starts
  for (int start = FindBit(gaps, 0, n, false); start < n;) {
    const int end = FindBit(gaps, start, n, true);
    if (end - start >= n) return;
    const int length = std::min(end - start, kLongestFit);
    const int order =
        std::clamp(static_cast<int>(std::round(length * kOrderPercent / 100.0)), 3, BurgPredictor::kMaxOrder);
    if (!Fit(start, length, order)) return;
    if (gap < start) PredictBackward(gap, start, gap > 0);
    if (end == n) return;
    if (length < end - start && !Fit(end - length, length, order)) return;
    const int next = FindBit(gaps, end, n, false);
    PredictForward(end, next);
    gap = end;
    start = next;
  }
}

bool GapPredictor::Fit(int first, int length, int order) {
  std::array<double, kLongestFit> samples;
  std::copy_n(line_.begin() + first, length, samples.begin());
  return predictor_.Fit({samples.data(), static_cast<std::size_t>(length)}, order) == BurgPredictor::kNone;
}

// Each value is rounded to a float before the next one builds on it.
void GapPredictor::PredictForward(int first, int end) {
  const int count = predictor_.count;
  const double* c = predictor_.coefficients.data();
  for (int p = first; p < end; ++p) {
    const int taps = std::min(count, p);
    double sum = 0;
    for (int j = 1; j <= taps; ++j) sum += c[j - 1] * static_cast<double>(line_[static_cast<std::size_t>(p - j)]);
    line_[static_cast<std::size_t>(p)] = static_cast<float>(sum);
  }
}

// From the stretch that starts at `end`, in double.
void GapPredictor::PredictBackward(int first, int end, bool blend) {
  constexpr int kBlock = 512;
  std::array<double, kBlock + BurgPredictor::kMaxOrder> window;  // the samples from `low` on
  const int count = predictor_.count;
  const double* c = predictor_.coefficients.data();
  const int n = static_cast<int>(line_.size());
  for (int j = 0; j < count; ++j) {
    window[static_cast<std::size_t>(j)] =
        end + j < n ? static_cast<double>(line_[static_cast<std::size_t>(end + j)]) : 0.0;
  }
  for (int high = end; high > first;) {
    const int low = std::max(first, high - kBlock);
    std::copy_backward(window.begin(), window.begin() + count, window.begin() + (high - low) + count);
    for (int p = high - 1; p >= low; --p) {
      double* at = window.data() + (p - low);
      double sum = 0;
      for (int j = 1; j <= count; ++j) sum += c[j - 1] * at[j];
      *at = sum;
      float& sample = line_[static_cast<std::size_t>(p)];
      if (!blend) {
        sample = static_cast<float>(sum);
        continue;
      }
      const double right = static_cast<double>(end - p) * (end - p);
      const double left = static_cast<double>(p - first + 1) * (p - first + 1);
      sample = static_cast<float>(sample * right / (left + right) + sum * left / (left + right));
    }
    high = low;
  }
}

}  // namespace tallyscope
