// SPDX-License-Identifier: MIT
#include "bands/DSPFillNull.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "BandTesting.h"
#include "bands/GSpline.h"
#include "bands/MaskRuns.h"
#include "bands/Stats_DSPData.h"
#include "statistics/Stats_Bivariate.h"

namespace tallyscope {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

struct Settings {
  std::string name;
  bool pinEnds = true;
  double endValue = 0;
  bool removeTrend = true;
  bool normalise = true;
  bool predict = true;
};

// The fill of one line by the plainest means: every list whole, the curve whole, a copy of the line at each stretch,
// positions from 1 in the prediction.
class PlainFill {
 public:
  PlainFill(TestBand& band, const Settings& settings) : band_(band), s_(settings), n_(band.GetSize()) {}

  std::vector<float> Run() {
    std::vector<float> filled = band_.samples;
    if (n_ < 3) {
      double held = s_.endValue;
      for (int t = 0; t < n_; ++t) {
        if (IsNull(t)) filled[At(t)] = static_cast<float>(held);
        held = filled[At(t)];
      }
      return filled;
    }
    FindTrend();
    FindAmplitude();
    MakeCurve();
    if (s_.predict) {
      Predict();
    } else {
      for (int t = 0; t < n_; ++t) r_.push_back(curve_[At(t + 2)][1]);
    }
    for (int t = 0; t < n_; ++t) {
      if (IsNull(t)) filled[At(t)] = static_cast<float>(r_[At(t)] * sigma_ + Trend(t));
    }
    return filled;
  }

 private:
  static std::size_t At(int t) { return static_cast<std::size_t>(t); }
  bool IsNull(int t) const { return band_.nulls.Get(t); }
  bool IsPinned(int t) const { return s_.pinEnds && IsNull(t) && (t == 0 || t == n_ - 1); }
  double Trend(int t) const { return a_ * t + b_; }
  double Y(int t) const { return (band_.samples[At(t)] - Trend(t)) / sigma_; }

  void FindTrend() {
    if (!s_.removeTrend) return;
    CDSPData data;
    data.SetDimensions(n_, 1, 1);
    band_.Put(data);
    CStats_DSPData table(&data);
    CStats_Bivariate regression;
    regression.Add(&table, -1);
    regression.Add(&table, 0);
    regression.Calculate(3, nullptr);
    a_ = regression.yOnX[0];
    b_ = regression.yOnX[1];
  }

  void FindAmplitude() {
    double sum = 0;
    int valid = 0;
    for (int t = 0; t < n_; ++t) {
      if (IsNull(t)) continue;
      sum += (band_.samples[At(t)] - Trend(t)) * (band_.samples[At(t)] - Trend(t));
      ++valid;
    }
    if (s_.normalise && valid > 0) sigma_ = std::sqrt(sum / valid);
    if (sigma_ == 0) sigma_ = 1;
  }

  void MakeCurve() {
    CGSpline::Points points{{-2, s_.endValue, 0}, {-1, s_.endValue, 0}};
    for (int t = 0; t < n_; ++t) {
      if (!IsNull(t)) {
        points.push_back({static_cast<double>(t), Y(t), 0});
      } else if (IsPinned(t)) {
        points.push_back({static_cast<double>(t), s_.endValue, 0});
      }
    }
    const double last = points.back()[1];
    points.push_back({static_cast<double>(n_), last, 0});
    points.push_back({static_cast<double>(n_ + 1), last, 0});
    points[0][1] = points[1][1] = points[2][1];
    CGSpline spline;
    spline.SetArray(CGSpline::kControlPoints, &points);
    spline.SetArray(CGSpline::kOutput, &curve_);
    spline.SetMeasure(1);
    spline.SetClosure(CGSpline::kOpen);
    spline.SetSampling(CGSpline::kByStep);
    spline.SetStep(1.0);
    spline.SetTolerance(1e-7);
    spline.SetTension(0.25);
    ASSERT_EQ(spline.Compute(), n_ + 4);
    ASSERT_EQ(curve_[1][0], -1);
    ASSERT_EQ(curve_.back()[0], n_ + 1);
  }

  void Predict() {
    r_.assign(At(n_), 0);
    gap_.assign(At(n_), false);
    int c = 0;
    for (int t = 0; t < n_; ++t) {
      if (!IsNull(t)) {
        Store(t, Y(t)), ++c;
      } else if (IsPinned(t)) {
        Store(t, s_.endValue), ++c;
      } else if (c == 1) {
        Store(t, curve_[At(t + 2)][1]), c = 2;
      } else {
        gap_[At(t)] = true, c = 0;
      }
    }
    if (!gap_[At(n_ - 1)] && gap_[At(n_ - 2)]) {
      Store(n_ - 2, curve_[At(n_)][1]);
      gap_[At(n_ - 2)] = false;
    }
    FillGaps();
  }

  void Store(int t, double value) { r_[At(t)] = static_cast<float>(value); }
  double R(int p) const { return p >= 1 && p <= n_ ? r_[At(p - 1)] : 0; }  // from 1

  void FillGaps() {
    std::vector<std::pair<int, int>> stretches;
    for (int t = 0; t < n_; ++t) {
      if (gap_[At(t)]) continue;
      if (t == 0 || gap_[At(t - 1)]) stretches.push_back({t + 1, t + 1});
      stretches.back().second = t + 1;
    }
    if (stretches.empty()) return;
    bool gapBefore = stretches[0].first != 1;
    for (std::size_t k = 0; k < stretches.size(); ++k) {
      const auto [s, e] = stretches[k];
      int length = e - s + 1;
      if (length < 1 || length >= n_) return;
      const bool cut = length > 100;
      if (cut) length = 100;
      const int m = std::min(std::max(static_cast<int>(std::round(length * 10 / 100.0)), 3), 60);
      if (!Burg(s, length, m)) return;
      if (gapBefore) {
        const int g = k == 0 ? 1 : stretches[k - 1].second + 1;
        std::vector<double> w(At(n_ + 1 + 64), 0.0);
        for (int p = 1; p <= n_; ++p) w[At(p)] = R(p);
        for (int p = s - 1; p >= g; --p) {
          w[At(p)] = 0;
          for (int j = 1; j <= m; ++j) w[At(p)] += c_[At(j)] * w[At(p + j)];
        }
        for (int p = s - 1; p >= g; --p) {
          const double d2 = double(s - p) * (s - p);
          const double e2 = double(p - g + 1) * (p - g + 1);
          Store(p - 1, k == 0 ? w[At(p)] : R(p) * d2 / (e2 + d2) + w[At(p)] * e2 / (e2 + d2));
        }
      }
      if (e >= n_) return;
      if (cut && !Burg(e - 99, 100, m)) return;
      const int next = k + 1 < stretches.size() ? stretches[k + 1].first : n_ + 1;
      for (int p = e + 1; p < next; ++p) {
        double sum = 0;
        for (int j = 1; j <= m; ++j) sum += c_[At(j)] * R(p - j);
        Store(p - 1, sum);
      }
      gapBefore = true;
    }
  }

  bool Burg(int first, int n, int m) {
    if (n < 2) return false;
    std::vector<double> f(At(n + 2)), b(At(n + 2)), d(At(m + 1)), p(At(m + 1));
    for (int j = 1; j < n; ++j) f[At(j)] = R(first + j - 1), b[At(j)] = R(first + j);
    for (int k = 1; k <= m; ++k) {
      double num = 0;
      double den = 0;
      for (int j = 1; j <= n - k; ++j) {
        num += f[At(j)] * b[At(j)];
        den += f[At(j)] * f[At(j)] + b[At(j)] * b[At(j)];
      }
      d[At(k)] = num == 0 && den == 0 ? 0 : 2 * num / den;
      for (int i = 1; i < k; ++i) d[At(i)] = p[At(i)] - d[At(k)] * p[At(k - i)];
      p = d;
      for (int j = 1; j <= n - k - 1; ++j) {
        f[At(j)] = f[At(j)] - p[At(k)] * b[At(j)];
        b[At(j)] = b[At(j + 1)] - p[At(k)] * f[At(j + 1)];
      }
    }
    c_ = d;
    return true;
  }

