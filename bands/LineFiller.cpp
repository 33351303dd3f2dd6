// SPDX-License-Identifier: MIT
#include "bands/LineFiller.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "bands/MaskRuns.h"

namespace tallyscope {

template <class Sample>
class LineFiller::Line {
 public:
  Line(LineFiller& filler, std::span<Sample> samples, const LineTrend& trend)
      : filler_(filler),
        settings_(filler.settings_),
        samples_(samples),
        trend_(trend),
        n_(static_cast<int>(samples.size())) {}

  void HoldLast(const bvector& nulls) {
    auto held = static_cast<Sample>(settings_.endValue);
    for (int t = 0; t < n_; ++t) {
      if (nulls.Get(t)) At(t) = held;
      held = At(t);
    }
  }

  void Fill(const bvector& nulls) {
    filler_.empty_ = nulls;
    firstAnchored_ = settings_.pinEnds && nulls.Get(0);
    lastAnchored_ = settings_.pinEnds && nulls.Get(n_ - 1);
    if (firstAnchored_) filler_.empty_.Set(0, false);
    if (lastAnchored_) filler_.empty_.Set(n_ - 1, false);
    MeasureAmplitude(nulls);
    if (settings_.predict) {
      Predict();
    } else {
      FollowCurve();
    }
  }

 private:
  Sample& At(int t) { return samples_[static_cast<std::size_t>(t)]; }
  float& Value(int t) { return filler_.values_[static_cast<std::size_t>(t)]; }
  double Normalise(int t) { return (static_cast<double>(At(t)) - trend_.At(t)) / amplitude_; }
  void Put(int t, double value) { At(t) = static_cast<Sample>(value * amplitude_ + trend_.At(t)); }

  // Visits the runs of bits that are set, or of those that are clear, from first to end.
  template <class Visit>
  void EachRun(const bvector& mask, bool value, Visit visit) {
    for (int first = FindBit(mask, 0, n_, value); first < n_;) {
      const int end = FindBit(mask, first, n_, !value);
      visit(first, end);
      first = FindBit(mask, end, n_, value);
    }
  }

  void MeasureAmplitude(const bvector& nulls) {
    if (!settings_.normalise) return;
    double squares = 0;
    int valid = 0;
    EachRun(nulls, false, [&](int first, int end) {
      for (int t = first; t < end; ++t) {
        const double rest = static_cast<double>(At(t)) - trend_.At(t);
        squares += rest * rest;
      }
      valid += end - first;
    });
    if (valid > 0) amplitude_ = std::sqrt(squares / valid);
    if (amplitude_ == 0) amplitude_ = 1;
  }

  void Predict() {
    filler_.gaps_ = filler_.empty_;
    filler_.values_.resize(samples_.size());
    EachRun(filler_.empty_, false, [&](int first, int end) {
      for (int t = first; t < end; ++t) Value(t) = static_cast<float>(Normalise(t));
    });
    if (firstAnchored_) Value(0) = static_cast<float>(settings_.endValue);
    if (lastAnchored_) Value(n_ - 1) = static_cast<float>(settings_.endValue);
    EachRun(filler_.empty_, true, [&](int first, int end) {
      std::fill(&Value(first), &Value(first) + (end - first), 0.0f);
      // No stretch may be a single sample.
      const bool lone = first == 1 || (first > 1 && filler_.gaps_.Get(first - 2));
      if (lone) TakeCurve(first);
    });
    if (!filler_.gaps_.Get(n_ - 1) && filler_.gaps_.Get(n_ - 2)) TakeCurve(n_ - 2);
    filler_.predictor_.Fill(filler_.values_, filler_.gaps_);
    EachRun(filler_.empty_, true, [&](int first, int end) {
      for (int t = first; t < end; ++t) Put(t, Value(t));
    });
    if (firstAnchored_) Put(0, Value(0));
    if (lastAnchored_) Put(n_ - 1, Value(n_ - 1));
  }

  void TakeCurve(int t) {
    const int start = KnotBefore(t);
    Value(t) = static_cast<float>(MakeSegment(start).At(t - start));
    filler_.gaps_.Set(t, false);
  }

  void FollowCurve() {
    EachRun(filler_.empty_, true, [&](int first, int end) {
      const LocalSlopeSegment segment = MakeSegment(first - 1);
      for (int t = first; t < end; ++t) Put(t, segment.At(t - (first - 1)));
    });
    if (firstAnchored_) Put(0, settings_.endValue);
    if (lastAnchored_) Put(n_ - 1, settings_.endValue);
  }

  // The curve's points stand at the samples and anchors, and twice in front of and behind the line, there with the
  // value of the nearest one.

  int KnotBefore(int t) {
    return t > n_ ? n_ : t > 0 ? FindBitBefore(filler_.empty_, 0, std::min(t, n_), false) : t - 1;
  }
  int KnotBehind(int t) { return t < 0 ? FindBehind(t) : t < n_ ? FindBit(filler_.empty_, t + 1, n_, false) : t + 1; }
  int FindBehind(int t) { return t == -2 ? -1 : FindBit(filler_.empty_, 0, n_, false); }

  double KnotValue(int t) {
    if (t < 0) t = KnotBehind(-1);
    if (t >= n_) t = KnotBefore(n_);
    const bool anchor = t < 0 || (t == 0 && firstAnchored_) || (t == n_ - 1 && lastAnchored_);
    return anchor ? settings_.endValue : Normalise(t);
  }

  LocalSlopeSegment MakeSegment(int start) {
    SlopeKnots knots;
    std::array<int, 6> at{};
    at[2] = start;
    for (knots.before = 0; knots.before < 2 && at[static_cast<std::size_t>(2 - knots.before)] > -2; ++knots.before) {
      at[static_cast<std::size_t>(1 - knots.before)] = KnotBefore(at[static_cast<std::size_t>(2 - knots.before)]);
    }
    for (knots.after = 0; knots.after < 3 && at[static_cast<std::size_t>(2 + knots.after)] <= n_; ++knots.after) {
      at[static_cast<std::size_t>(3 + knots.after)] = KnotBehind(at[static_cast<std::size_t>(2 + knots.after)]);
    }
    for (std::size_t i = static_cast<std::size_t>(2 - knots.before); i <= static_cast<std::size_t>(2 + knots.after);
         ++i) {
      knots.at[i] = at[i];
      knots.value[i] = KnotValue(at[i]);
    }
    return LocalSlopeSegment(knots);
  }

  LineFiller& filler_;
  const LineFillSettings& settings_;
  std::span<Sample> samples_;
  const LineTrend& trend_;
  int n_;
  double amplitude_ = 1;
  bool firstAnchored_ = false;
  bool lastAnchored_ = false;
};

template <class Sample>
void LineFiller::Fill(std::span<Sample> samples, const bvector& nulls, const LineTrend& trend) {
  const int n = static_cast<int>(samples.size());
  if (FindBit(nulls, 0, n, true) == n) return;
  Line<Sample> line(*this, samples, trend);
  if (n < 3) {
    line.HoldLast(nulls);
  } else {
    line.Fill(nulls);
  }
}

template void LineFiller::Fill(std::span<float> samples, const bvector& nulls, const LineTrend& trend);
template void LineFiller::Fill(std::span<double> samples, const bvector& nulls, const LineTrend& trend);

}  // namespace tallyscope
