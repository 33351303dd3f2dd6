// SPDX-License-Identifier: MIT
#include "statistics/Stats_Histogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "statistics/Stats_HistData.h"
#include "statistics/Stats_Univariate.h"
#include "tests/support/Made.h"

namespace tallyscope {

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

constexpr int kSorted = 0;
constexpr int kBinned = 1;

CStats_Histogram Computed(CStats_Data& table, int mode, int maxBins) {
  CStats_Histogram histogram;
  histogram.SetBinMode(mode);
  histogram.SetMaxBins(maxBins);
  histogram.Add(&table, 0);
  histogram.Calculate(1, nullptr);
  return histogram;
}

CStats_Histogram Of(std::vector<double> values, int mode, int maxBins) {
  CMadeTable table({made::Column(std::move(values))});
  return Computed(table, mode, maxBins);
}

template <class Get>
std::vector<double> Each(const CStats_Histogram& histogram, Get get) {
  std::vector<double> got;
  for (const auto& bin : histogram.bins) got.push_back(get(bin));
  return got;
}

std::vector<double> Counts(const CStats_Histogram& h) {
  return Each(h, [](auto& bin) { return bin.count; });
}
std::vector<double> Cumulatives(const CStats_Histogram& h) {
  return Each(h, [](auto& bin) { return bin.cumulative; });
}

using Doubles = std::vector<double>;

TEST(BinnedHistogram, ByHand) {
  // Width 2.5: a value on an edge opens the next bin, the maximum stays in the last.
  auto histogram = Of({0, 1, 2.5, 4, 4.5, 10, 9, 0.5}, kBinned, 4);
  EXPECT_EQ(Counts(histogram), (Doubles{3, 3, 0, 2}));
  EXPECT_EQ(Cumulatives(histogram), (Doubles{0.375, 0.75, 0.75, 1}));
  EXPECT_EQ(Each(histogram, [](auto& bin) { return bin.binMin; }), (Doubles{0, 2.5, 5, 7.5}));
  EXPECT_EQ(Each(histogram, [](auto& bin) { return bin.binMax; }), (Doubles{2.5, 5, 7.5, 10}));
  EXPECT_EQ(Each(histogram, [](auto& bin) { return bin.dataMin; }), (Doubles{0, 2.5, 1e10, 9}));
  EXPECT_EQ(Each(histogram, [](auto& bin) { return bin.dataMax; }), (Doubles{1, 4.5, -1e10, 10}));
  EXPECT_EQ(histogram.GetMode(), 0.5) << "the first of two bins with three";
  EXPECT_EQ(histogram.GetPercentile(0.5), (4.5 - 2.5) * (0.5 - 0.375) / (0.75 - 0.375) + 2.5);
  EXPECT_EQ(histogram.GetPercentile(0), 0);
  EXPECT_EQ(histogram.GetPercentile(1), 10);
  EXPECT_EQ(histogram.FindPercentileBin(0.75), 1) << "the first of a run that has reached it";
  EXPECT_EQ(histogram.FindPercentileBin(0.7500001), 3);
  EXPECT_EQ(histogram.FindFirstBin(0.75), 1);
  EXPECT_EQ(histogram.FindFirstBin(7), 3) << "limited to 1";
  EXPECT_EQ(histogram.FindLastBin(0.75), 0);
  EXPECT_EQ(histogram.FindLastBin(0.375), -1);
  EXPECT_EQ(histogram.FindLastBin(0.9), 2);
  EXPECT_EQ(histogram.GetCumulative(5), 0.75);
  EXPECT_EQ(histogram.GetCumulative(1.25), 0.1875);
  EXPECT_EQ(histogram.GetCumulative(-3), 0);
  EXPECT_EQ(histogram.GetCumulative(30), 1);
  EXPECT_EQ(histogram.GetCumulative(kNan), 0);
  EXPECT_EQ(histogram.GetBinIndex(-1e300), 0);
  EXPECT_EQ(histogram.GetBinIndex(1e300), 3);
  EXPECT_EQ(histogram.GetBinIndex(kInf), 3);
  EXPECT_EQ(histogram.GetBinIndex(kNan), 0);
}

TEST(SortedHistogram, ByHand) {
  auto histogram = Of({9, 1, 2, 2, 3, 7, 8}, kSorted, 3);  // borders where 3/7, 5/7 and 7/7 are reached
  EXPECT_EQ(Counts(histogram), (Doubles{3, 2, 2}));
  EXPECT_EQ(Cumulatives(histogram), (Doubles{3.0 / 7, 5.0 / 7, 1}));
  EXPECT_EQ(Each(histogram, [](auto& bin) { return bin.binMin; }), (Doubles{1, 3, 8}));
  EXPECT_EQ(Each(histogram, [](auto& bin) { return bin.binMax; }), (Doubles{3, 8, 9}));
  EXPECT_EQ(Each(histogram, [](auto& bin) { return bin.dataMax; }), (Doubles{2, 7, 9}));
  EXPECT_EQ(histogram.GetMode(), 1.5) << "the first of two bins that spread by 1";
  EXPECT_EQ(histogram.GetPercentile(0.5), (7.0 - 3) * (0.5 - 3.0 / 7) / (5.0 / 7 - 3.0 / 7) + 3);
  EXPECT_EQ(histogram.GetBinIndex(3), 0);
  EXPECT_EQ(histogram.GetBinIndex(3.5), 1);
  EXPECT_EQ(histogram.GetBinIndex(99), 2);
  EXPECT_EQ(histogram.GetCumulative(99), 1);
  EXPECT_EQ(histogram.GetCumulative(2), 3.0 / 14);
  EXPECT_EQ(histogram.GetCumulative(kNan), 0);
  EXPECT_EQ(Of({0, 9e10, 1e11, 1.2e11}, kSorted, 2).GetMode(), 1.1e11) << "spreads have no bound";
  EXPECT_EQ(Of({-kInf, 0, 1, kInf}, kSorted, 2).GetMode(), -kInf) << "the first bin, where none has a finite spread";
}

TEST(SortedHistogram, BinsHoldEqualCounts) {
  for (const int n : {1, 5, 10, 255, 256, 257, 1000, 4099}) {
    SCOPED_TRACE(n);
    CMadeTable table({made::WithNulls(made::Normal(2 * n, 0, 1), made::Every(2))});
    auto histogram = Computed(table, kSorted, 256);
    const auto counts = Counts(histogram);
    EXPECT_EQ(histogram.GetBinCount(), std::min(n, 256));
    EXPECT_EQ(std::accumulate(counts.begin(), counts.end(), 0.0), n);
    const auto [least, most] = std::minmax_element(counts.begin(), counts.end());
    EXPECT_LE(*most - *least, 1);
    EXPECT_EQ(histogram.bins.back().cumulative, 1.0);
    for (std::size_t i = 1; i < histogram.bins.size(); ++i) {
      EXPECT_EQ(histogram.bins[i - 1].binMax, histogram.bins[i].dataMin);
      EXPECT_LE(histogram.bins[i - 1].dataMax, histogram.bins[i].dataMin);
    }
  }
}

// The formula as it is written, a value at a time.
TEST(BinnedHistogram, PutsEveryValueWhereTheFormulaPutsIt) {
  for (const auto& column :
       {made::Normal(20'000, 5, 3), made::Ramp(4'097, 0, 1), made::Rounded(made::Normal(9'000, 1e6, 7), 0.1),
        made::Ramp(4'097, 0, 49 * 4'096), made::Column({0, 5e-324, 5e-324}), made::Ramp(1'000, -1e-300, 1e-300),
        made::Column({3e10, 2e10, 4e10, 4e10}), made::Column({1, kInf, 2, 3}), made::Column({1, kNan, 2, 3}),
        made::Column({kNan, kNan})}) {
    CMadeTable table({column});
    CStats_Univariate owner;
    owner.Add(&table, 0);
    owner.Calculate(9, nullptr);
    auto& histogram = owner.binnedHistogram;
    const int bins = histogram.GetBinCount();
    ASSERT_EQ(bins, std::min(4096, table.GetSize()));
    const double width = (owner.maximum - owner.minimum) / bins;
    Doubles counts(static_cast<std::size_t>(bins));
    for (const double x : column.values) {
      const double index = std::min((x - owner.minimum) / width, bins - 1.0);
      ++counts[width == 0 || !(index > 0) ? 0 : static_cast<std::size_t>(index)];
    }
    EXPECT_EQ(Counts(histogram), counts);
    EXPECT_EQ(histogram.bins.back().cumulative, 1);
  }
}

TEST(Histogram, OfEqualValues) {
  for (const int mode : {kSorted, kBinned}) {
    auto histogram = Of(Doubles(50, 7.25), mode, 10);
    EXPECT_EQ(histogram.GetBinCount(), 10);
    EXPECT_EQ(histogram.GetMode(), 7.25);
    EXPECT_EQ(histogram.GetPercentile(0.5), 7.25);
    EXPECT_EQ(histogram.GetBinIndex(7.25), 0);
  }
  auto binned = Of(Doubles(50, 7.25), kBinned, 10);
  EXPECT_EQ(binned.bins[0].count, 50);
  EXPECT_EQ(binned.bins[1].dataMin, 1e10);
  EXPECT_EQ(Cumulatives(binned), Doubles(10, 1.0));
}

TEST(Histogram, AnswersWhenEmpty) {
  CStats_Histogram histogram;
  for (const int mode : {kSorted, kBinned, 7}) {
    histogram.SetBinMode(mode);
    EXPECT_EQ(histogram.GetMode(), 0);
    EXPECT_EQ(histogram.GetPercentile(0.5), 0);
    EXPECT_EQ(histogram.FindPercentileBin(0.5), -1);
    EXPECT_EQ(histogram.GetBinIndex(1), -1);
    EXPECT_EQ(histogram.GetCumulative(1), 0);
    EXPECT_EQ(histogram.FindFirstBin(0.5), 0);
    EXPECT_EQ(histogram.FindLastBin(0.5), -1);
    EXPECT_FALSE(histogram.Regroup(4));
    EXPECT_FALSE(histogram.ConvertToSorted(4));
  }
}

TEST(Histogram, CantBeMadeWithoutValuesBinsOrOrder) {
  CMadeTable nulls({made::WithNulls(made::Constant(9, 1), made::Every(1))});
  CMadeTable values({made::Ramp(9, 0, 1)});
  CSingleReads tooLarge(values);
  tooLarge.canSort = false;
  for (const int mode : {kSorted, kBinned}) {
    EXPECT_EQ(Computed(nulls, mode, 4).GetFlags(0), 0);
    EXPECT_EQ(Computed(values, mode, 0).GetFlags(0), 0);
    EXPECT_EQ(Computed(values, mode, -5).GetFlags(0), 0);
    EXPECT_EQ(Computed(values, mode, 4).GetFlags(0), 1);
  }
  EXPECT_EQ(Computed(tooLarge, kSorted, 4).GetFlags(0), 0);
  EXPECT_EQ(Computed(tooLarge, kBinned, 4).GetFlags(0), 1);
}

TEST(Histogram, OfAPlainVector) {
  Doubles values = {4, 1, 3, 2};
  CStats_Histogram histogram;
  EXPECT_TRUE(histogram.Compute(&values, kSorted));
  EXPECT_EQ(Counts(histogram), Doubles(4, 1.0));
  EXPECT_EQ(histogram.bins[3].binMax, 4);
  EXPECT_FALSE(histogram.IsItem(0)) << "refers to a table that is gone";
  EXPECT_EQ(histogram.owner, nullptr);
  Doubles none;
  EXPECT_FALSE(CStats_Histogram().Compute(&none, kBinned));
}

TEST(Histogram, PercentilesAndFractionsOutOfRange) {
  auto histogram = Of({1, 2, 3, 4}, kSorted, 2);
  EXPECT_EQ(histogram.GetPercentile(2), 4) << "clipped in every bin but the first";
  EXPECT_EQ(histogram.GetPercentile(-1), (2 - 1) * -1.0 / 0.5 + 1) << "not clipped in the first";
  EXPECT_EQ(histogram.FindPercentileBin(-1), 0);
  EXPECT_EQ(histogram.FindPercentileBin(2), 1);
  EXPECT_EQ(histogram.FindPercentileBin(kNan), 0);
  EXPECT_TRUE(std::isnan(histogram.GetPercentile(kNan)));
}

TEST(Regroup, CutsOldBinsInProportion) {
  auto histogram = Of({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 20}, kSorted, 4);  // threes: [0,3] [3,6] [6,9] [9,20]
  ASSERT_TRUE(histogram.Regroup(5));  // 2.4 a bin: up to 2, 5, 7, 10 and 12 stations
  EXPECT_EQ(Counts(histogram), (Doubles{2, 3, 2, 3, 2}));
  EXPECT_EQ(Each(histogram, [](auto& bin) { return bin.binMin; }), (Doubles{0, 2, 5, 7, 9 + 11.0 / 3}));
  EXPECT_EQ(Each(histogram, [](auto& bin) { return bin.binMax; }), (Doubles{2, 5, 7, 9 + 11.0 / 3, 20}));
  EXPECT_EQ(Each(histogram, [](auto& bin) { return bin.dataMax; }),
            Each(histogram, [](auto& bin) { return bin.binMax; }));
  EXPECT_EQ(Cumulatives(histogram), (Doubles{2 / 12.0, 5 / 12.0, 7 / 12.0, 10 / 12.0, 1}));
  EXPECT_EQ(histogram.GetMaxBins(), 5);
}

TEST(Regroup, KeepsTheStationsWhateverTheCount) {
  for (const int count : {1, 2, 3, 7, 100, 299, 300, 301, 1000}) {
    SCOPED_TRACE(count);
    CMadeTable table({made::Normal(300, 0, 1)});
    auto histogram = Computed(table, kBinned, 64);
    ASSERT_TRUE(histogram.ConvertToSorted(count));
    EXPECT_EQ(histogram.GetBinMode(), kSorted);
    const auto counts = Counts(histogram);
    EXPECT_EQ(static_cast<int>(counts.size()), count);
    EXPECT_EQ(std::accumulate(counts.begin(), counts.end(), 0.0), 300);
    EXPECT_TRUE(count != 300 || counts == Doubles(300, 1.0));
    EXPECT_EQ(histogram.bins.back().cumulative, 1);
    for (const auto& bin : histogram.bins) EXPECT_LE(bin.binMin, bin.binMax);
  }
}

TEST(Regroup, RefusesWhatItCantDo) {
  auto binned = Of({1, 2, 3}, kBinned, 3);
  EXPECT_FALSE(binned.Regroup(2));
  auto sorted = Of({1, 2, 3}, kSorted, 3);
  EXPECT_FALSE(sorted.ConvertToSorted(2));
  EXPECT_FALSE(sorted.Regroup(0));
  EXPECT_FALSE(sorted.Regroup(-1));
  EXPECT_EQ(Counts(sorted), Doubles(3, 1.0));
}

TEST(HistData, ShowsTheBinsAsATable) {
  auto histogram = Of({0, 1, 10}, kBinned, 3);
  CStats_HistData data;
  EXPECT_EQ(data.GetSize(), 0);
  EXPECT_FALSE(data.IsValueValid(0, 0));
  data.histogram = &histogram;
  EXPECT_EQ(data.GetSize(), 3);
  EXPECT_EQ(data.GetValueSize(), 9);
  std::string names;
  for (int field = -1; field <= 9; ++field) names += data.GetValueName(field) + ",";
  EXPECT_EQ(names, ",Bin,BinMin,BinCentre,BinMax,DataMin,DataCentre,DataMax,Count,Cumulative,,");
  Doubles row;
  for (int field = 0; field <= 9; ++field) row.push_back(data.CStats_HistData::GetValue(field, 0));
  const double edge = 10.0 / 3;
  EXPECT_EQ(row, (Doubles{1, 0, edge / 2, edge, 0, 0.5, 1, 2, 2.0 / 3, 0}));

  for (int field = 0; field < 9; ++field) {
    double value = 5;
    const bool ofData = field >= 4 && field <= 6;
    EXPECT_EQ(data.GetValue(field, 1, value), !ofData) << "field " << field << " of an empty bin";
    EXPECT_EQ(value == -1e32, ofData) << field;
    EXPECT_FALSE(data.GetValue(field, 3, value));
    EXPECT_EQ(value, -1e32);
    EXPECT_FALSE(data.GetValue(field, -1, value));
  }
  data.Sort(7, 1, nullptr);
  EXPECT_EQ(data.GetSortedStation(7, 0), 0);
}

}  // namespace

}  // namespace tallyscope
