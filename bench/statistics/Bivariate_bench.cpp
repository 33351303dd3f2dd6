// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {
namespace {

constexpr int kStations = 1000000;

// Two columns of a million distinct values that go together, without nulls, read in runs as a host's table is.
class TwoColumns : public CStats_Data {
 public:
  TwoColumns() {
    std::mt19937_64 random(20240611);
    std::normal_distribution<double> normal;
    for (auto& column : columns_) column.resize(kStations);
    for (std::size_t i = 0; i < kStations; ++i) {
      columns_[0][i] = normal(random);
      columns_[1][i] = std::exp(0.5 * columns_[0][i] + normal(random));
    }
  }

  const std::vector<double>& Column(int field) const { return columns_[static_cast<std::size_t>(field)]; }

  using CStats_Data::GetValue;
  int GetSize() override { return kStations; }
  int GetValueSize() override { return 2; }
  double GetValue(int field, int station) override { return Column(field)[static_cast<std::size_t>(station)]; }
  int ReadValues(int field, int first, int count, double* values, unsigned char* valid) override {
    ReadRawValues(field, first, count, values);
    std::memset(valid, 1, static_cast<std::size_t>(count));
    return count;
  }
  void ReadRawValues(int field, int first, int count, double* values) override {
    std::memcpy(values, Column(field).data() + first, static_cast<std::size_t>(count) * sizeof(double));
  }
  int ReadValuesAt(int field, const int* stations, int count, double* values, unsigned char* valid) override {
    ReadRawValuesAt(field, stations, count, values);
    std::memset(valid, 1, static_cast<std::size_t>(count));
    return count;
  }
  void ReadRawValuesAt(int field, const int* stations, int count, double* values) override {
    const double* column = Column(field).data();
    for (int i = 0; i < count; ++i) values[i] = column[stations[i]];
  }

 private:
  std::array<std::vector<double>, 2> columns_;
};

TwoColumns& Table() {
  static TwoColumns table;
  return table;
}

// Floor: a plain radix sort of keys with stations, ranks and sums on flat arrays.

struct Keyed {
  std::uint64_t key;
  std::uint32_t station;
};

std::vector<std::uint32_t> Ranks(const std::vector<double>& values) {
  std::vector<Keyed> from(values.size());
  std::vector<Keyed> to(values.size());
  std::vector<std::array<std::uint32_t, 2048>> counts(6);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const auto bits = std::bit_cast<std::uint64_t>(values[i]);
    const auto key = bits >> 63 != 0 ? ~bits : bits | std::uint64_t{1} << 63;
    from[i] = {key, static_cast<std::uint32_t>(i)};
    for (std::size_t digit = 0; digit < 6; ++digit) ++counts[digit][key >> (11 * digit) & 2047];
  }
  for (std::size_t digit = 0; digit < 6; ++digit) {
    std::uint32_t place = 0;
    for (auto& count : counts[digit]) place += std::exchange(count, place);
    for (const Keyed& entry : from) to[counts[digit][entry.key >> (11 * digit) & 2047]++] = entry;
    from.swap(to);
  }
  std::vector<std::uint32_t> ranks(values.size());
  for (std::size_t i = 0; i < from.size(); ++i) ranks[from[i].station] = static_cast<std::uint32_t>(i + 1);
  return ranks;
}

double FlatRankCorrelation(const std::vector<double>& x, const std::vector<double>& y) {
  const auto xRanks = Ranks(x);
  const auto yRanks = Ranks(y);
  const double n = static_cast<double>(x.size());
  const double mean = (n + 1) / 2;
  double products = 0;
  for (std::size_t i = 0; i < x.size(); ++i) products += (xRanks[i] - mean) * (yRanks[i] - mean);
  return products / n / (n * (n + 1) / 12);
}

void RankFloor(benchmark::State& state) {
  Table();
  for (auto _ : state) benchmark::DoNotOptimize(FlatRankCorrelation(Table().Column(0), Table().Column(1)));
}
BENCHMARK(RankFloor)->Unit(benchmark::kMillisecond);

const char* Fault(CStats_Bivariate& pair, int flags) {
  static const double expected = FlatRankCorrelation(Table().Column(0), Table().Column(1));
  if ((pair.GetFlags(0) & flags) != flags) return "no figures";
  if ((flags & 4) != 0 && !(std::abs(pair.rankCorrelation - expected) < 1e-9)) return "wrong rank correlation";
  // Windows of 31251: places 0, 31251 ... 968781 and the last.
  if ((flags & 8) != 0 && pair.expectationX.size() != 33) return "wrong curve";
  return nullptr;
}

// Rank correlation (4) finds the pairs counted; it sorts both fields, as 15, everything, does.
void Calculate(benchmark::State& state) {
  const int flags = static_cast<int>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    CStats_Bivariate pair;
    pair.Add(&Table(), 0);
    pair.Add(&Table(), 1);
    if (flags == 4) pair.Calculate(3, nullptr);
    Table().ClearSort();
    state.ResumeTiming();
    pair.Calculate(flags, nullptr);
    state.PauseTiming();
    if (const char* fault = Fault(pair, flags)) {
      state.SkipWithError(fault);
      break;
    }
    state.ResumeTiming();
  }
}
BENCHMARK(Calculate)->ArgName("flags")->Arg(3)->Arg(4)->Arg(15)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyscope
