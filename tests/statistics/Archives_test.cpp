// SPDX-License-Identifier: MIT
// What the statistics write they read again, and bytes that they can't have written leave an object that works.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <random>

#include "platform/core/Archive.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Multivariate.h"
#include "statistics/Stats_Univariate.h"
#include "statistics/bvector.h"
#include "tests/support/Made.h"

namespace tallyscope {

namespace {

using Bytes = std::vector<std::uint8_t>;

template <class Object>
Bytes Stored(Object& object) {
  CArchive archive;
  object.Serialize(archive);
  return archive.GetBytes();
}

template <class Object>
bool Load(Object& object, Bytes bytes) {
  CArchive archive(std::move(bytes));
  object.Serialize(archive);
  return !archive.IsFailed();
}

Bytes Joined(const std::function<void(CArchive&)>& write) {
  CArchive archive;
  write(archive);
  return archive.GetBytes();
}

CStats_Histogram MadeHistogram(CMadeTable& table, int mode) {
  CStats_Histogram histogram;
  histogram.SetBinMode(mode);
  histogram.SetMaxBins(20);
  histogram.Add(&table, 0);
  histogram.Calculate(1, nullptr);
  return histogram;
}

// Asks an object that came from outside everything.
void Use(CStats_Histogram& histogram) {
  for (const double x : {-1e300, 0.0, 0.5, 1.0, 1e300}) {
    histogram.GetPercentile(x);
    histogram.GetBinIndex(x);
    histogram.GetCumulative(x);
    histogram.FindFirstBin(x);
    histogram.FindLastBin(x);
  }
  histogram.GetMode();
  histogram.ConvertToSorted(7);
  histogram.Regroup(3);
  CMadeTable table({made::Ramp(30, 0, 1)});
  histogram.Clear();
  histogram.SetBinMode(1);
  histogram.SetMaxBins(5);
  histogram.Add(&table, 0);
  EXPECT_TRUE(histogram.Calculate(1, nullptr));
  EXPECT_EQ(histogram.GetBinCount(), 5);
}

TEST(Archives, AHistogramComesBackWhole) {
  CMadeTable table({made::Normal(500, 3, 1)});
  for (const int mode : {0, 1}) {
    auto stored = MadeHistogram(table, mode);
    const auto bytes = Stored(stored);
    CStats_Histogram loaded;
    ASSERT_TRUE(Load(loaded, bytes));
    EXPECT_EQ(loaded.GetBinMode(), mode);
    EXPECT_EQ(loaded.GetMaxBins(), 20);
    EXPECT_EQ(loaded.GetValidCount(), 500);
    EXPECT_EQ(loaded.GetPercentile(0.3), stored.GetPercentile(0.3));
    EXPECT_EQ(loaded.GetMode(), stored.GetMode());
    EXPECT_EQ(Stored(loaded), bytes);
    Use(loaded);
  }
}

TEST(Archives, LayoutIsLittleEndianVersionsAndPlainValues) {
  CHistogramBin bin;
  bin.binMin = 1;
  EXPECT_EQ(Stored(bin), Joined([](CArchive& a) { a << 1 << 1.0 << 0.0 << 1e10 << -1e10 << 0.0 << 0.0; }));
  CStats_Histogram empty;
  EXPECT_EQ(Stored(empty), Joined([](CArchive& a) { a << 0 << 0 << 0 << 0 << 256 << 0 << 0; }));
  CMadeTable table({made::Ramp(10, 0, 1)});
  CStats_Univariate figures;
  figures.Add(&table, 0);
  figures.Calculate(3, nullptr);
  EXPECT_EQ(Stored(figures), Joined([](CArchive& a) { a << 0 << 0 << 1 << 3; }));
  CStats_Bivariate pair;
  pair.Add(&table, 0);
  pair.Add(&table, 0);
  pair.Calculate(3, nullptr);
  EXPECT_EQ(Stored(pair), Joined([](CArchive& a) { a << 0 << 0 << 2 << 3 << 0; }));
  CStats_Multivariate joint;
  EXPECT_FALSE(Load(joint, Joined([](CArchive& a) { a << 1 << 0 << 0; }))) << "of a version to come";
  bvector bits(9, true);
  EXPECT_EQ(Stored(bits), (Bytes{9, 0, 0, 0, 2, 0, 0, 0, 0xff, 0x01}));
}

TEST(Archives, ABinOfTheFirstVersionHasNoDataRange) {
  CHistogramBin bin;
  bin.dataMin = 4;
  ASSERT_TRUE(Load(bin, Joined([](CArchive& a) { a << 0 << 1.0 << 2.0 << 3.0 << 0.5; })));
  EXPECT_EQ(bin.binMax, 2);
  EXPECT_EQ(bin.count, 3);
  EXPECT_EQ(bin.cumulative, 0.5);
  EXPECT_FALSE(Load(bin, Joined([](CArchive& a) { a << 2 << 1.0 << 2.0 << 3.0 << 0.5 << 0.0 << 0.0; })));
}

TEST(Archives, ALoadedUnivariateIsGivenItsItemsAndComputedAgain) {
  CMadeTable table({made::Ramp(10, 0, 9)});
  CStats_Univariate stored;
  stored.Add(&table, 0);
  stored.Calculate(11, nullptr);
  CStats_Univariate loaded;
  ASSERT_TRUE(Load(loaded, Stored(stored)));
  EXPECT_EQ(loaded.GetFlags(0), 11);
  loaded.Add(&table, 0);
  EXPECT_TRUE(loaded.Calculate(11, nullptr));
  EXPECT_EQ(loaded.mean, 4.5) << "passes as computed without figures";
  CStats_Univariate filled;
  filled.Add(&table, 0);
  filled.Add(&table, 0);
  ASSERT_TRUE(Load(filled, Stored(stored)));
  EXPECT_EQ(filled.GetFlags(0), 11);
  EXPECT_EQ(filled.GetFlags(1), 0);
}

TEST(Archives, ImpossibleCountsAreRefused) {
  for (const int count : {-1, 1, 1'000'000, 0x7fffffff, static_cast<int>(0x80000000)}) {
    SCOPED_TRACE(count);
    CStats_Histogram histogram;
    EXPECT_FALSE(Load(histogram, Joined([&](CArchive& a) { a << 0 << 0 << 0 << 0 << 256 << 10 << count; })));
    EXPECT_EQ(histogram.GetBinCount(), 0);
    EXPECT_FALSE(Load(histogram, Joined([&](CArchive& a) { a << 0 << 0 << count << 0; }))) << "flags";
    Use(histogram);
    bvector bits;
    EXPECT_FALSE(Load(bits, Joined([&](CArchive& a) { a << 4 << count; })));
    EXPECT_EQ(bits.GetSize(), 0);
  }
  bvector bits;
  EXPECT_FALSE(Load(bits, {9, 0, 0, 0, 1, 0, 0, 0, 0xff})) << "nine bits in one byte";
  EXPECT_TRUE(Load(bits, {8, 0, 0, 0, 1, 0, 0, 0, 0xff}));
}

TEST(Archives, EveryTruncationFailsAndNoDamageBreaksAnything) {
  CMadeTable table({made::Normal(60, 3, 1)});
  auto stored = MadeHistogram(table, 0);
  const auto whole = Stored(stored);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    CStats_Histogram histogram;
    ASSERT_FALSE(Load(histogram, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)))) << size;
    ASSERT_EQ(histogram.GetBinCount(), 0);
  }
  std::mt19937 random(20240611);
  for (int i = 0; i < 3'000; ++i) {
    auto damaged = whole;
    for (int k = 0; k < 4; ++k) {
      const std::size_t reach = k < 2 ? 40 : damaged.size();  // counts and modes stand in front
      damaged[random() % reach] = static_cast<std::uint8_t>(random());
    }
    CStats_Histogram histogram;
    Load(histogram, damaged);
    ASSERT_LE(histogram.GetBinCount(), 60);
    Use(histogram);
  }
}

}  // namespace

}  // namespace tallyscope
