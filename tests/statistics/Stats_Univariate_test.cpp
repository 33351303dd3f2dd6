// SPDX-License-Identifier: MIT
#include "statistics/Stats_Univariate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "statistics/ProgressSink.h"
#include "tests/support/Made.h"

namespace tallyscope {

namespace {

CMadeTable Table(std::vector<double> values) {
  return CMadeTable({made::Column(std::move(values))});
}

CStats_Univariate Computed(CStats_Data& table, int flags, int dim = 0) {
  CStats_Univariate figures;
  figures.Add(&table, dim);
  figures.Calculate(flags, nullptr);
  return figures;
}

// Figures as they are defined, station by station.
struct PlainFigures {
  PlainFigures(CStats_Data& data, int dim) {
    double sum = 0;
    double squares = 0;
    double x = 0;
    for (int station = 0; station < data.GetSize(); ++station) {
      if (!data.GetValue(dim, station, x)) continue;
      ++valid;
      if (x < minimum) minimum = x;
      if (x > maximum) maximum = x;
      sum += x;
      squares += x * x;
    }
    mean = sum / std::max(valid, 1);
    if (valid >= 2) variance = (squares - sum * sum / valid) / (valid - 1);
    if (!(variance > 0)) variance = 0;
    double cubes = 0;
    for (int station = 0; station < data.GetSize(); ++station) {
      if (data.GetValue(dim, station, x)) cubes += std::pow(x - mean, 3.0);
    }
    const double deviation = std::sqrt(variance);
    skewness = cubes / std::max(valid, 1);
    if (deviation > 2.220446049250313e-16) skewness /= std::pow(deviation, 3.0);
  }
  int valid = 0;
  double minimum = 1e10;
  double maximum = -1e10;
  double mean = 0;
  double variance = 0;
  double skewness = 0;
};

// Notes what it is told, and cancels at the given word of a task.
class NotedProgress : public CProgressSink {
 public:
  explicit NotedProgress(std::string cancelIn = "", int cancelAt = 0)
      : cancelIn_(std::move(cancelIn)), cancelAt_(cancelAt) {}
  bool OnProgress(int percent) override {
    percents.push_back(percent);
    return cancelIn_.empty() || task_.find(cancelIn_) == std::string::npos || percent < cancelAt_;
  }
  void SetTask(const char* text, int) override {
    task_ = text;
    tasks += task_.substr(0, task_.find(' ')) + " ";
  }
  std::string tasks;
  std::vector<int> percents;

