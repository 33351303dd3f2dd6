// SPDX-License-Identifier: MIT
#include "statistics/Stats_Bivariate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <string>

#include "PairTable.h"
#include "statistics/ProgressSink.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {
namespace {

struct Pair : CStats_Bivariate {
  explicit Pair(CStats_Data& table, int xDim = 0, int yDim = 1) {
    Add(&table, xDim);
    Add(&table, yDim);
  }
};

// What the figures come to when they are summed with single reads, station by station.
struct Referee {
  explicit Referee(CStats_Data& table) {
    CStats_Univariate x;
    CStats_Univariate y;
    x.Add(&table, 0);
    y.Add(&table, 1);
    x.Calculate(1, nullptr);
    y.Calculate(1, nullptr);
    double products = 0;
    double differences = 0;
    for (int station = 0; station < table.GetSize(); ++station) {
      double a = 0;
      double b = 0;
      if (!table.GetValue(0, station, a) || !table.GetValue(1, station, b)) continue;
      pairs.push_back(station);
      xSum += a;
      ySum += b;
      products += (a - x.mean) * (b - y.mean);
      differences += (a - b) * (a - b);
    }
    const int valid = static_cast<int>(pairs.size());
    covariance = products / std::max(table.GetSize() - 1, 1);
    correlation = covariance / (x.standardDeviation * y.standardDeviation);
    inertia = differences / (2 * valid);
  }

