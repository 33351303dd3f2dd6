// SPDX-License-Identifier: MIT
// Null filling, trend removal and equalisation of ten million samples in place, each beside a floor written for this
// one band: plain arrays, no table, no virtual call, only what this data asks for, and every sum in the order of the
// samples.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "bands/DSPFillNull.h"
#include "bands/DSPHistogram.h"
#include "bands/DSPProcess.h"
#include "bands/DSPTrend.h"

namespace tallyscope {

namespace {

constexpr int kSamples = 10'000'000;
constexpr int kOrder = 10;

enum Kind { kOnePercent, kLongGaps };

struct Band {
  std::vector<float> samples;
  bvector nulls;
};

// No sample stands alone, and the ends are no nulls: the floor knows neither.
Band MakeBand(int kind) {
  Band band{std::vector<float>(kSamples), bvector(kSamples)};
  std::mt19937 random(20240611);
  for (int t = 0; t < kSamples; ++t) {
    const double noise = random() / 4294967296.0;
    band.samples[static_cast<std::size_t>(t)] = static_cast<float>(50 + 1e-6 * t + 3 * std::sin(t * 0.05) + noise);
  }
  if (kind == kLongGaps) {
    for (int t = 2000; t + 3000 < kSamples; t += 3000) band.nulls.SetRange(t, t + 999, true);
  } else {
    for (int t = 5; t + 5 < kSamples; t += 3 + static_cast<int>(random() % 195)) band.nulls.Set(t, true);
  }
  return band;
}

const Band& GetBand(int kind) {
  static const Band bands[] = {MakeBand(kOnePercent), MakeBand(kLongGaps)};
  return bands[kind];
}

bool Run(CDSPOperation& operation, Band& band) {
  CDSPData data;
  data.SetDimensions(kSamples, 1, 1);
  CDSPDataBand& only = data.AddBand();
  only.SetFloatData(band.samples.data(), false);
  only.SetMask(&band.nulls, false, -1e32f);
  CDSPProcess process;
  process.Storage().AddInput(&data, false);
  process.Storage().AddOutput(&data, false);
  process.Append(operation);
  return process.Run(nullptr);
}

struct Line {
  double slope;
  double intercept;
};

template <class Visit>
void EachValid(const Band& band, Visit visit) {
  const std::uint8_t* bytes = band.nulls.GetBytes().data();
  for (int t = 0; t < kSamples; t += 8) {
    const unsigned nulls = bytes[t / 8];
    const int end = std::min(t + 8, kSamples);
    if (nulls == 0 && end == t + 8) {
      for (int i = t; i < t + 8; ++i) visit(i, static_cast<double>(band.samples[static_cast<std::size_t>(i)]));
      continue;
    }
    for (int i = t; i < end; ++i) {
      if ((nulls >> (i - t) & 1) == 0) visit(i, static_cast<double>(band.samples[static_cast<std::size_t>(i)]));
    }
  }
}

struct Moments {
  double sum = 0;
  double squares = 0;
  int count = 0;

