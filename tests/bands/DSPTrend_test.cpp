// SPDX-License-Identifier: MIT
#include "bands/DSPTrend.h"

#include <gtest/gtest.h>

#include <limits>

#include "BandTesting.h"
#include "bands/Stats_DSPData.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(DSPTrend, ALineLeavesNothing) {
  std::vector<double> values;
  for (int t = 0; t < 100; ++t) values.push_back(3 * t - 50);
  TestBand band(values);
  CDSPTrend trend;
  trend.method = CDSPTrend::kLinear;
  EXPECT_TRUE(RunInPlace(band, {&trend}));
  for (const float rest : band.samples) EXPECT_NEAR(rest, 0, 1e-4);
  EXPECT_NEAR(trend.coefficients[0][0], 3, 1e-12);
  EXPECT_NEAR(trend.coefficients[0][1], -50, 1e-10);
}

// With nulls the slope is off by the regression's divisor, which counts them; what is subtracted is that line all the
// same, and the way back gives the samples again.
TEST(DSPTrend, NullsStayAndTheWayBack) {
  for (const int method : {CDSPTrend::kConstant, CDSPTrend::kLinear}) {
    TestBand band({kNan, 4, 6, kNan, 3, 8, 9, 11, kNan, 12});
    const TestBand before = band;
    CDSPTrend trend;
    trend.method = method;
    ASSERT_TRUE(RunInPlace(band, {&trend}));
    EXPECT_EQ(trend.restore, 1);
    ASSERT_EQ(trend.coefficients.size(), 1u);
    const auto c = trend.coefficients[0];
    for (int t = 0; t < band.GetSize(); ++t) {
      const auto at = static_cast<std::size_t>(t);
      EXPECT_EQ(band.nulls.Get(t), before.nulls.Get(t));
      const double line = method == CDSPTrend::kConstant ? c[0] : t * c[0] + c[1];
      const double rest = before.samples[at] - line;
      EXPECT_EQ(band.samples[at], before.nulls.Get(t) ? CDSPDataBand::kDefaultNull : static_cast<float>(rest));
    }
    ASSERT_TRUE(RunInPlace(band, {&trend}));
    EXPECT_EQ(trend.restore, 0);
    for (int t = 0; t < band.GetSize(); ++t) {
      const auto at = static_cast<std::size_t>(t);
      if (before.nulls.Get(t)) continue;
      EXPECT_FLOAT_EQ(band.samples[at], before.samples[at]);
    }
  }
}

TEST(DSPTrend, Constants) {
  const double expected[] = {5, 4, 0, 1, 12};  // mean, median, (mode below), minimum, maximum
  for (int statistic = 0; statistic <= 4; ++statistic) {
    TestBand band({1, 4, 3, 5, 12, kNan});
    CDSPData data;
    data.SetDimensions(6, 1, 1);
    band.Put(data);
    CStats_DSPData table(&data);
    CStats_Univariate figures;
    figures.Add(&table, 0);
    figures.Calculate(9, nullptr);
    CDSPTrend trend;
    trend.statistic = statistic;
    ASSERT_TRUE(RunInPlace(band, {&trend}));
    const bool quantile = statistic == CDSPTrend::kMedian || statistic == CDSPTrend::kMode;
    const double binned = statistic == CDSPTrend::kMedian ? figures.median : figures.mode;
    EXPECT_EQ(trend.coefficients[0][0], quantile ? binned : expected[statistic]);
  }
}

// A plane over any two axes of a cube's face.
TEST(DSPTrend, Planes) {
  const struct { int x, y, z; } shapes[] = {{6, 5, 1}, {6, 1, 5}, {1, 6, 5}};
  for (const auto& shape : shapes) {
    std::vector<double> values;
    for (int v = 0; v < 5; ++v) {
      for (int u = 0; u < 6; ++u) values.push_back((u + v) % 7 == 3 ? kNan : 10 + 2 * u - 3 * v);
    }
    TestBand band(values);
    const TestBand before = band;
    CDSPTrend trend;
    trend.method = CDSPTrend::kLinear;
    ASSERT_TRUE(RunInPlace(band, {&trend}, shape.x, shape.y, shape.z));
    ASSERT_EQ(trend.coefficients[0].size(), 9u);
    for (int t = 0; t < band.GetSize(); ++t) {
      const auto at = static_cast<std::size_t>(t);
      EXPECT_EQ(band.nulls.Get(t), before.nulls.Get(t));
      if (before.nulls.Get(t)) continue;
      EXPECT_NEAR(band.samples[at], 0, 1e-5) << t;
    }
    ASSERT_TRUE(RunInPlace(band, {&trend}, shape.x, shape.y, shape.z));
    for (int t = 0; t < band.GetSize(); ++t) {
      const auto at = static_cast<std::size_t>(t);
      if (before.nulls.Get(t)) continue;
      EXPECT_NEAR(band.samples[at], before.samples[at], 1e-5);
    }
  }
}

TEST(DSPTrend, FewSamples) {
  for (const int samples : {0, 1, 2}) {
    std::vector<double> values(5, kNan);
    for (int i = 0; i < samples; ++i) values[static_cast<std::size_t>(i + 1)] = 3;
    TestBand band(values);
    CDSPTrend trend;
    trend.method = CDSPTrend::kLinear;
    EXPECT_TRUE(RunInPlace(band, {&trend}));
    for (int i = 0; i < samples; ++i) EXPECT_EQ(band.samples[static_cast<std::size_t>(i + 1)], 0);
    EXPECT_EQ(band.nulls.Count(), 5 - samples);
  }
}

}  // namespace
}  // namespace tallyscope
