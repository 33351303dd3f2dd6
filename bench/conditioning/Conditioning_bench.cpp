// SPDX-License-Identifier: MIT
// Rules over ten million values and chains over ten million samples, each beside a floor: the same work written out as
// plainly as it goes. What a chain takes beyond the caller's buffers is counted.
#include <benchmark/benchmark.h>

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <new>
#include <random>
#include <vector>

#include "conditioning/Stats_Conditioning.h"
#include "statistics/bvector.h"

namespace {

std::atomic<long> taken{0};
std::atomic<long> peak{0};

void* Take(std::size_t bytes) {
  void* block = std::malloc(bytes);
  if (block == nullptr) throw std::bad_alloc();
  const long now = taken += static_cast<long>(malloc_usable_size(block));
  if (now > peak) peak = now;
  return block;
}

void Give(void* block) {
  if (block != nullptr) taken -= static_cast<long>(malloc_usable_size(block));
  std::free(block);
}

}  // namespace

void* operator new(std::size_t bytes) {
  return Take(bytes);
}
void* operator new[](std::size_t bytes) {
  return Take(bytes);
}
void operator delete(void* block) noexcept {
  Give(block);
}
void operator delete[](void* block) noexcept {
  Give(block);
}
void operator delete(void* block, std::size_t) noexcept {
  Give(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  Give(block);
}

namespace tallyscope {
namespace {

using Op = CStats_Operator;

constexpr int kCount = 10'000'000;

const std::vector<double>& Values() {
  static const std::vector<double> values = [] {
    std::mt19937_64 random(20240611);
    std::normal_distribution<double> normal(100, 15);
    std::vector<double> made(kCount);
    for (double& value : made) value = normal(random);
    for (int i = 0; i < kCount; i += 100) made[static_cast<std::size_t>(i)] = -999;
    return made;
  }();
  return values;
}

CStats_Conditioning Rules() {
  CStats_Conditioning rules;
  rules.SetNULL(-999);
  rules.AddNULLValue(0);
  rules.AddNULLRange(10, 20);
  rules.CapMinimum(1, 60);
  rules.CapMaximum(1, 140);
  return rules;
}

// The sum of a column, which reads every value once.
void ValuesFloor(benchmark::State& state) {
  for (auto _ : state) {
    double sum = 0;
    for (const double value : Values()) sum += value;
    benchmark::DoNotOptimize(sum);
  }
}

// The same rules as constants.
void RulesFloor(benchmark::State& state) {
  const auto match = [](double a, double b) { return std::max(std::fabs(a), std::fabs(b)) * 1e-6 >= std::fabs(a - b); };
  for (auto _ : state) {
    double sum = 0;
    for (double value : Values()) {
      if (match(value, -999) || match(value, 0) || (value >= 10 && value <= 20)) continue;
      sum += std::min(std::max(value, 60.0), 140.0);
    }
    benchmark::DoNotOptimize(sum);
  }
}

void ProcessValues(benchmark::State& state) {
  const CStats_Conditioning rules = Rules();
  const CStats_Conditioning* asked = &rules;
  benchmark::DoNotOptimize(asked);  // a host's own class may stand behind it
  long valid = 0;
  for (auto _ : state) {
    double sum = 0;
    valid = 0;
    for (double value : Values()) {
      const int good = asked->ProcessValue(value);
      valid += good;
      if (good != 0) sum += value;
    }
    benchmark::DoNotOptimize(sum);
  }
  if (valid != kCount - kCount / 100) state.SkipWithError("another count of valid values");
}

struct Samples {
  std::vector<float> values = std::vector<float>(kCount);
  bvector nulls{kCount, false};

  explicit Samples(int every) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      const double value = Values()[i];
      values[i] = value < 0 ? 100.0f : static_cast<float>(value);
    }
    for (int i = 0; every > 0 && i < kCount; i += every) nulls.Set(i, true);
  }
};

// One pass in place over float and mask, as the quickest step makes it.
void PassFloor(benchmark::State& state) {
  Samples samples(100);
  for (auto _ : state) {
    for (int i = 0; i < kCount; ++i) {
      float& value = samples.values[static_cast<std::size_t>(i)];
      value = samples.nulls.Get(i) ? -1e32f : static_cast<float>(1.0 * static_cast<double>(value) + 0.5);
    }
    benchmark::DoNotOptimize(samples.values.data());
  }
}

void CopyFloor(benchmark::State& state) {
  const Samples samples(100);
  std::vector<float> copy(kCount);
  for (auto _ : state) {
    std::copy(samples.values.begin(), samples.values.end(), copy.begin());
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
  }
}

CStats_Conditioning Chain(const std::vector<Op>& steps) {
  CStats_Conditioning rules;
  rules.DefineOperators(1);
  rules.operators = steps;
  return rules;
}

Op Made(Op::CStats_OperatorType type, const char* value) {
  Op step;
  Op::CreateOperator(type, value, step);
  return step;
}

// Runs a chain on fresh samples each time, and counts what it takes in buffers such as the caller's: a float and a mask
// bit for each sample. Room for a block of a filter, some 100 kB whatever the length, comes on top.
void RunChain(benchmark::State& state, const std::vector<Op>& steps) {
  const auto rules = Chain(steps);
  const Samples fresh(static_cast<int>(state.range(0)));
  double buffers = 0;
  Samples samples = fresh;
  for (auto _ : state) {
    state.PauseTiming();
    std::copy(fresh.values.begin(), fresh.values.end(), samples.values.begin());
    samples.nulls = fresh.nulls;
    peak = taken.load();
    const long before = taken;
    state.ResumeTiming();
    if (rules.ProcessOperations(samples.values.data(), &samples.nulls, kCount) != 1)
      state.SkipWithError("no chain ran");
    state.PauseTiming();
    buffers = static_cast<double>(peak - before) / ((sizeof(float) + 1.0 / 8) * double{kCount});
    state.ResumeTiming();
  }
  state.counters["buffers"] = buffers;
  if (buffers > 2.01) state.SkipWithError("more than two buffers");
  const bool has = !samples.nulls.Get(kCount / 2 + 1) && std::isfinite(samples.values[kCount / 2 + 1]);
  if (!has) state.SkipWithError("no number in the middle");
}

void PointwiseChain(benchmark::State& state) {
  RunChain(state, {Made(Op::kScale, "2"), Made(Op::kTranslate, "-3"), Made(Op::kScale, "0.5"),
                   Made(Op::kTranslate, "1"), Made(Op::kScale, "3")});
}

void MixedChain(benchmark::State& state) {
  RunChain(state, {Made(Op::kDetrend, ""), Made(Op::kMovingAverage, "11"), Made(Op::kAgc, "101"),
                   Made(Op::kGaussian, "11"), Made(Op::kScale, "2")});
}

void FilterChain(benchmark::State& state) {
  RunChain(state, {Made(Op::kMovingAverage, "3"), Made(Op::kMovingAverage, "11"), Made(Op::kMovingAverage, "101"),
                   Made(Op::kMovingAverage, "5"), Made(Op::kMovingAverage, "31")});
}

void FillingChain(benchmark::State& state) {
  RunChain(state, {Made(Op::kFillNull, ""), Made(Op::kDetrend, ""), Made(Op::kGaussian, "11"), Made(Op::kAgc, "101"),
                   Made(Op::kHistogramEqualize, "")});
}

BENCHMARK(ValuesFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(RulesFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(ProcessValues)->Unit(benchmark::kMillisecond);
BENCHMARK(PassFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(CopyFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(PointwiseChain)->Arg(0)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(FilterChain)->Arg(0)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(MixedChain)->Arg(0)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(FillingChain)->Arg(0)->Arg(100)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyscope
