// SPDX-License-Identifier: MIT
#include "bands/DSPConvolution.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <numbers>
#include <random>

#include "bands/DSPAGC.h"
#include "tests/bands/BandTesting.h"

namespace tallyscope {

namespace {

constexpr double kNull = std::numeric_limits<double>::quiet_NaN();
constexpr double kTiny = 2.220446049250313e-14;

// One sample at a time, one tap at a time: what the filter means.
TestBand FilterPlainly(const TestBand& band, const CDSPConvolution& options, int axis = 0) {
  TestBand result = band;
  const int n = band.GetSize();
  const int h = options.widths[static_cast<std::size_t>(axis)] / 2;
  std::vector<double> taps;
  for (int o = -h; o <= h; ++o) taps.push_back(options.GetWeight(o));
  double all = 0;
  for (const double w : taps) all += std::abs(w) >= kTiny ? w : 0;
  for (int p = 0; p < n; ++p) {
    const bool nearEnd = p < h || p > n - 1 - h;
    bool good = (!band.nulls.Get(p) || options.filterNulls) && !(nearEnd && options.edgeMode == 2);
    const int reach = nearEnd && options.edgeMode == 1 ? std::min(p, n - 1 - p) : h;
    double sum = 0, missing = 0;
    for (int o = -h; o <= h && good; ++o) {
      const double w = taps[static_cast<std::size_t>(o + h)];
      if (std::abs(w) < kTiny) continue;
      if (std::abs(o) > reach || p + o < 0 || p + o >= n || band.nulls.Get(p + o)) {
        missing += w;
        good = !options.requireFullWindow;
      } else {
        sum += band.samples[static_cast<std::size_t>(p + o)] * w;
      }
    }
    const double divisor = all - missing;
    if (!options.rawSum && std::abs(divisor) <= kTiny) good = false;
    const bool keeps = !good && options.keepUnfiltered && !band.nulls.Get(p);
    const auto at = static_cast<std::size_t>(p);
    if (!keeps) result.samples[at] = good ? static_cast<float>(options.rawSum ? sum : sum / divisor) : -1e32f;
    result.nulls.Set(p, !good && !keeps);
  }
  return result;
}

void ExpectSame(const TestBand& got, const TestBand& wanted, const std::string& what) {
  ASSERT_EQ(got.GetSize(), wanted.GetSize());
  for (int i = 0; i < got.GetSize(); ++i) {
    const auto at = static_cast<std::size_t>(i);
    EXPECT_EQ(got.nulls.Get(i), wanted.nulls.Get(i)) << what << " at " << i;
    const bool bothNaN = std::isnan(got.samples[at]) && std::isnan(wanted.samples[at]);
    EXPECT_TRUE(bothNaN ||
                std::bit_cast<std::uint32_t>(got.samples[at]) == std::bit_cast<std::uint32_t>(wanted.samples[at]))
        << what << " at " << i << ": " << got.samples[at] << " for " << wanted.samples[at];
  }
}

std::vector<std::pair<std::string, std::vector<double>>> NastyBands() {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::vector<double> noise(5003), sparse(300), alternating(41), half(2 * 2048 + 5);
  for (double& x : noise) x = random() % 50 == 0 ? kNull : std::exp(20 * uniform(random)) * uniform(random);
  for (double& x : sparse) x = random() % 10 != 0 ? kNull : uniform(random);
  for (std::size_t i = 0; i < alternating.size(); ++i) alternating[i] = i % 2 == 0 ? kNull : static_cast<double>(i);
  for (std::size_t i = 0; i < half.size(); ++i) half[i] = static_cast<double>(i % 7) - 0.1;
  const double infinity = std::numeric_limits<double>::infinity();
  return {{"noise", noise},
          {"sparse", sparse},
          {"alternating", alternating},
          {"blocks without nulls", half},
          {"one", {5}},
          {"lone null", {kNull}},
          {"two", {1, 2}},
          {"all null", std::vector<double>(20, kNull)},
          {"leading", {kNull, kNull, kNull, 1, 2, 3, 4, 5, 6, 7}},
          {"trailing", {1, 2, 3, 4, 5, 6, kNull, kNull}},
          {"constant", std::vector<double>(30, 0.1)},
          {"huge", {1, 1e38, -1e38, 1, 2, 3e38, 3e38, 3e38, 1, 2, 3, 1e-30, 4}},
          {"infinite", {1, 2, infinity, 4, 5, 6, 7, -infinity, 9, 10, 11, 12, 13}}};
}

TEST(DSPConvolution, EveryKernelAndOptionIsThePlainSum) {
  for (const auto& [name, values] : NastyBands()) {
    for (const int width : {1, 3, 5, 11, 101, 2101, 5001}) {
      for (int variant = 0; variant < 8; ++variant) {
        CDSPConvolution filter;
        ASSERT_TRUE(variant % 2 == 0 ? filter.SetBoxKernel(1, width, 1, 1) : filter.SetGaussianKernel(1, width, 1, 1));
        filter.edgeMode = variant % 3;
        filter.requireFullWindow = variant == 5;
        filter.keepUnfiltered = variant >= 4;
        filter.filterNulls = variant == 3 || variant == 7;
        TestBand band(values);
        const TestBand wanted = FilterPlainly(band, filter);
        EXPECT_TRUE(RunInPlace(band, {&filter}));
        ExpectSame(band, wanted, name + ", width " + std::to_string(width) + ", variant " + std::to_string(variant));
        TestBand from(values);
        TestBand apart(std::vector<double>(values.size(), 3));
        EXPECT_TRUE(RunApart(from, apart, {&filter}));
        ExpectSame(apart, wanted, name + ", apart");
      }
    }
    for (int order = 0; order <= 9; ++order) {
      CDSPConvolution filter;
      filter.SetDifferenceKernel(order);
      TestBand band(values);
      const TestBand wanted = FilterPlainly(band, filter);
      RunInPlace(band, {&filter});
      ExpectSame(band, wanted, name + ", order " + std::to_string(order));
    }
  }
}

// Several blocks, so that there are some away from the ends. Of the three runs of 5000 the middle one has no null.
std::vector<double> MakeLongBand(const std::function<double(std::mt19937&, int)>& make) {
  std::mt19937 random(23);
  std::vector<double> values(15'003);
  for (int i = 0; i < 15'003; ++i) {
    const bool null = i / 5000 != 1 && random() % 40 == 0;
    values[static_cast<std::size_t>(i)] = null ? kNull : make(random, i);
  }
  return values;
}

float MakeFraction(std::mt19937& random) {
  return std::ldexp(static_cast<float>(random() % (1u << 24)), -24);
}

// Means that lie halfway between floats, sums at the edge of what a double holds, tiny samples, zeros of either sign.
std::vector<std::pair<std::string, std::vector<double>>> LongBands() {
  std::vector<std::pair<std::string, std::vector<double>>> bands{
      {"halfway",
       MakeLongBand([](auto& random, int) { return (random() % 8 == 0 ? 0.75 : 1.75) + MakeFraction(random) / 4; })},
      {"tenths", MakeLongBand([](auto& random, int) { return static_cast<double>(random() % 2000) / 10 - 100; })},
      {"smallest", MakeLongBand([](auto& random, int) { return (static_cast<int>(random() % 9) - 4) * 0x1p-149; })},
      {"zeros", MakeLongBand([](auto& random, int) { return random() % 2 == 0 ? 0.0 : -0.0; })},
      {"largest", MakeLongBand([](auto& random, int) { return random() % 3 == 0 ? -3.4e38 : 3.4e38; })},
      {"not all finite", MakeLongBand([](auto& random, int i) {
         return i == 3000 || i == 12'000 ? std::numeric_limits<double>::infinity() : MakeFraction(random);
       })}};
  for (int power = 20; power <= 30; ++power) {
    bands.emplace_back("spikes of 2^" + std::to_string(power), MakeLongBand([power](auto& random, int i) {
                         return 1 + MakeFraction(random) + (i % 700 < 60 ? std::ldexp(1.0, power) : 0.0);
                       }));
  }
  return bands;
}

TEST(DSPConvolution, ALongBoxIsThePlainSumToTheBit) {
  for (const auto& [name, values] : LongBands()) {
    for (const int width : {1, 3, 5, 9, 11, 49, 103, 303}) {
      for (int variant = 0; variant < 4; ++variant) {
        CDSPConvolution filter;
        ASSERT_TRUE(filter.SetBoxKernel(1, width, 1, 1));
        filter.edgeMode = variant == 3 ? CDSPConvolution::kPartial : CDSPConvolution::kCentred;
        filter.rawSum = variant == 1;
        filter.filterNulls = variant == 2;
        filter.keepUnfiltered = variant == 3;
        TestBand band(values);
        const TestBand wanted = FilterPlainly(band, filter);
        EXPECT_TRUE(RunInPlace(band, {&filter}));
        ExpectSame(band, wanted, name + ", width " + std::to_string(width) + ", variant " + std::to_string(variant));
      }
    }
  }
}

// Bands whose wide means hardly ever come out exact, or lie near zero beside far larger samples.
std::vector<std::pair<std::string, std::vector<double>>> WideBands() {
  constexpr int kSize = 40'000;
  std::mt19937 random(31);
  std::normal_distribution<double> normal(0, 1);
  std::vector<std::pair<std::string, std::function<double(int)>>> makers{
      {"around zero", [&](int) { return normal(random); }},
      {"around zero, wide", [&](int) { return 1e6 * normal(random); }},
      {"alternating", [&](int i) { return (i % 2 == 0 ? 100 : -100) + normal(random); }},
      {"squares", [&](int) { return std::pow(normal(random), 2); }},
      {"whole periods", [](int i) { return std::sin(2 * std::numbers::pi * i / 101); }},
      {"every size", [&](int i) { return std::exp(9 * normal(random)) * (i % 3 == 0 ? -1 : 1); }},
      {"half of them tiny", [&](int i) { return normal(random) * (i % 2 == 0 ? 1 : 1e-12); }},
      {"a few huge", [&](int i) { return i % 13'000 == 5000 ? 1e30 : normal(random); }},
      {"mostly zero", [&](int i) { return i % 997 == 0 ? normal(random) : 0; }},
      {"not all numbers", [&](int i) {
         const double odd = i % 2 == 0 ? HUGE_VAL : -HUGE_VAL;
         return i > 20'000 && i % 3001 < 2 ? (i % 4 == 0 ? std::sqrt(-1.0) : odd) : normal(random);
       }}};
  std::vector<std::pair<std::string, std::vector<double>>> bands;
  for (const auto& [name, make] : makers) {
    auto& values = bands.emplace_back(name, std::vector<double>(kSize)).second;
    for (int i = 0; i < kSize; ++i) values[static_cast<std::size_t>(i)] = make(i);
  }
  return bands;
}

// The mean at one sample of a box that is cut at the ends of the line, or shrinks there.
float GetMeanPlainly(const TestBand& band, int at, int width, int edgeMode) {
  const int last = band.GetSize() - 1;
  const int half = width / 2;
  const int reach = edgeMode == CDSPConvolution::kCentred ? std::min({half, at, last - at}) : half;
  double sum = 0;
  int valid = 0;
  for (int i = std::max(0, at - reach); i <= std::min<std::int64_t>(last, std::int64_t{at} + reach); ++i) {
    if (band.nulls.Get(i)) continue;
    sum += band.samples[static_cast<std::size_t>(i)];
    ++valid;
  }
  return static_cast<float>(sum / valid);
}

TEST(DSPConvolution, AWideBoxIsThePlainSumToTheBit) {
  for (const auto& [name, values] : WideBands()) {
    for (const int width : {101, 1009, 8081, 39'999, std::numeric_limits<int>::max()}) {
      for (const int every : {0, 50}) {  // that is null
        const int edgeMode = every == 0 ? CDSPConvolution::kCentred : CDSPConvolution::kPartial;
        TestBand band(std::vector<double>(values.size()));
        for (int i = 0; i < band.GetSize(); ++i) {
          band.samples[static_cast<std::size_t>(i)] = static_cast<float>(values[static_cast<std::size_t>(i)]);
          band.nulls.Set(i, every != 0 && i % every == 7);
        }
        const TestBand from = band;
        CDSPConvolution filter;
        ASSERT_TRUE(filter.SetBoxKernel(1, width, 1, 1));
        filter.edgeMode = edgeMode;
        ASSERT_TRUE(RunInPlace(band, {&filter}));
        for (int at = 0; at < band.GetSize(); at += at < 100 || at > 39'900 ? 1 : 211) {
          if (from.nulls.Get(at)) continue;
          const float got = band.samples[static_cast<std::size_t>(at)];
          const float wanted = GetMeanPlainly(from, at, width, edgeMode);
          EXPECT_TRUE(std::isnan(got) ? std::isnan(wanted)
                                      : std::bit_cast<std::uint32_t>(got) == std::bit_cast<std::uint32_t>(wanted))
              << name << ", width " << width << ", edge mode " << edgeMode << " at " << at << ": " << got << " for "
              << wanted;
        }
      }
    }
  }
}

// What a line can't meet takes no memory and, of a box, no time.
TEST(DSPConvolution, AWindowMayBeWiderThanAnyLine) {
  constexpr int kWidest = std::numeric_limits<int>::max();
  CDSPConvolution mean;
  ASSERT_TRUE(mean.SetBoxKernel(3, kWidest, kWidest, kWidest));
  TestBand cube({1, 2, kNull, 6, 7, 8, 9, 15});
  ASSERT_TRUE(RunInPlace(cube, {&mean}, 2, 2, 2));
  EXPECT_EQ(cube.samples[0], 5.625f) << "along x 1.5, 7.5 and 12 without its null neighbour; then along y, then z";
  EXPECT_TRUE(cube.nulls.Get(2));

  for (const bool wholly : {false, true}) {
    ASSERT_TRUE(mean.SetBoxKernel(1, kWidest, 1, 1));
    mean.edgeMode = wholly ? CDSPConvolution::kInside : CDSPConvolution::kPartial;
    TestBand one({5});
    ASSERT_TRUE(RunInPlace(one, {&mean}));
    EXPECT_EQ(one.nulls.Get(0), wholly);
  }

  CDSPAGC gain;
  gain.dimension = 1;
  gain.width = kWidest;
  TestBand band({3, 4, kNull});
  ASSERT_TRUE(RunInPlace(band, {&gain}));
  EXPECT_EQ(band.samples[1], 4 / std::sqrt(12.5f));

  CDSPConvolution smooth;
  ASSERT_TRUE(smooth.SetGaussianKernel(1, 10'000'001, 1, 1));
  TestBand flat({1, 2, 3});
  ASSERT_TRUE(RunInPlace(flat, {&smooth}));
  EXPECT_NEAR(flat.samples[0], 2, 1e-6);
}

TEST(DSPConvolution, HandFigures) {
  CDSPConvolution filter;
  filter.SetBoxKernel(1, 3, 1, 1);
  filter.edgeMode = CDSPConvolution::kCentred;
  TestBand band({1, 2, kNull, 4, 5});
  RunInPlace(band, {&filter});
  EXPECT_EQ(band.samples, (std::vector<float>{1, 1.5f, -1e32f, 4.5f, 5}));

  filter.SetDifferenceKernel(2);
  TestBand three({1, 4, 9});
  RunInPlace(three, {&filter});
  EXPECT_EQ(three.samples, (std::vector<float>{-1e32f, 2, -1e32f}));

  filter.SetDifferenceKernel(1);
  TestBand ramp({1, 3, 5, 7, kNull, 11, 13});
  RunInPlace(ramp, {&filter});
  EXPECT_EQ(ramp.nulls.Count(), 5);
  EXPECT_EQ(ramp.samples[1], 2) << "the kernel is not reversed";

  filter.SetGaussianKernel(1, 9, 1, 1);
  EXPECT_EQ(filter.GetWeight(0), 1.0);
  EXPECT_DOUBLE_EQ(filter.GetWeight(-2), std::pow(2, -(2 / 2.25) * (2 / 2.25)));
}

TEST(DSPConvolution, RefusedKernelsPassTheDataThrough) {
  for (const int width : {0, -1, 2, 10, std::numeric_limits<int>::max() - 1}) {
    CDSPConvolution filter;
    filter.SetBoxKernel(1, 3, 1, 1);
    EXPECT_FALSE(filter.SetBoxKernel(1, width, 1, 1));
    EXPECT_FALSE(filter.SetGaussianKernel(2, 3, width, 1));
    EXPECT_EQ(filter.filterKind, CDSPConvolution::kNoFilter);
    TestBand band({1, kNull, 3});
    EXPECT_TRUE(RunInPlace(band, {&filter}));
    EXPECT_EQ(band.samples, (std::vector<float>{1, -1e32f, 3}));
    EXPECT_EQ(band.nulls.Count(), 1);
  }
  EXPECT_FALSE(CDSPConvolution().SetBoxKernel(0, 3, 3, 3));
  EXPECT_FALSE(CDSPConvolution().SetBoxKernel(4, 3, 3, 3));
}

// A separable window goes axis by axis, so each pass is the plain filter over lines.
TEST(DSPConvolution, PlanesAndCubesGoAxisByAxis) {
  std::mt19937 random(5);
  const int size[3] = {7, 5, 4};
  for (const int dimension : {2, 3}) {
    const int depth = dimension == 3 ? size[2] : 1;
    std::vector<double> values(static_cast<std::size_t>(size[0] * size[1] * depth));
    for (double& x : values) x = random() % 9 == 0 ? kNull : static_cast<double>(random() % 1000);
    TestBand band(values);
    CDSPConvolution filter;
    filter.SetGaussianKernel(dimension, 3, 5, 3);
    TestBand wanted = band;
    const int strides[3] = {1, size[0], size[0] * size[1]};
    for (int axis = 0; axis < dimension; ++axis) {
      for (int start = 0; start < wanted.GetSize(); ++start) {
        if (start / strides[axis] % size[axis] != 0) continue;
        std::vector<double> line;
        for (int i = 0; i < size[axis]; ++i) {
          const int at = start + i * strides[axis];
          line.push_back(wanted.nulls.Get(at) ? kNull : wanted.samples[static_cast<std::size_t>(at)]);
        }
        const TestBand filtered = FilterPlainly(TestBand(line), filter, axis);
        for (int i = 0; i < size[axis]; ++i) {
          const int at = start + i * strides[axis];
          wanted.samples[static_cast<std::size_t>(at)] = filtered.samples[static_cast<std::size_t>(i)];
          wanted.nulls.Set(at, filtered.nulls.Get(i));
        }
      }
    }
    EXPECT_TRUE(RunInPlace(band, {&filter}, size[0], size[1], depth));
    ExpectSame(band, wanted, std::to_string(dimension) + " dimensions");
  }
}

TEST(DSPAGC, DividesByTheNeighbourhoodsAmplitude) {
  CDSPAGC agc;
  agc.dimension = 1;
  agc.width = 3;
  TestBand band({3, -3, 3, kNull, 0, 0, 0, 5});
  EXPECT_TRUE(RunInPlace(band, {&agc}));
  EXPECT_EQ(band.samples[0], 1);
  EXPECT_EQ(band.samples[1], -1);
  EXPECT_EQ(band.samples[2], 1) << "a null doesn't count in its neighbour's window";
  for (const int i : {3, 4, 5}) EXPECT_TRUE(band.nulls.Get(i)) << i;
  EXPECT_EQ(band.samples[6], 0.0f) << "its window reaches the 5";
  EXPECT_EQ(band.samples[7], 5 / std::sqrt(12.5f));

  agc.width = 1;
  TestBand signs({2, -7, 0, 1e30});
  TestBand apart({9, 9, 9, 9});
  EXPECT_TRUE(RunApart(signs, apart, {&agc}));
  EXPECT_EQ(apart.samples, (std::vector<float>{1, -1, -1e32f, -1e32f})) << "an infinite amplitude gives a null";
  EXPECT_EQ(signs.samples[1], -7) << "the input stands";

  agc.width = 4;
  TestBand refused({2, kNull, -3});
  RunInPlace(refused, {&agc});
  EXPECT_EQ(refused.samples, (std::vector<float>{2, -1e32f, -3})) << "a step that can't work lets the data pass";
}

}  // namespace

}  // namespace tallyscope