  TestBand& band_;
  Settings s_;
  int n_;
  double a_ = 0, b_ = 0, sigma_ = 1;
  CGSpline::Points curve_;
  std::vector<double> r_;  // holds floats in the prediction
  std::vector<bool> gap_;
  std::vector<double> c_;
};

void Apply(const Settings& settings, CDSPFillNull& fill) {
  fill.dimension = 1;
  fill.pinEnds = settings.pinEnds;
  fill.endValue = settings.endValue;
  fill.removeTrend = settings.removeTrend;
  fill.normalise = settings.normalise;
  fill.predict = settings.predict;
}

// Bits, so that NaN equals NaN and 0 is not -0; which NaN is no figure.
std::vector<std::uint32_t> Bits(const std::vector<float>& values) {
  std::vector<std::uint32_t> bits;
  for (const float v : values) bits.push_back(std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v));
  return bits;
}

std::vector<double> Noise(int n, unsigned seed, double nullShare, int longestGap = 1) {
  std::mt19937 random(seed);
  const auto draw = [&] { return random() / 4294967296.0; };
  std::vector<double> values;
  while (static_cast<int>(values.size()) < n) {
    const double t = static_cast<double>(values.size());
    if (draw() < nullShare) {
      values.insert(values.end(), 1 + random() % static_cast<unsigned>(longestGap), kNan);
    } else {
      values.push_back(100 + 0.01 * t + 5 * std::sin(t / 7) + draw());
    }
  }
  values.resize(static_cast<std::size_t>(n));
  return values;
}

std::vector<double> Put(std::vector<double> values, std::initializer_list<int> places, double value) {
  for (const int place : places) values[static_cast<std::size_t>(place)] = value;
  return values;
}

struct Band {
  std::string name;
  std::vector<double> values;
};

std::vector<Band> NastyBands() {
  const auto alternating = [](int n, int first) {
    auto values = Noise(n, 5, 0);
    for (int t = first; t < n; t += 2) values[static_cast<std::size_t>(t)] = kNan;
    return values;
  };
  const std::vector<double> constant(50, 7.25);
  std::vector<double> line;
  for (int t = 0; t < 40; ++t) line.push_back(3 * t - 20);
  auto decaying = Noise(3000, 9, 0);
  std::fill(decaying.begin() + 300, decaying.begin() + 2700, kNan);
  return {
      {"lone null", {kNan}},
      {"one", {4}},
      {"two, second null", {4, kNan}},
      {"two, first null", {kNan, 4}},
      {"three", {1, kNan, 2}},
      {"three, one in the middle", {kNan, 5, kNan}},
      {"three, all null", {kNan, kNan, kNan}},
      {"all null", std::vector<double>(20, kNan)},
      {"no null", Noise(30, 1, 0)},
      {"leading", Put(Noise(40, 2, 0), {0, 1, 2, 3, 4}, kNan)},
      {"trailing", Put(Noise(40, 2, 0), {36, 37, 38, 39}, kNan)},
      {"second and last but one", Put(Noise(40, 2, 0), {1, 38}, kNan)},
      {"lone samples", Put(std::vector<double>(30, kNan), {3, 9, 10, 17, 28}, 6.5)},
      {"lone sample at the end", Put(std::vector<double>(30, kNan), {4, 5, 29}, 2.5)},
      {"lone, null, valid, null", Put(std::vector<double>(30, kNan), {5, 7, 12, 14, 15}, 1.5)},
      {"alternating from 0", alternating(41, 0)},
      {"alternating from 1", alternating(41, 1)},
      {"constant", Put(constant, {10, 11, 30}, kNan)},
      {"constant, ends null", Put(constant, {0, 49}, kNan)},
      {"a line", Put(line, {5, 6, 7, 20}, kNan)},
      {"NaN samples", Noise(60, 3, 0.1)},
      {"infinity", Put(Noise(60, 3, 0.1), {20}, kInf)},
      {"huge", Put(Noise(60, 4, 0.1), {10, 40}, 1e38)},
      {"huge of both signs", Put(Put(Noise(60, 4, 0.1, 5), {10}, 3e38), {44}, -3e38)},
      {"tiny", Put(std::vector<double>(60, 1e-38), {7, 8, 9, 30}, kNan)},
      {"stretches of 99 to 101", Put(Noise(305, 6, 0), {99, 200, 302, 303}, kNan)},
      {"one per cent", Noise(5000, 7, 0.01)},
      {"long gaps", Noise(5000, 8, 0.004, 300)},
      {"many nulls", Noise(2000, 10, 0.5, 3)},
      {"a gap where predictions die away", decaying},
  };
}

