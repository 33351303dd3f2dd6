// SPDX-License-Identifier: MIT
// Filters over ten million samples, from one band into another, each beside the least that the work asks for: a copy
// that reads and writes every sample, what a running sum reads and writes without the sum, or the taps in order over
// plain arrays.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "bands/DSPAGC.h"
#include "bands/DSPConvolution.h"
#include "bands/DSPLog.h"
#include "bands/DSPPower.h"
#include "bands/DSPProcess.h"
#include "platform/core/WideVectors.h"

namespace tallyscope {

namespace {

constexpr int kSamples = 10'000'000;

struct Band {
  std::vector<float> samples = std::vector<float>(kSamples);
  bvector nulls = bvector(kSamples);

  void Put(CDSPData& data) {
    data.SetDimensions(kSamples, 1, 1);
    CDSPDataBand& band = data.AddBand();
    band.SetFloatData(samples.data(), false);
    band.SetMask(&nulls, false, CDSPDataBand::kDefaultNull);
  }
};

enum Level { kAroundHundred, kAroundZero, kAroundZeroWide, kAlternating };

double MakeSample(Level level, int i, double normal) {
  switch (level) {
    case kAroundHundred:
      return 100 + 20 * normal;
    case kAroundZero:
      return normal;
    case kAroundZeroWide:
      return 1e6 * normal;
    default:
      return i % 2 == 0 ? 100 + normal : -100 - normal;
  }
}

// A field, 0 or 1 percent of which is null. One at a time is kept.
Band& GetInput(int percent, Level level = kAroundHundred) {
  static Band band;
  static int made = -1;
  if (made == 2 * level + percent) return band;
  made = 2 * level + percent;
  std::mt19937 random(7);
  std::normal_distribution<double> normal(0, 1);
  for (int i = 0; i < kSamples; ++i) {
    band.samples[static_cast<std::size_t>(i)] = static_cast<float>(MakeSample(level, i, normal(random)));
    band.nulls.Set(i, percent != 0 && random() % 100 == 0);
  }
  return band;
}

Band& GetOutput() {
  static Band band;
  return band;
}

// The filter's meaning at one sample, for the check of an answer.
float FilterPlainly(const Band& band, const CDSPConvolution& filter, int at) {
  const int half = filter.widths[0] / 2;
  double sum = 0, weight = 0, missing = 0;
  for (int o = -half; o <= half; ++o) weight += filter.GetWeight(o);
  for (int o = -half; o <= half; ++o) {
    const double w = filter.GetWeight(o);
    if (band.nulls.Get(at + o)) {
      missing += w;
    } else {
      sum += band.samples[static_cast<std::size_t>(at + o)] * w;
    }
  }
  return static_cast<float>(filter.rawSum ? sum : sum / (weight - missing));
}

bool IsRight(const Band& from, const Band& to, const CDSPConvolution& filter) {
  const int half = filter.widths[0] / 2;
  const int step = std::max(99'991, 100 * half);
  for (int at = std::max(5000, half); at < kSamples - std::max(5000, half); at += step) {
    if (to.nulls.Get(at)) continue;
    const auto got = std::bit_cast<std::uint32_t>(to.samples[static_cast<std::size_t>(at)]);
    if (got != std::bit_cast<std::uint32_t>(FilterPlainly(from, filter, at))) return false;
  }
  return true;
}

void Time(benchmark::State& state, CDSPOperation& operation, int percent, Level level = kAroundHundred) {
  Band& from = GetInput(percent, level);
  Band& to = GetOutput();
  for (auto _ : state) {
    CDSPData in;
    CDSPData out;
    from.Put(in);
    to.Put(out);
    CDSPProcess process;
    process.Storage().AddInput(&in, false);
    process.Storage().AddOutput(&out, false);
    process.Append(operation);
    if (!process.Run(nullptr)) state.SkipWithError("it failed");
  }
  const auto* filter = dynamic_cast<const CDSPConvolution*>(&operation);
  if (filter != nullptr && !IsRight(from, to, *filter)) state.SkipWithError("a wrong answer");
  if (to.nulls.Count() == kSamples) state.SkipWithError("no answer");
}

// Arguments: width, percent of nulls.
void Box(benchmark::State& state) {
  CDSPConvolution filter;
  filter.SetBoxKernel(1, static_cast<int>(state.range(0)), 1, 1);
  filter.edgeMode = CDSPConvolution::kCentred;
  Time(state, filter, static_cast<int>(state.range(1)));
}

// A wide box at other levels, of which the mean is far smaller than what is summed. Arguments: level, width, percent of
// nulls. It takes no more than twice the time of the first level.
void WideBox(benchmark::State& state) {
  CDSPConvolution filter;
  filter.SetBoxKernel(1, static_cast<int>(state.range(1)), 1, 1);
  filter.edgeMode = CDSPConvolution::kCentred;
  Time(state, filter, static_cast<int>(state.range(2)), static_cast<Level>(state.range(0)));
}

void Gaussian(benchmark::State& state) {
  CDSPConvolution filter;
  filter.SetGaussianKernel(1, static_cast<int>(state.range(0)), 1, 1);
  filter.edgeMode = CDSPConvolution::kCentred;
  Time(state, filter, static_cast<int>(state.range(1)));
}

void Difference(benchmark::State& state) {
  CDSPConvolution filter;
  filter.SetDifferenceKernel(4);
  Time(state, filter, static_cast<int>(state.range(0)));
}

void Gain(benchmark::State& state) {
  CDSPAGC gain;
  gain.dimension = 1;
  gain.width = 101;
  Time(state, gain, static_cast<int>(state.range(0)));
}

void Power(benchmark::State& state) {
  CDSPPower power;
  power.exponent = 1.5;
  Time(state, power, static_cast<int>(state.range(0)));
}

void Log(benchmark::State& state) {
  CDSPLog log;  // every other run is the way back, which takes a power in place of the logarithm
  Time(state, log, static_cast<int>(state.range(0)));
}

void FloorCopy(benchmark::State& state) {
  const auto& from = GetInput(0).samples;
  auto& to = GetOutput().samples;
  for (auto _ : state) {
    std::copy(from.begin(), from.end(), to.begin());
    benchmark::ClobberMemory();
  }
}

TALLYSCOPE_WIDE_VECTORS
void ScaleChanges(const float* coming, const float* leaving, double scale, float* to, int count) {
  for (int i = 0; i < count; ++i) {
    to[i] = static_cast<float>((static_cast<double>(coming[i]) - leaving[i]) * scale);
  }
}

// By blocks, as a filter goes: each sample that comes in and each that leaves, and a result for both.
void FloorBox(benchmark::State& state) {
  const int width = static_cast<int>(state.range(0));
  const float* const from = GetInput(0).samples.data();
  float* const to = GetOutput().samples.data();
  for (auto _ : state) {
    for (int first = 0; first + width + 2048 < kSamples; first += 2048) {
      ScaleChanges(from + first + width, from + first, 1.0 / width, to + first, 2048);
    }
    benchmark::ClobberMemory();
  }
}

TALLYSCOPE_WIDE_VECTORS
void AddTap(const float* from, double weight, double* sums, int count) {
  for (int i = 0; i < count; ++i) sums[i] += from[i] * weight;
}

void FloorTaps(benchmark::State& state) {
  CDSPConvolution filter;
  filter.SetGaussianKernel(1, static_cast<int>(state.range(0)), 1, 1);
  const int width = static_cast<int>(state.range(0));
  const float* const from = GetInput(0).samples.data();
  float* const to = GetOutput().samples.data();
  std::vector<double> sums(1024);
  for (auto _ : state) {
    for (int first = 0; first + width + 1024 < kSamples; first += 1024) {
      std::fill(sums.begin(), sums.end(), 0.0);
      for (int o = 0; o < width; ++o) {
        AddTap(from + first + o, filter.GetWeight(o - width / 2), sums.data(), 1024);
      }
      for (int i = 0; i < 1024; ++i) to[first + i] = static_cast<float>(sums[static_cast<std::size_t>(i)]);
    }
    benchmark::ClobberMemory();
  }
}

BENCHMARK(FloorCopy)->Unit(benchmark::kMillisecond);
BENCHMARK(FloorBox)->Arg(11)->Arg(101)->Unit(benchmark::kMillisecond);
BENCHMARK(Box)->ArgsProduct({{5, 11, 101, 1001}, {0, 1}})->Unit(benchmark::kMillisecond);
BENCHMARK(WideBox)
    ->ArgsProduct({{kAroundHundred, kAroundZero, kAroundZeroWide, kAlternating}, {3001, 10'001, 300'001}, {0, 1}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(FloorTaps)->Arg(11)->Arg(101)->Unit(benchmark::kMillisecond);
BENCHMARK(Gaussian)->ArgsProduct({{11, 101}, {0, 1}})->Unit(benchmark::kMillisecond);
BENCHMARK(Difference)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(Gain)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(Power)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(Log)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace tallyscope
