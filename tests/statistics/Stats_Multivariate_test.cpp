// SPDX-License-Identifier: MIT
#include "statistics/Stats_Multivariate.h"

#include <gtest/gtest.h>

#include "PairTable.h"

namespace tallyscope {
namespace {

bool EveryFifth(int i) {
  return i % 5 == 1;
}
bool EverySeventh(int i) {
  return i % 7 == 3;
}
bool Never(int) {
  return false;
}

void AddAll(CStats_Multivariate& joint, PairTable& table) {
  for (int dim = 0; dim < table.GetValueSize(); ++dim) joint.Add(&table, dim);
}

TEST(Multivariate, StationCountsWhereAllFieldsDo) {
  PairTable table({{kNull, {1}, {5}}, {{100}, {2}, {4}}});
  CStats_Multivariate joint;
  AddAll(joint, table);
  ASSERT_TRUE(joint.Calculate(1, nullptr));
  EXPECT_EQ(joint.total, 3);
  EXPECT_EQ(joint.valid, 2);
  EXPECT_EQ(joint.invalid, 1);
  EXPECT_EQ(joint.minima, (std::vector<double>{1, 2}));
  EXPECT_EQ(joint.maxima, (std::vector<double>{5, 4}));
  EXPECT_EQ(joint.means, (std::vector<double>{3, 3}));
}

TEST(Multivariate, BlocksSumAsSingleReadsDo) {
  for (const int count : {1, 511, 512, 513, 1500}) {
    SCOPED_TRACE(count);
    auto x = Shuffled(count, 1, EverySeventh);
    for (auto& cell : x) cell.value /= 7;  // so that the order of the sum shows
    PairTable table({x, Shuffled(count, 2, EveryFifth), Shuffled(count, 3, Never)});
    CStats_Multivariate joint;
    AddAll(joint, table);
    ASSERT_TRUE(joint.Calculate(1, nullptr));
    double sum = 0;
    int valid = 0;
    for (int station = 0; station < count; ++station) {
      if (EverySeventh(station) || EveryFifth(station)) continue;
      sum += table.GetValue(0, station);
      ++valid;
    }
    EXPECT_EQ(joint.valid, valid);
    EXPECT_EQ(joint.means[0], sum / valid);
  }
}

TEST(Multivariate, OnlyCommonStations) {
  PairTable small({PairTable::Column{{1}, {2}}});
  PairTable large({PairTable::Column{{3}, {4}, {500}}});
  CStats_Multivariate joint;
  joint.Add(&large, 0);
  joint.Add(&small, 0);
  ASSERT_TRUE(joint.Calculate(1, nullptr));
  EXPECT_EQ(joint.total, 2);
  EXPECT_EQ(joint.maxima, (std::vector<double>{4, 2}));
}

TEST(Multivariate, NothingInCommon) {
  PairTable table({{{1}, kNull}, {kNull, {2}}});
  CStats_Multivariate joint;
  AddAll(joint, table);
  EXPECT_TRUE(joint.Calculate(1, nullptr));
  EXPECT_EQ(joint.invalid, 2);
  EXPECT_EQ(joint.minima, (std::vector<double>{1e10, 1e10}));
  EXPECT_EQ(joint.maxima, (std::vector<double>{-1e10, -1e10}));
  EXPECT_EQ(joint.means, (std::vector<double>{0, 0}));
}

TEST(Multivariate, MissingItemsComputeNothing) {
  PairTable table({PairTable::Column{{1}}});
  CStats_Multivariate joint;
  EXPECT_FALSE(joint.Calculate(1, nullptr));
  joint.Add(&table, 0);
  joint.Add(nullptr, 0);
  EXPECT_FALSE(joint.Calculate(1, nullptr));
  EXPECT_TRUE(joint.means.empty());
  joint.Remove(1);
  EXPECT_TRUE(joint.Calculate(1, nullptr));
}

}  // namespace
}  // namespace tallyscope