  std::vector<int> pairs;
  double xSum = 0;
  double ySum = 0;
  double covariance = 0;
  double correlation = 0;
  double inertia = 0;
};

bool EverySeventh(int i) {
  return i % 7 == 3;
}
bool EveryFifth(int i) {
  return i % 5 == 1;
}
bool Never(int) {
  return false;
}

TEST(Bivariate, BlocksSumAsSingleReadsDo) {
  for (const int count : {3, 511, 512, 513, 1024, 2000}) {
    for (const bool nulls : {false, true}) {
      SCOPED_TRACE(std::to_string(count) + (nulls ? " with nulls" : ""));
      auto x = Shuffled(count, 1, nulls ? EverySeventh : Never);
      auto y = Shuffled(count, 2, nulls ? EveryFifth : Never);
      for (auto& cell : x) cell.value /= 7;  // so that the order of the sum shows
      PairTable table({x, y});
      Pair pair(table);
      ASSERT_TRUE(pair.Calculate(3, nullptr));
      const Referee referee(table);
      EXPECT_EQ(pair.total, count);
      EXPECT_EQ(pair.valid, static_cast<int>(referee.pairs.size()));
      EXPECT_EQ(pair.invalid, count - pair.valid);
      EXPECT_EQ(pair.xMean, referee.xSum / pair.valid);
      EXPECT_EQ(pair.yMean, referee.ySum / pair.valid);
      EXPECT_EQ(pair.covariance, referee.covariance);
      EXPECT_EQ(pair.correlation, referee.correlation);
      EXPECT_EQ(pair.inertia, referee.inertia);
    }
  }
}

// x = 0 ... 9 with nulls at 0 and 9, y = x * x. The field means are 4.5 over 1 ... 8 and 28.5 over all of y; the
// products of the 8 pairs add up to 378: sum x^3 - 4.5 sum x^2 - 28.5 * (36 - 36) with sum x^3 = 1296, sum x^2 = 204.
TEST(Bivariate, CovarianceDividesByAllStations) {
  PairTable::Column x;
  PairTable::Column y;
  for (int i = 0; i < 10; ++i) {
    x.push_back({static_cast<double>(i), i == 0 || i == 9});
    y.push_back({static_cast<double>(i) * i});
  }
  PairTable table({x, y});
  Pair pair(table);
  pair.Calculate(2, nullptr);
  EXPECT_EQ(pair.valid, 8);
  EXPECT_EQ(pair.yMaximum, 64) << "of the pairs";
  EXPECT_DOUBLE_EQ(pair.covariance, 378.0 / 9);
}

TEST(Bivariate, LineOnShow) {
  struct Case {
    const char* name;
    std::vector<double> x, y;
    bool vertical;
    double slope, intercept;
    double slopeOfYOnX, slopeOfXOnY;
  };
  const Case cases[] = {
      {"steep, from X on Y", {1, 2, 3, 4}, {3, 5, 7, 9}, false, 2, 1, 2, 0.5},
      {"flat", {0, 2, 4, 6}, {1, 2, 3, 4}, false, 0.5, 1, 0.5, 2},
      {"falling", {0, 1, 2, 3}, {0, -3, -6, -9}, false, -3, 0, -3, -1.0 / 3},
      {"constant X", {5, 5, 5}, {1, 2, 3}, true, 0, 5, 0, 0},
      {"constant Y", {1, 2, 3}, {5, 5, 5}, false, 0, 5, 0, 0},
      {"both constant", {4, 4, 4}, {5, 5, 5}, false, 0, 5, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    PairTable::Column x;
    PairTable::Column y;
    for (const double value : c.x) x.push_back({value});
    for (const double value : c.y) y.push_back({value});
    PairTable table({x, y});
    Pair pair(table);
    pair.vertical = true;  // of an earlier run
    ASSERT_TRUE(pair.Calculate(2, nullptr));
    EXPECT_EQ(pair.vertical, c.vertical);
    EXPECT_NEAR(pair.displayLine[0], c.slope, 1e-12);
    EXPECT_NEAR(pair.displayLine[1], c.intercept, 1e-12);
    EXPECT_NEAR(pair.yOnX[0], c.slopeOfYOnX, 1e-12);
    EXPECT_NEAR(pair.xOnY[0], c.slopeOfXOnY, 1e-12);
  }
}

// Rank correlation.

double RankCorrelation(std::vector<PairTable::Column> columns) {
  PairTable table(std::move(columns));
  Pair pair(table);
  EXPECT_TRUE(pair.Calculate(4, nullptr));
  return pair.rankCorrelation;
}

TEST(BivariateRank, AgreementOfFourIsThreeQuarters) {
  EXPECT_NEAR(RankCorrelation({{{10}, {20}, {30}, {40}}, {{1}, {4}, {9}, {16}}}), 0.75, 1e-15);
  EXPECT_NEAR(RankCorrelation({{{10}, {20}, {30}, {40}}, {{16}, {9}, {4}, {1}}}), -0.75, 1e-15);
  EXPECT_EQ(RankCorrelation({{{10}, kNull}, {{1}, {2}}}), 0) << "one pair";
  EXPECT_EQ(RankCorrelation({{}, {}}), 0) << "no station";
}

// X ranks 2 3 4 (the null is lowest), Y ranks 3 1 4 over the pairs: deviations 1 and sqrt(7/3), products about the
// means 3 and 8/3 add up to 1.
TEST(BivariateRank, NullsTakeARank) {
  const double rank = RankCorrelation({{kNull, {1}, {2}, {3}}, {{5}, {6}, {4}, {7}}});
  EXPECT_NEAR(rank, (1.0 / 3) / std::sqrt(7.0 / 3), 1e-15);
}

TEST(BivariateRank, TiesFollowTheSortTable) {
  auto x = Shuffled(300, 5, EverySeventh);
  const auto y = Shuffled(300, 6, Never);
  for (auto& cell : x) cell.value = std::floor(cell.value / 40);
  PairTable table({x, y});
  Pair pair(table);
  ASSERT_TRUE(pair.Calculate(4, nullptr));

  std::vector<double> xRanks(300);
  std::vector<double> yRanks(300);
  for (int i = 0; i < 300; ++i) {
    xRanks[static_cast<std::size_t>(table.GetSortedStation(0, i))] = i + 1;
    yRanks[static_cast<std::size_t>(table.GetSortedStation(1, i))] = i + 1;
  }
  double xSum = 0, ySum = 0, xSquares = 0, ySquares = 0, products = 0;  // whole numbers, so without rounding
  int count = 0;
  for (std::size_t i = 0; i < 300; ++i) {
    if (x[i].null) continue;
    ++count;
    xSum += xRanks[i];
    ySum += yRanks[i];
    xSquares += xRanks[i] * xRanks[i];
    ySquares += yRanks[i] * yRanks[i];
    products += xRanks[i] * yRanks[i];
  }
  const double xSpread = std::sqrt((xSquares - xSum * xSum / count) / (count - 1));
  const double ySpread = std::sqrt((ySquares - ySum * ySum / count) / (count - 1));
  EXPECT_NEAR(pair.rankCorrelation, (products - xSum * ySum / count) / count / (xSpread * ySpread), 1e-13);
}

TEST(BivariateRank, SquaresOfHighRanksDoNotOverflow) {
  PairTable::Column column;
  for (int i = 0; i < 100000; ++i) column.push_back({static_cast<double>(i)});
  EXPECT_NEAR(RankCorrelation({column, column}), 1 - 1e-5, 1e-12);
}

// Conditional expectation.

using Curve = std::vector<std::pair<double, double>>;

Curve Zip(const std::vector<double>& a, const std::vector<double>& b) {
  Curve curve;
  EXPECT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) curve.emplace_back(a[i], b[i]);
  return curve;
}

// The curve of E[averaged given along]: at the first, every w-th and the last pair the mean of the window round it.
// Whole numbers are averaged, so that the running sum rounds nowhere.
Curve WindowMeans(PairTable& table, int along, int averaged) {
  Curve sorted;
  for (int station = 0; station < table.GetSize(); ++station) {
    if (!table.IsValueValid(along, station) || !table.IsValueValid(averaged, station)) continue;
    sorted.emplace_back(table.GetValue(along, station), table.GetValue(averaged, station));
  }
  std::sort(sorted.begin(), sorted.end());
  const int valid = static_cast<int>(sorted.size());
  int width = std::max(valid / 32, 3);
  if (width % 2 == 0) ++width;
  Curve curve;
  for (int k = 0; k < valid; ++k) {
    if (k % width != 0 && k != valid - 1) continue;
    const int first = std::max(k - width / 2, 0);
    const int last = std::min(k + width / 2, valid - 1);
    double sum = 0;
    for (int i = first; i <= last; ++i) sum += sorted[static_cast<std::size_t>(i)].second;
    curve.emplace_back(sorted[static_cast<std::size_t>(k)].first, sum / (last - first + 1));
  }
  return curve;
}

TEST(BivariateExpectation, CurvesAreWindowMeans) {
  for (const int count : {3, 4, 7, 99, 100, 320, 3200, 20000}) {
    for (const bool nulls : {false, true}) {
      SCOPED_TRACE(std::to_string(count) + (nulls ? " with nulls" : ""));
      PairTable table({Shuffled(count, 3, nulls && count > 9 ? EverySeventh : Never),
                       Shuffled(count, 4, nulls && count > 9 ? EveryFifth : Never)});
      Pair pair(table);
      ASSERT_TRUE(pair.Calculate(8, nullptr));
      EXPECT_EQ(Zip(pair.expectationX, pair.expectationYGivenX), WindowMeans(table, 0, 1));
      EXPECT_EQ(Zip(pair.expectationY, pair.expectationXGivenY), WindowMeans(table, 1, 0));
    }
  }
}

TEST(BivariateExpectation, FewPairs) {
  PairTable two({{{7}, {3}}, {{10}, {20}}});
  Pair pair(two);
  ASSERT_TRUE(pair.Calculate(8, nullptr));
  EXPECT_EQ(Zip(pair.expectationX, pair.expectationYGivenX), (Curve{{3, 15}, {3, 10}}));
  EXPECT_EQ(Zip(pair.expectationY, pair.expectationXGivenY), (Curve{{10, 5}, {10, 3}}));
  for (const PairTable::Column& y : {PairTable::Column{{10}, kNull}, PairTable::Column{kNull, kNull}}) {
    PairTable table({{{7}, {3}}, y});
    Pair lone(table);
    EXPECT_TRUE(lone.Calculate(15, nullptr));
    EXPECT_TRUE(lone.expectationX.empty() && lone.expectationY.empty());
    EXPECT_TRUE(lone.expectationYGivenX.empty() && lone.expectationXGivenY.empty());
  }
}

TEST(Bivariate, WithoutAPair) {
  PairTable table({{{7}, kNull}, {kNull, {3}}});
  Pair pair(table);
  EXPECT_TRUE(pair.Calculate(15, nullptr));
  EXPECT_EQ(pair.valid, 0);
  EXPECT_EQ(pair.invalid, 2);
  EXPECT_EQ(pair.xMinimum, 1e10);
  EXPECT_EQ(pair.yMaximum, -1e10);
  EXPECT_EQ(pair.xMean, 0);
  EXPECT_EQ(pair.inertia, 0);
  EXPECT_EQ(pair.rankCorrelation, 0);
}

// Ranks cover each table as a whole: 1 3 2 in the small one, 5 3 2 in the large one. The products about 2 and 10/3 add
// up to -2, the deviations are 1 and sqrt(7/3).
TEST(Bivariate, TablesOfDifferentSize) {
  PairTable small({PairTable::Column{{1}, {9}, {5}}});
  PairTable large({PairTable::Column{{30}, {20}, {10}, {40}, {-1}, {25}}});
  CStats_Bivariate pair;
  pair.Add(&small, 0);
  pair.Add(&large, 0);
  ASSERT_TRUE(pair.Calculate(15, nullptr));
  EXPECT_EQ(pair.total, 3);
  EXPECT_EQ(pair.valid, 3);
  EXPECT_EQ(pair.yMaximum, 30);
  EXPECT_EQ(Zip(pair.expectationX, pair.expectationYGivenX), (Curve{{1, 20}, {9, 15}}));
  EXPECT_EQ(Zip(pair.expectationY, pair.expectationXGivenY), (Curve{{10, 7}, {30, 5}}));
  EXPECT_NEAR(pair.rankCorrelation, -2.0 / 3 / std::sqrt(7.0 / 3), 1e-15);
}

// Flags, links, refusals.

TEST(Bivariate, RankAndCurvesCountThePairsFirst) {
  PairTable table({Shuffled(200, 3, EverySeventh), Shuffled(200, 4, EveryFifth)});
  for (const int first : {4, 8}) {
    Pair pair(table);
    EXPECT_TRUE(pair.Calculate(first, nullptr));
    EXPECT_EQ(pair.GetFlags(0), first | 1);
    EXPECT_TRUE(pair.Calculate(15, nullptr));
    Pair whole(table);
    whole.Calculate(15, nullptr);
    EXPECT_EQ(pair.rankCorrelation, whole.rankCorrelation);
    EXPECT_EQ(pair.expectationXGivenY, whole.expectationXGivenY);
    EXPECT_EQ(pair.correlation, whole.correlation);
    EXPECT_EQ(pair.GetFlags(1), 0);
  }
}

TEST(Bivariate, LinksAreUsedAndLentOnesTakenBack) {
  PairTable table({{{1}, {2}, {6}}, {{4}, {5}, {9}}});
  CStats_Univariate y;
  y.Add(&table, 1);
  Pair pair(table);
  pair.yLink = &y;
  ASSERT_TRUE(pair.Calculate(2, nullptr));
  EXPECT_EQ(y.GetFlags(0), 1);
  EXPECT_EQ(y.mean, 6);
  EXPECT_EQ(pair.xLink, nullptr);
  EXPECT_EQ(pair.yLink, &y);
  table.reads = 0;
  EXPECT_TRUE(pair.Calculate(3, nullptr));
  EXPECT_EQ(table.reads, 0) << "what is done stays done";
}

TEST(Bivariate, TableTooLargeToSort) {
  PairTable table({{{1}, {2}, {6}}, {{4}, {5}, {9}}});
  table.sortable = false;
  Pair pair(table);
  EXPECT_FALSE(pair.Calculate(15, nullptr));
  EXPECT_EQ(pair.GetFlags(0), 3);
  EXPECT_NEAR(pair.correlation, 1, 1e-15);
  EXPECT_TRUE(pair.expectationX.empty());
}

TEST(Bivariate, MissingItems) {
  PairTable table({PairTable::Column{{1}, {2}}});
  CStats_Bivariate none;
  EXPECT_FALSE(none.Calculate(15, nullptr));
  CStats_Bivariate one;
  one.Add(&table, 0);
  EXPECT_FALSE(one.Calculate(15, nullptr));
  one.Add(nullptr, 0);
  EXPECT_FALSE(one.Calculate(15, nullptr));
  EXPECT_EQ(one.GetFlags(0), 0);
}

TEST(Bivariate, ValuesThatAreNoNumbers) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  PairTable table({{{1}, {kNan}, {3}, {-kInfinity}}, {{kInfinity}, {2}, {kNan}, {1e308}}});
  Pair pair(table);
  EXPECT_TRUE(pair.Calculate(15, nullptr));
  EXPECT_EQ(pair.valid, 4);
  EXPECT_EQ(pair.xMaximum, 3) << "a NaN never enters";
  EXPECT_EQ(pair.expectationX.size(), 2u);
}