std::vector<Settings> AllSettings() {
  return {{.name = "chain"},
          {.name = "free ends", .pinEnds = false},
          {.name = "end value", .endValue = 0.3},
          {.name = "free ends, end value", .pinEnds = false, .endValue = -1.7},
          {.name = "raw", .removeTrend = false, .normalise = false},
          {.name = "curve", .predict = false},
          {.name = "curve, free ends", .pinEnds = false, .endValue = 0.1, .predict = false}};
}

TEST(DSPFillNull, AgreesWithThePlainFill) {
  for (const Settings& settings : AllSettings()) {
    for (const Band& nasty : NastyBands()) {
      SCOPED_TRACE(settings.name + ": " + nasty.name);
      TestBand band(nasty.values);
      if (nasty.name == "NaN samples") band.samples[30] = std::numeric_limits<float>::quiet_NaN();
      const auto expected = Bits(PlainFill(band, settings).Run());

      TestBand apart(std::vector<double>(nasty.values.size(), kNan));
      CDSPFillNull fill;
      Apply(settings, fill);
      EXPECT_TRUE(RunApart(band, apart, {&fill}));
      EXPECT_EQ(Bits(apart.samples), expected);
      EXPECT_EQ(apart.nulls.Count(), 0);

      fill.restore = 0;
      EXPECT_TRUE(RunInPlace(band, {&fill}));
      EXPECT_EQ(Bits(band.samples), expected);
      EXPECT_EQ(band.nulls.Count(), 0);
    }
  }
}

TEST(DSPFillNull, Figures) {
  CDSPFillNull fill;
  fill.dimension = 1;
  TestBand two({4, kNan});
  RunInPlace(two, {&fill});
  EXPECT_EQ(two.samples, (std::vector<float>{4, 4}));

  // Anchored ends lie on the trend, which is the mean where both halves mirror each other.
  fill.restore = 0;
  TestBand ends({kNan, 1, 3, 1, 3, 3, 1, 3, 1, kNan});
  RunInPlace(ends, {&fill});
  EXPECT_FLOAT_EQ(ends.samples.front(), 2);
  EXPECT_FLOAT_EQ(ends.samples.back(), 2);

  // A sine obeys a recursion of two terms: its prediction comes close over many periods.
  std::vector<double> wave;
  for (int t = 0; t < 400; ++t) wave.push_back(std::sin(t * 0.3));
  const auto whole = wave;
  std::fill(wave.begin() + 180, wave.begin() + 220, kNan);
  TestBand gap(wave);
  fill.restore = 0;
  RunInPlace(gap, {&fill});
  for (std::size_t t = 0; t < whole.size(); ++t) EXPECT_NEAR(gap.samples[t], whole[t], 0.05) << t;
}

TEST(DSPFillNull, SecondRunBringsTheNullsBack) {
  for (const int dimension : {0, 1, 2, 3}) {
    SCOPED_TRACE(dimension);
    CDSPFillNull fill;
    fill.dimension = dimension;
    fill.constant = 9;
    TestBand band(Noise(60, 11, 0.2, 4));
    const TestBand before = band;
    EXPECT_TRUE(RunInPlace(band, {&fill}, 5, 4, 3));
    EXPECT_EQ(band.nulls.Count(), 0);
    EXPECT_EQ(fill.restore, 1);
    band.nulls.Set(2, true);  // a null that the steps in between have made
    EXPECT_TRUE(RunInPlace(band, {&fill}, 5, 4, 3));
    EXPECT_EQ(fill.restore, 0);
    for (int i = 0; i < 60; ++i) {
      const bool null = before.nulls.Get(i) || i == 2;
      EXPECT_EQ(band.nulls.Get(i), null);
      const auto at = static_cast<std::size_t>(i);
      EXPECT_EQ(band.samples[at], null ? CDSPDataBand::kDefaultNull : before.samples[at]);
    }
  }
  CDSPFillNull forgetful;
  forgetful.dimension = 1;
  forgetful.rememberNulls = false;
  TestBand band(Noise(60, 11, 0.2, 4));
  RunInPlace(band, {&forgetful});
  const auto filled = band.samples;
  RunInPlace(band, {&forgetful});
  EXPECT_EQ(band.samples, filled);
  EXPECT_EQ(band.nulls.Count(), 0);
  EXPECT_EQ(forgetful.restore, 0);
}

