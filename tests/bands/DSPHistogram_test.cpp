// SPDX-License-Identifier: MIT
#include "bands/DSPHistogram.h"

#include <gtest/gtest.h>

#include <limits>

#include "BandTesting.h"
#include "bands/Stats_DSPData.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// The band's own histogram, asked sample by sample, in place and apart.
TEST(DSPHistogram, GivesTheCumulativeFraction) {
  std::vector<double> values;
  for (int t = 0; t < 3000; ++t) values.push_back(t % 11 == 3 ? kNan : std::exp(std::sin(t * 1.7) * 3) + t % 5);
  values[100] = std::numeric_limits<double>::infinity();
  for (const bool withInfinity : {false, true}) {
    if (!withInfinity) values[100] = 1;
    for (const bool sorted : {false, true}) {
      TestBand band(values);
      band.samples[7] = std::numeric_limits<float>::quiet_NaN();
      const TestBand before = band;
      CDSPData data;
      data.SetDimensions(band.GetSize(), 1, 1);
      TestBand copy = band;
      copy.Put(data);
      CStats_DSPData table(&data);
      CStats_Univariate figures;
      figures.Add(&table, 0);
      figures.Calculate(sorted ? 16 : 32, nullptr);
      CStats_Histogram& histogram = sorted ? figures.sortedHistogram : figures.binnedHistogram;

      CDSPHistogram equalise;
      equalise.sorted = sorted;
      TestBand apart(band);
      ASSERT_TRUE(RunApart(band, apart, {&equalise}));
      ASSERT_TRUE(RunInPlace(band, {&equalise}));
      for (int t = 0; t < band.GetSize(); ++t) {
        const auto at = static_cast<std::size_t>(t);
        const float expected = before.nulls.Get(t) ? CDSPDataBand::kDefaultNull
                                                   : static_cast<float>(histogram.GetCumulative(before.samples[at]));
        ASSERT_EQ(band.samples[at], expected) << t;
        ASSERT_EQ(apart.samples[at], expected) << t;
        ASSERT_EQ(band.nulls.Get(t), before.nulls.Get(t));
      }
      EXPECT_EQ(band.samples[7], 0) << "what is no number";
    }
  }
}

TEST(DSPHistogram, Edges) {
  CDSPHistogram equalise;
  TestBand equal({5, 5, kNan, 5});
  RunInPlace(equal, {&equalise});
  EXPECT_EQ(equal.samples[0], equal.samples[1]);
  EXPECT_EQ(equal.samples[0], equal.samples[3]);
  EXPECT_GE(equal.samples[0], 0);
  EXPECT_LE(equal.samples[0], 1);

  TestBand none({kNan, kNan});
  EXPECT_TRUE(RunInPlace(none, {&equalise}));
  EXPECT_EQ(none.nulls.Count(), 2);
  EXPECT_EQ(none.samples[1], CDSPDataBand::kDefaultNull);

  std::vector<double> ramp;
  for (int t = 0; t < 1000; ++t) ramp.push_back(t);
  TestBand even(ramp);
  RunInPlace(even, {&equalise});
  EXPECT_NEAR(even.samples.front(), 0, 0.002);
  EXPECT_NEAR(even.samples[500], 0.5, 0.002);
  EXPECT_EQ(even.samples.back(), 1);
}

}  // namespace
}  // namespace tallyscope