 private:
  std::string task_;
  std::string cancelIn_;
  int cancelAt_;
};

TEST(Univariate, FiguresByHand) {
  struct Case {
    const char* name;
    std::vector<double> values;
    double minimum, maximum, mean, variance, deviation, ratio, skewness;
  };
  const Case cases[] = {
      {"none", {}, 0, 0, 0, 0, 0, 0, 0},
      {"one", {5}, 5, 5, 5, 0, 0, 0, 0},
      {"two", {1, 3}, 1, 3, 2, 2, 1.4142135623730951, 1.414213562373095, 0},
      {"constant", {7, 7, 7, 7}, 7, 7, 7, 0, 0, 0, 0},
      {"skewed", {1, 2, 3, 10}, 1, 10, 4, 50.0 / 3, 4.082482904638630, 0.9797958971132712, 45 / 68.04138174397718},
      {"above the start value", {2e10, 4e10}, 1e10, 4e10, 3e10, 2e20, 14142135623.730951, 2.121320343559643, 0},
      {"below the start value", {-2e10, -4e10}, -4e10, -1e10, -3e10, 2e20, 14142135623.730951, -2.121320343559643, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    auto table = Table(c.values);
    const auto figures = Computed(table, 3);
    EXPECT_EQ(figures.total, static_cast<int>(c.values.size()));
    EXPECT_EQ(figures.valid, figures.total);
    EXPECT_EQ(figures.minimum, c.minimum);
    EXPECT_EQ(figures.maximum, c.maximum);
    EXPECT_EQ(figures.mean, c.mean);
    EXPECT_DOUBLE_EQ(figures.variance, c.variance);
    EXPECT_DOUBLE_EQ(figures.standardDeviation, c.deviation);
    EXPECT_DOUBLE_EQ(figures.ratio, c.ratio);
    EXPECT_DOUBLE_EQ(figures.skewness, c.skewness);
  }
}

TEST(Univariate, CountsNullsApart) {
  auto table = TableFrom(R"(X  Au
                            0  1
                            1  -
                            2  3
                            3  -)");
  auto figures = Computed(table, 1);
  EXPECT_EQ(figures.total, 4);
  EXPECT_EQ(figures.valid, 2);
  EXPECT_EQ(figures.invalid, 2);
  EXPECT_EQ(figures.mean, 2);
  EXPECT_EQ(Computed(table, 1, -1).mean, 1.5);

  CMadeTable nulls({made::WithNulls(made::Constant(700, 3), made::Every(1))});
  figures = Computed(nulls, 1);
  EXPECT_EQ(figures.valid, 0);
  EXPECT_EQ(figures.invalid, 700);
  EXPECT_EQ(figures.minimum, 0);
  EXPECT_EQ(figures.maximum, 0);
  EXPECT_FALSE(figures.Calculate(8, nullptr)) << "no value to put in a bin";
  EXPECT_FALSE(figures.Calculate(16, nullptr));
  EXPECT_TRUE(figures.Calculate(2, nullptr));
  EXPECT_EQ(figures.skewness, 0);
}

// Blocks, the shared read and the quick cubes must not show in any figure.
TEST(Univariate, FiguresAreThoseOfThePlainLoopsToTheLastBit) {
  const double inf = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const std::vector<MadeColumn> columns = {
      made::Normal(10'007, 100, 15),
      made::WithNulls(made::Normal(5'000, -3e-7, 1e-9), made::Every(3)),
      made::WithNulls(made::Ramp(1'025, 0, 1e6), [](int i) { return i % 512 < 500; }),
      made::Rounded(made::Normal(2'000, 1e6, 0.01), 0.001),
      made::Constant(513, 0.1),
      made::Column({-0.0, 0.0, -0.0}),
      made::Column({1, inf, 3, 4}),
      made::Column({1, nan, 3, 4}),
      made::Column({1e200, -1e200, 5e102, 1e-200}),
  };
  for (std::size_t i = 0; i < columns.size(); ++i) {
    SCOPED_TRACE(i);
    CMadeTable table({columns[i]});
    CSingleReads single(table);
    const PlainFigures plain(table, 0);
    for (CStats_Data* data : {static_cast<CStats_Data*>(&table), static_cast<CStats_Data*>(&single)}) {
      NotedProgress sink;
      for (CProgressSink* progress : {static_cast<CProgressSink*>(nullptr), static_cast<CProgressSink*>(&sink)}) {
        CStats_Univariate figures;
        figures.Add(data, 0);
        EXPECT_TRUE(figures.Calculate(11, progress));
        EXPECT_EQ(figures.valid, plain.valid);
        EXPECT_EQ(figures.minimum, plain.minimum);
        EXPECT_EQ(std::signbit(figures.minimum), std::signbit(plain.minimum));
        EXPECT_EQ(std::signbit(figures.maximum), std::signbit(plain.maximum));
        EXPECT_EQ(figures.maximum, plain.maximum);
        EXPECT_EQ(figures.variance, plain.variance);
        const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
        EXPECT_PRED2(same, figures.mean, plain.mean);
        EXPECT_PRED2(same, figures.skewness, plain.skewness);
      }
    }
  }
}

TEST(Univariate, TheSharedReadGivesWhatSeparatePassesGive) {
  for (const auto& column : {made::Normal(3'000, 5, 2), made::WithNulls(made::Ramp(100, 0, 9), made::Every(4)),
                             made::WithNulls(made::Constant(3, 1), made::Every(1))}) {
    CMadeTable made({column});
    CSingleReads table(made);
    auto shared = Computed(table, 11);
    CStats_Univariate apart;
    apart.Add(&table, 0);
    apart.Calculate(1, nullptr);
    apart.Calculate(2, nullptr);
    apart.Calculate(8, nullptr);
    EXPECT_EQ(shared.GetFlags(0), apart.GetFlags(0));
    EXPECT_EQ(shared.skewness, apart.skewness);
    EXPECT_EQ(shared.median, apart.median);
    EXPECT_EQ(shared.binnedMode, apart.binnedMode);
    ASSERT_EQ(shared.binnedHistogram.GetBinCount(), apart.binnedHistogram.GetBinCount());
    EXPECT_EQ(shared.binnedHistogram.GetValidCount(), apart.binnedHistogram.GetValidCount());
    for (std::size_t i = 0; i < shared.binnedHistogram.bins.size(); ++i) {
      const auto& a = shared.binnedHistogram.bins[i];
      const auto& b = apart.binnedHistogram.bins[i];
      ASSERT_TRUE(a.binMin == b.binMin && a.binMax == b.binMax && a.dataMin == b.dataMin && a.dataMax == b.dataMax &&
                  a.count == b.count && a.cumulative == b.cumulative);
    }
  }
}

TEST(Univariate, ReadsTheValuesTwice) {
  CMadeTable made({made::Normal(10'000, 0, 1)});
  CSingleReads table(made);
  auto figures = Computed(table, 11);
  EXPECT_EQ(table.rawReads, 20'000);
  EXPECT_TRUE(figures.Calculate(11, nullptr));
  EXPECT_EQ(table.rawReads, 20'000) << "computed again what was done";
}

TEST(Univariate, FlagsSayWhatIsDone) {
  struct Case {
    int first, second;  // requests, one after the other
    int flags;          // afterwards
    bool result;        // of the second
  };
  const Case cases[] = {
      {1, 0, 1, true},   {2, 0, 3, true},    {4, 0, 5, true},   {8, 0, 9, true},     {11, 0, 11, true},
      {16, 0, 53, true}, {32, 0, 57, true},  {48, 0, 61, true}, {11, 16, 11, false}, {11, 32, 11, false},
      {11, 4, 15, true}, {16, 32, 53, true}, {16, 8, 61, true}, {32, 16, 57, true},  {32, 4, 61, true},
      {64, 0, 0, true},  {65, 64, 1, false},
  };
  CMadeTable table({made::Normal(500, 0, 1)});
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.first << " then " << c.second);
    auto figures = Computed(table, c.first);
    EXPECT_EQ(figures.Calculate(c.second, nullptr), c.result);
    EXPECT_EQ(figures.GetFlags(0), c.flags);
  }
}

TEST(Univariate, QuantilesOnShowComeFromTheBestHistogramMade) {
  CMadeTable table({made::Normal(3'000, 0, 1)});
  CSingleReads unsortable(table);
  unsortable.canSort = false;
  EXPECT_EQ(Computed(unsortable, 16).GetFlags(0), 1 | 8 | 16 | 32);
  EXPECT_EQ(Computed(unsortable, 16).median, Computed(table, 8).binnedMedian);
  auto figures = Computed(table, 8);
  const double binned = figures.binnedMedian;
  EXPECT_EQ(figures.median, binned);
  EXPECT_EQ(figures.interquartileRange, figures.binnedInterquartileRange);
  EXPECT_EQ(figures.binnedHistogram.GetBinCount(), 3'000);

  figures.Calculate(4, nullptr);
  const double sorted = figures.median;
  EXPECT_NE(sorted, binned);
  EXPECT_EQ(figures.binnedMedian, binned);
  EXPECT_EQ(figures.sortedHistogram.GetBinCount(), 256);
  EXPECT_EQ(figures.interquartileRange, figures.upperQuartile - figures.lowerQuartile);

  figures.ClearFlags(0, 8);
  figures.Calculate(8, nullptr);
  EXPECT_EQ(figures.median, sorted) << "bins made later don't take the show";
}

TEST(Univariate, ASubclassIsAskedForItsOwnPasses) {
  class Own : public CStats_Univariate {
   public:
    bool CalcSkewness(CStats_Data*, int, CProgressSink*) override {
      skewness = 99;
      return true;
    }
  };
  CMadeTable table({made::Normal(1'000, 0, 1)});
  Own figures;
  figures.Add(&table, 0);
  EXPECT_TRUE(figures.Calculate(11, nullptr));
  EXPECT_EQ(figures.skewness, 99);
  EXPECT_EQ(figures.median, Computed(table, 11).median);
}

TEST(Univariate, ReportsEachPercentWhenALoopOverStationsWould) {
  for (const int n : {1, 2, 3, 50, 99, 100, 101, 250, 511, 512, 513, 1'000, 12'345}) {
    SCOPED_TRACE(n);
    CMadeTable table({made::WithNulls(made::Ramp(n, 1, 2), made::Every(7))});
    std::vector<int> expected{0};
    for (int station = 0, last = 0; station < n; ++station) {
      const int percent = static_cast<int>(station * 100.0 / n);
      if (percent > last) expected.push_back(last = percent);
    }
    NotedProgress basic;
    CStats_Univariate figures;
    figures.Add(&table, 0);
    figures.Calculate(1, &basic);
    EXPECT_EQ(basic.percents, expected);
    NotedProgress rest;
    figures.Calculate(14, &rest);
    EXPECT_EQ(rest.tasks, "Skewness Histogram Histogram ");
    EXPECT_EQ(rest.percents.size(), 3 * expected.size());
  }
}

TEST(Univariate, CancelStopsRightThere) {
  CMadeTable table({made::WithNulls(made::Ramp(10'000, 0, 9'999), made::Every(2))});
  CStats_Univariate figures;
  figures.Add(&table, 0);
  NotedProgress basic("Basic", 37);
  EXPECT_FALSE(figures.Calculate(11, &basic));
  EXPECT_EQ(figures.GetFlags(0), 0) << "something passes as done on half the values";
  EXPECT_EQ(figures.total, 10'000);
  EXPECT_EQ(figures.valid + figures.invalid, 3'701);
  EXPECT_EQ(figures.maximum, 3'699);

  NotedProgress atOnce("Basic", 0);
  EXPECT_FALSE(figures.Calculate(1, &atOnce));
  EXPECT_EQ(atOnce.percents.size(), 1u);

  NotedProgress skewness("Skewness", 50);
  EXPECT_FALSE(figures.Calculate(11, &skewness));
  EXPECT_EQ(figures.GetFlags(0), 1 | 8);

  CStats_Univariate fresh;
  fresh.Add(&table, 0);
  NotedProgress histogram("Histogram", 20);
  EXPECT_FALSE(fresh.Calculate(10, &histogram));
  EXPECT_EQ(fresh.GetFlags(0), 1 | 2);
  double counted = 0;
  for (const auto& bin : fresh.binnedHistogram.bins) counted += bin.count;
  EXPECT_EQ(counted, 1'000) << "the bins hold what was reached, where there were none";

  EXPECT_TRUE(figures.Calculate(11, nullptr));
  EXPECT_EQ(figures.valid, 5'000);
}

TEST(Univariate, ACopysHistogramsReferToTheCopy) {
  CMadeTable table({made::Normal(500, 0, 1)});
  std::vector<CStats_Univariate> cache(1);
  cache[0].Add(&table, 0);
  cache[0].Calculate(15, nullptr);
  cache.resize(50);
  EXPECT_EQ(cache[0].binnedHistogram.owner, &cache[0]);
  EXPECT_EQ(cache[0].sortedHistogram.owner, &cache[0]);
  EXPECT_EQ(cache[1].binnedHistogram.owner, nullptr);
  cache[2] = cache[0];
  EXPECT_EQ(cache[2].binnedHistogram.owner, &cache[2]);
  EXPECT_EQ(cache[2].GetFlags(0), 15);
  EXPECT_EQ(cache[2].median, cache[0].median);
  auto& self = cache[2];
  cache[2] = self;
  EXPECT_EQ(cache[2].binnedHistogram.owner, &cache[2]);
}

TEST(Univariate, SeveralItemsAndNone) {
  CMadeTable table({made::Constant(10, 1), made::Constant(10, 2)});
  CStats_Univariate figures;
  EXPECT_TRUE(figures.Calculate(11, nullptr)) << "nothing asked of nothing";
  figures.Add(&table, 0);
  figures.Add(nullptr, 0);
  figures.Add(&table, 1);
  EXPECT_FALSE(figures.Calculate(49, nullptr)) << "an item without data can't be computed";
  EXPECT_EQ(figures.GetFlags(1), 0);
  EXPECT_EQ(figures.mean, 2) << "the last item's figures stand";
  EXPECT_FALSE(figures.CalculateItem(3, 1, nullptr));
  EXPECT_FALSE(figures.CalculateItem(-1, 1, nullptr));
  figures.Remove(1);
  EXPECT_TRUE(figures.Calculate(1, nullptr));
  figures.Clear();
  EXPECT_EQ(figures.GetItemCount(), 0);
}

}  // namespace

}  // namespace tallyscope