// A line along y or z is filled as the same line along x would be; its trend is the band's.
TEST(DSPFillNull, LinesAlongEveryAxis) {
  const Settings settings{.name = "", .removeTrend = false};
  for (const int axes : {1, 2, 4}) {
    const std::array<int, 3> size{7, 6, 5};
    TestBand band(Noise(7 * 6 * 5, 12, 0.3, 2));
    const TestBand before = band;
    CDSPFillNull fill;
    Apply(settings, fill);
    fill.axes = axes;
    ASSERT_TRUE(RunInPlace(band, {&fill}, size[0], size[1], size[2]));
    const int stride = axes == 1 ? 1 : axes == 2 ? 7 : 42;
    const int length = size[axes == 1 ? 0 : axes == 2 ? 1 : 2];
    for (int first = 0; first < 210; ++first) {
      if (first / stride % length != 0) continue;
      std::vector<double> values;
      for (int t = 0; t < length; ++t) {
        const int i = first + t * stride;
        values.push_back(before.nulls.Get(i) ? kNan : before.samples[static_cast<std::size_t>(i)]);
      }
      TestBand line(values);
      const auto expected = PlainFill(line, settings).Run();
      for (int t = 0; t < length; ++t) {
        EXPECT_EQ(band.samples[static_cast<std::size_t>(first + t * stride)], expected[static_cast<std::size_t>(t)]);
      }
    }
  }
}

// A sink that has enough after the second line ends the run there, and the direction stays.
TEST(DSPFillNull, CancelsAfterALine) {
  struct Sink : CDSPProgress {
    bool OnProgress(int percent) override {
      told.push_back(percent);
      return told.size() < 2;
    }
    void SetTask(const char*, int) override {}
    std::vector<int> told;
  } sink;
  sink.start = 20;
  sink.end = 60;
  TestBand band(Noise(40, 14, 0.5));
  CDSPData data;
  data.SetDimensions(10, 4, 1);
  band.Put(data);
  CDSPOperationStorage storage;
  storage.AddInput(&data, false);
  storage.AddOutput(&data, false);
  CDSPFillNull fill;
  fill.dimension = 1;
  fill.storage = &storage;
  EXPECT_FALSE(fill.Run(&sink));
  EXPECT_EQ(sink.told, (std::vector<int>{30, 40}));
  EXPECT_EQ(fill.restore, 0);
  EXPECT_EQ(FindBit(band.nulls, 0, 40, true), FindBit(band.nulls, 20, 40, true));
  EXPECT_GT(band.nulls.Count(), 0);
}

// Whatever region it is given, a fill sees the whole band.
TEST(DSPFillNull, IgnoresTheRegion) {
  TestBand band(Noise(80, 13, 0.1, 3));
  TestBand whole = band;
  CDSPFillNull fill;
  fill.dimension = 1;
  RunInPlace(whole, {&fill});
  fill.restore = 0;
  CDSPData data;
  data.SetDimensions(80, 1, 1);
  band.Put(data);
  CDSPProcess process;
  process.Storage().AddInput(&data, false).SetRegion({10, 0, 0}, {19, 0, 0}, 1);
  process.Storage().AddOutput(&data, false);
  process.Append(fill);
  EXPECT_TRUE(process.Run(nullptr));
  EXPECT_EQ(band.samples, whole.samples);
}

}  // namespace
}  // namespace tallyscope