  void Add(double x) {
    sum += x;
    squares += x * x;
    ++count;
  }
  double GetMean() const { return sum / count; }
  double GetDeviation() const { return std::sqrt((squares - sum * sum / count) / (count - 1)); }
};

Line FitLine(const Band& band) {
  Moments x;
  Moments y;
  for (int t = 0; t < kSamples; ++t) x.Add(t);
  EachValid(band, [&](int, double value) { y.Add(value); });
  double products = 0;
  EachValid(band, [&, xMean = x.GetMean(), yMean = y.GetMean()](int t, double value) {
    products += (t - xMean) * (value - yMean);
  });
  const double correlation = products / (kSamples - 1) / (x.GetDeviation() * y.GetDeviation());
  const double slope = correlation * y.GetDeviation() / x.GetDeviation();
  return {slope, y.GetMean() - x.GetMean() * slope};
}

// Coefficients 1 to order for n samples.
void FitBurg(const float* x, int n, int order, double* c) {
  double f[100];
  double b[100];
  double p[kOrder + 1];
  for (int j = 0; j + 1 < n; ++j) f[j] = x[j], b[j] = x[j + 1];
  for (int k = 1; k <= order; ++k) {
    double products = 0;
    double squares = 0;
    for (int j = 0; j < n - k; ++j) {
      products += f[j] * b[j];
      squares += f[j] * f[j] + b[j] * b[j];
    }
    c[k] = squares == 0 ? 0 : 2 * products / squares;
    for (int i = 1; i < k; ++i) c[i] = p[i] - c[k] * p[k - i];
    for (int i = 1; i <= k; ++i) p[i] = c[i];
    for (int j = 0; j < n - k - 1; ++j) {
      f[j] -= c[k] * b[j];
      b[j] = b[j + 1] - c[k] * f[j + 1];
    }
  }
}

int GetOrder(int length) {
  return std::max(static_cast<int>(std::round(length / 10.0)), 3);
}

void FloorFill(Band& band, std::vector<float>& r, std::vector<double>& w) {
  const Line line = FitLine(band);
  double squares = 0;
  int valid = 0;
  EachValid(band, [&, line](int t, double value) {
    const double rest = value - (line.slope * t + line.intercept);
    squares += rest * rest;
    ++valid;
  });
  const double amplitude = std::sqrt(squares / valid);
  std::fill(r.begin(), r.end(), 0.0f);
  EachValid(band, [&, line, amplitude](int t, double value) {
    r[static_cast<std::size_t>(t)] = static_cast<float>((value - (line.slope * t + line.intercept)) / amplitude);
  });
  double c[kOrder + 1];
  int gap = -1;
  for (int start = 0; start < kSamples;) {
    int end = start;
    while (end < kSamples && !band.nulls.Get(end)) ++end;
    const int length = std::min(end - start, 100);
    const int order = GetOrder(length);
    FitBurg(&r[static_cast<std::size_t>(start)], length, order, c);
    if (gap >= 0) {
      const int size = start - gap;
      for (int j = 0; j < order; ++j) {
        w[static_cast<std::size_t>(size + j)] =
            start + j < kSamples ? static_cast<double>(r[static_cast<std::size_t>(start + j)]) : 0;
      }
      for (int i = size - 1; i >= 0; --i) {
        double sum = 0;
        for (int j = 1; j <= order; ++j) sum += c[j] * w[static_cast<std::size_t>(i + j)];
        w[static_cast<std::size_t>(i)] = sum;
      }
      for (int i = 0; i < size; ++i) {
        const double d = static_cast<double>(size - i) * (size - i);
        const double e = static_cast<double>(i + 1) * (i + 1);
        float& sample = r[static_cast<std::size_t>(gap + i)];
        sample = static_cast<float>(sample * d / (e + d) + w[static_cast<std::size_t>(i)] * e / (e + d));
      }
    }
    if (end == kSamples) break;
    if (end - start > 100) FitBurg(&r[static_cast<std::size_t>(end - 100)], 100, order, c);
    int next = end;
    for (; band.nulls.Get(next); ++next) {
      double sum = 0;
      for (int j = 1; j <= order && next - j >= 0; ++j)
        sum += c[j] * static_cast<double>(r[static_cast<std::size_t>(next - j)]);
      r[static_cast<std::size_t>(next)] = static_cast<float>(sum);
    }
    gap = end;
    start = next;
  }
  for (int t = 0; t < kSamples; ++t) {
    if (!band.nulls.Get(t)) continue;
    const auto at = static_cast<std::size_t>(t);
    band.samples[at] = static_cast<float>(r[at] * amplitude + (line.slope * t + line.intercept));
  }
  band.nulls.SetRange(0, kSamples - 1, false);
}

void FillNullFloor(benchmark::State& state) {
  std::vector<float> r(kSamples);
  std::vector<double> w(2000);
  for (auto _ : state) {
    state.PauseTiming();
    Band band = GetBand(static_cast<int>(state.range(0)));
    state.ResumeTiming();
    FloorFill(band, r, w);
    benchmark::ClobberMemory();
  }
}

void FillNull(benchmark::State& state) {
  Band band;
  for (auto _ : state) {
    state.PauseTiming();
    band = GetBand(static_cast<int>(state.range(0)));
    state.ResumeTiming();
    CDSPFillNull fill;
    fill.dimension = 1;
    fill.rememberNulls = false;
    benchmark::DoNotOptimize(Run(fill, band));
  }
  Band expected = GetBand(static_cast<int>(state.range(0)));
  std::vector<float> r(kSamples);
  std::vector<double> w(2000);
  FloorFill(expected, r, w);
  if (band.samples != expected.samples || band.nulls.Count() != 0) state.SkipWithError("differs from the floor");
}

void FloorDetrend(Band& band) {
  const Line line = FitLine(band);
  for (int t = 0; t < kSamples; ++t) {
    float& sample = band.samples[static_cast<std::size_t>(t)];
    sample = band.nulls.Get(t) ? -1e32f : static_cast<float>(sample - (t * line.slope + line.intercept));
  }
}

void DetrendFloor(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    Band band = GetBand(static_cast<int>(state.range(0)));
    state.ResumeTiming();
    FloorDetrend(band);
    benchmark::ClobberMemory();
  }
}

void Detrend(benchmark::State& state) {
  Band band;
  for (auto _ : state) {
    state.PauseTiming();
    band = GetBand(static_cast<int>(state.range(0)));
    state.ResumeTiming();
    CDSPTrend trend;
    trend.method = CDSPTrend::kLinear;
    benchmark::DoNotOptimize(Run(trend, band));
  }
  Band expected = GetBand(static_cast<int>(state.range(0)));
  FloorDetrend(expected);
  if (band.samples != expected.samples) state.SkipWithError("differs from the floor");
}

void FloorEqualise(Band& band) {
  constexpr int kBins = 4096;
  double low = 1e10;
  double high = -1e10;
  int valid = 0;
  EachValid(band, [&](int, double x) {
    low = std::min(low, x);
    high = std::max(high, x);
    ++valid;
  });
  const double width = (high - low) / kBins;
  std::vector<int> counts(kBins);
  EachValid(band, [&, low, width](int, double x) {
    ++counts[static_cast<std::size_t>(std::clamp((x - low) / width, 0.0, kBins - 1.0))];
  });
  struct Step {
    double start, width, before, rise;
  };
  std::vector<Step> steps(kBins);
  double before = 0;
  long running = 0;
  for (int i = 0; i < kBins; ++i) {
    running += counts[static_cast<std::size_t>(i)];
    const double share = static_cast<double>(running) / valid;
    const double start = i * width + low;
    steps[static_cast<std::size_t>(i)] = {start, (i + 1) * width + low - start, before, share - before};
    before = share;
  }
  const double origin = steps[0].start;
  const double mapWidth = (kBins * width + low - origin) / kBins;
  for (int t = 0; t < kSamples; ++t) {
    float& sample = band.samples[static_cast<std::size_t>(t)];
    if (band.nulls.Get(t)) {
      sample = -1e32f;
      continue;
    }
    const Step& step = steps[static_cast<std::size_t>(std::clamp((sample - origin) / mapWidth, 0.0, kBins - 1.0))];
    sample = static_cast<float>(std::clamp(step.before + step.rise * ((sample - step.start) / step.width), 0.0, 1.0));
  }
}

void EqualiseFloor(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    Band band = GetBand(static_cast<int>(state.range(0)));
    state.ResumeTiming();
    FloorEqualise(band);
    benchmark::ClobberMemory();
  }
}

