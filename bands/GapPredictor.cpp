// SPDX-License-Identifier: MIT
#include "bands/GapPredictor.h"

#include <algorithm>
#include <cmath>

#include "bands/MaskRuns.h"

namespace tallyscope {

void GapPredictor::Fill(std::span<float> line, const bvector& gaps) {
  line_ = line;
  const int n = static_cast<int>(line.size());
  Stretch left = FindStretch(gaps, 0);
  if (left.end - left.first >= n) return;
  Samples samples;
  const BurgTask start = MakeTask(left, false, samples);
  if (right_.Fit(start.samples, start.order) != BurgPredictor::kNone) return;
  PredictFromRight(left.first);
  while (left.end < n) {
    const Stretch right = FindStretch(gaps, left.end);
    if (!FitAround(left, right)) {
      PredictFromLeft(left.end, right.first);
      return;
    }
    PredictFromBoth(left.end, right.first);
    left = right;
  }
}

GapPredictor::Stretch GapPredictor::FindStretch(const bvector& gaps, int from) const {
  const int n = static_cast<int>(line_.size());
  const int first = FindBit(gaps, from, n, false);
  return {first, FindBit(gaps, first, n, true)};
}

BurgTask GapPredictor::MakeTask(const Stretch& stretch, bool atEnd, Samples& samples) const {
  const int length = std::min(stretch.end - stretch.first, kLongestFit);
  std::copy_n(line_.begin() + (atEnd ? stretch.end - length : stretch.first), length, samples.begin());
  const int order = static_cast<int>(std::round(length * kOrderPercent / 100.0));
  return {{samples.data(), static_cast<std::size_t>(length)}, std::clamp(order, 3, BurgPredictor::kMaxOrder)};
}

// What was fitted to the left stretch's first samples stands, unless it goes on beyond them. False when there is
// nothing on the right that can be fitted.
bool GapPredictor::FitAround(const Stretch& left, const Stretch& right) {
  Samples last;
  Samples first;
  const BurgTask toRight = MakeTask(right, false, first);
  const bool fits = toRight.Check() == BurgPredictor::kNone;
  left_ = right_;
  if (!left.IsCut()) {
    if (fits) right_.Fit(toRight.samples, toRight.order);
    return fits;
  }
  const BurgTask toLeft = MakeTask(left, true, last);
  if (fits) {
    FitTwo(toLeft, left_, toRight, right_);
  } else {
    left_.Fit(toLeft.samples, toLeft.order);
  }
  return fits;
}

// Each value is rounded to a float before the next one builds on it.
float GapPredictor::StepLeft(int p) const {
  const int taps = std::min(left_.count, p);
  const float* before = line_.data() + p;
  double sum = 0;
  for (int j = 1; j <= taps; ++j)
    sum += left_.coefficients[static_cast<std::size_t>(j - 1)] * static_cast<double>(before[-j]);
  return static_cast<float>(sum);
}

void GapPredictor::PredictFromLeft(int first, int end) {
  for (int p = first; p < end; ++p) line_[static_cast<std::size_t>(p)] = StepLeft(p);
}

void GapPredictor::StartRight(int first, int end) {
  const auto size = static_cast<std::size_t>(end - first);
  const auto taps = static_cast<std::size_t>(right_.count);
  if (fromRight_.size() < size + taps) fromRight_.resize(size + taps);
  for (std::size_t j = 0; j < taps; ++j) {
    const std::size_t p = static_cast<std::size_t>(end) + j;
    fromRight_[size + j] = p < line_.size() ? static_cast<double>(line_[p]) : 0.0;
  }
}

double GapPredictor::StepRight(std::size_t at) const {
  const auto taps = static_cast<std::size_t>(right_.count);
  const double* behind = fromRight_.data() + at;
  double sum = 0;
  for (std::size_t j = 1; j <= taps; ++j) sum += right_.coefficients[j - 1] * behind[j];
  return sum;
}

void GapPredictor::PredictFromRight(int end) {
  StartRight(0, end);
  for (auto i = static_cast<std::size_t>(end); i-- > 0;) {
    fromRight_[i] = StepRight(i);
    line_[i] = static_cast<float>(fromRight_[i]);
  }
}

// Each prediction waits for its own last value, so both go together.
void GapPredictor::PredictFromBoth(int first, int end) {
  StartRight(first, end);
  const int size = end - first;
  for (int i = 0; i < size; ++i) {
    line_[static_cast<std::size_t>(first + i)] = StepLeft(first + i);
    const auto mirrored = static_cast<std::size_t>(size - 1 - i);
    fromRight_[mirrored] = StepRight(mirrored);
  }
  float* gap = line_.data() + first;
  for (int i = 0; i < size; ++i) {
    const double right = static_cast<double>(size - i) * (size - i);
    const double left = (i + 1.0) * (i + 1.0);
    gap[i] = static_cast<float>(gap[i] * right / (left + right) +
                                fromRight_[static_cast<std::size_t>(i)] * left / (left + right));
  }
}

}  // namespace tallyscope