struct CountingSink : CProgressSink {
  int refused = -1;  // one call alone
  std::vector<int> percents;
  std::vector<std::string> tasks;
  bool OnProgress(int percent) override {
    percents.push_back(percent);
    return static_cast<int>(percents.size()) != refused;
  }
  void SetTask(const char* text, int) override { tasks.emplace_back(text); }
};

TEST(Bivariate, ProgressOfEachRun) {
  PairTable table({Shuffled(1000, 3, Never), Shuffled(1000, 4, Never)});
  Pair pair(table);
  pair.Calculate(3, nullptr);
  CountingSink rank;
  pair.Calculate(4, &rank);
  // The links, lent for the call, report first.
  const auto begin = std::find(rank.tasks.begin(), rank.tasks.end(), "Rank computation");
  ASSERT_NE(begin, rank.tasks.end());
  std::vector<int> all(100);
  std::iota(all.begin(), all.end(), 0);
  EXPECT_EQ(std::vector<int>(rank.percents.end() - 100, rank.percents.end()), all) << "three thirds, each percent once";
  CountingSink curves;
  pair.Calculate(8, &curves);
  EXPECT_EQ(curves.tasks.back(), "Conditional expectation computation");
  EXPECT_EQ(std::vector<int>(curves.percents.end() - 100, curves.percents.end()), all);
}

TEST(Bivariate, ACancelledPassSkipsWhatNeedsIt) {
  PairTable table({Shuffled(300, 3, EverySeventh), Shuffled(300, 4, Never)});
  struct Case {
    int refused;  // of a hundred calls for the pairs, for either link, and for the correlation
    int flags;
  };
  for (const auto& c : {Case{50, 0}, Case{150, 1 | 4 | 8}, Case{250, 1 | 4 | 8}, Case{350, 1 | 4 | 8}}) {
    Pair pair(table);
    CountingSink sink;
    sink.refused = c.refused;
    EXPECT_FALSE(pair.Calculate(15, &sink));
    EXPECT_EQ(pair.GetFlags(0), c.flags) << c.refused;
  }
}

}  // namespace
}  // namespace tallyscope