void Equalise(benchmark::State& state) {
  Band band;
  for (auto _ : state) {
    state.PauseTiming();
    band = GetBand(static_cast<int>(state.range(0)));
    state.ResumeTiming();
    CDSPHistogram equalise;
    benchmark::DoNotOptimize(Run(equalise, band));
  }
  Band expected = GetBand(static_cast<int>(state.range(0)));
  FloorEqualise(expected);
  if (band.samples != expected.samples) state.SkipWithError("differs from the floor");
}

BENCHMARK(FillNullFloor)->ArgName("kind")->DenseRange(kOnePercent, kLongGaps)->Unit(benchmark::kMillisecond);
BENCHMARK(FillNull)->ArgName("kind")->DenseRange(kOnePercent, kLongGaps)->Unit(benchmark::kMillisecond);
BENCHMARK(DetrendFloor)->ArgName("kind")->Arg(kOnePercent)->Unit(benchmark::kMillisecond);
BENCHMARK(Detrend)->ArgName("kind")->Arg(kOnePercent)->Unit(benchmark::kMillisecond);
BENCHMARK(EqualiseFloor)->ArgName("kind")->Arg(kOnePercent)->Unit(benchmark::kMillisecond);
BENCHMARK(Equalise)->ArgName("kind")->Arg(kOnePercent)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace tallyscope
