// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "statistics/Stats_vdData.h"
#include "tests/support/Made.h"

namespace tallyscope {

namespace {

bool Satisfies(double raw, int comparison, double value) {
  switch (comparison) {
    case 0:
      return raw < value;
    case 1:
      return raw <= value;
    case 2:
      return raw == value;
    case 3:
      return raw >= value;
    default:
      return raw > value;
  }
}

// What Find must give, by looking at every position; -1 when nothing satisfies the comparison.
int FindPlainly(const std::vector<double>& column, double value, int comparison, int duplicates) {
  const int n = static_cast<int>(column.size());
  const bool descending = column.back() < column.front();
  int first = -1;
  int last = -1;
  for (int i = 0; i < n; ++i) {
    if (!Satisfies(column[static_cast<std::size_t>(i)], comparison, value)) continue;
    if (first < 0) first = i;
    last = i;
  }
  if (first < 0) return -1;
  // The satisfying position next to the value.
  const bool below = comparison < 2;
  int found = below != descending ? last : first;
  if (column[static_cast<std::size_t>(found)] != value || duplicates == 0 || comparison == 0 || comparison == 4) {
    return found;
  }
  const bool towardsStart = (duplicates == 1) != descending;
  const int step = towardsStart ? -1 : 1;
  while (found + step >= 0 && found + step < n && column[static_cast<std::size_t>(found + step)] == value)
    found += step;
  return found;
}

TEST(Find, AgreesWithALookAtEveryPosition) {
  const std::vector<std::vector<double>> columns = {
      {5},
      {1, 2},
      {3, 3, 3},
      {1, 2, 2, 2, 3, 5, 5, 8},
      {-4, -4, -1, 0, 0, 0, 0, 7, 7},
      {0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2},
  };
  for (auto column : columns) {
    for (const int direction : {0, 1}) {
      CMadeTable table({made::Column(column)});
      table.Sort(0, direction, nullptr);
      std::vector<double> ordered;
      for (int i = 0; i < table.GetSize(); ++i) ordered.push_back(table.GetValue(0, table.GetSortedStation(0, i)));
      for (double value = -5; value <= 9; value += 0.5) {
        for (int comparison = 0; comparison <= 4; ++comparison) {
          for (const int duplicates : {0, 1, 2}) {
            SCOPED_TRACE(testing::Message() << "n " << column.size() << " descending " << direction << " value "
                                            << value << " comparison " << comparison << " duplicates " << duplicates);
            const int expected = FindPlainly(ordered, value, comparison, duplicates);
            int position = -7;
            ASSERT_EQ(table.Find(0, value, position, comparison, duplicates), expected >= 0);
            ASSERT_GE(position, 0);
            ASSERT_LT(position, table.GetSize());
            if (expected < 0) continue;
            if (comparison == 2 && duplicates == 0) {
              ASSERT_EQ(ordered[static_cast<std::size_t>(position)], value);  // whichever the search met
            } else {
              ASSERT_EQ(position, expected);
            }
          }
        }
      }
    }
  }
}

TEST(Find, GivesTheNearestAndTheUpperOfTwo) {
  struct Case {
    double value;
    double nearest;
  };
  for (const int direction : {0, 1}) {
    CMadeTable table({made::Column({10, 20, 40, 40, 80})});
    table.Sort(0, direction, nullptr);
    for (const auto& c : {Case{-5, 10}, Case{14.9, 10}, Case{15, 20}, Case{15.1, 20}, Case{40, 40}, Case{59, 40},
                          Case{60, 80}, Case{1e300, 80}}) {
      int position = -1;
      EXPECT_TRUE(table.Find(0, c.value, position, 5, 0));
      EXPECT_EQ(table.GetValue(0, table.GetSortedStation(0, position)), c.nearest) << c.value << " " << direction;
    }
  }
}

TEST(Find, OfAnAbsentValueStopsAtTheLastBound) {
  CMadeTable table({made::Column({10, 20, 30})});
  int position = -1;
  table.Sort(0, 0, nullptr);
  EXPECT_FALSE(table.Find(0, 25, position, 2, 1));
  EXPECT_EQ(position, 1);
  EXPECT_FALSE(table.Find(0, 5, position, 2, 2));
  EXPECT_EQ(position, 0);
  table.Sort(0, 1, nullptr);
  EXPECT_FALSE(table.Find(0, 25, position, 2, 0));
  EXPECT_EQ(position, 0);
}

TEST(Find, StaysInTheTableWithoutNumbers) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  CMadeTable table({made::Column({nan, 1, nan, inf, -inf, nan, 2})});
  table.Sort(0, 0, nullptr);
  for (const double value : {nan, inf, -inf, 1.0, 9.0}) {
    for (int comparison = 0; comparison <= 5; ++comparison) {
      for (const int duplicates : {0, 1, 2}) {
        int position = -1;
        const bool found = table.Find(0, value, position, comparison, duplicates);
        ASSERT_TRUE(position >= 0 && position < table.GetSize());
        const double raw = table.GetValue(0, table.GetSortedStation(0, position));
        EXPECT_EQ(found, comparison == 5 || Satisfies(raw, comparison, value));
      }
    }
  }
  CStats_Data empty;
  empty.Sort(0, 0, nullptr);
  int position = 3;
  EXPECT_FALSE(empty.Find(0, 1, position, 5, 0));
  EXPECT_EQ(position, 0);
}

TEST(Stats_Data, CheckedReadOfANullLeavesTheVariable) {
  auto table = TableFrom(R"(Au
                            1.5
                            -)");
  double value = 42;
  EXPECT_FALSE(table.GetValue(0, 1, value));
  EXPECT_EQ(value, 42);
  EXPECT_EQ(table.GetValue(0, 1), -999) << "the raw read answers for a null";
  EXPECT_TRUE(table.GetValue(0, 0, value));
  EXPECT_EQ(value, 1.5);
}

TEST(Stats_Data, DefaultBulkReadsGiveWhatSingleReadsGive) {
  CMadeTable made({made::WithNulls(made::Ramp(300, 0, 299), made::Every(3))});
  CSingleReads table(made);
  const std::vector<int> stations = {299, 0, 1, 1, 150, 2};
  std::vector<double> values(stations.size(), -1);
  std::vector<unsigned char> valid(stations.size(), 9);
  const int count = static_cast<int>(stations.size());
  EXPECT_EQ(table.ReadValuesAt(0, stations.data(), count, values.data(), valid.data()), 4);
  EXPECT_EQ(values, (std::vector<double>{299, -1, 1, 1, -1, 2}));
  EXPECT_EQ(valid, (std::vector<unsigned char>{1, 0, 1, 1, 0, 1}));
  table.ReadRawValuesAt(0, stations.data(), count, values.data());
  EXPECT_EQ(values, (std::vector<double>{299, 0, 1, 1, 150, 2}));
  EXPECT_EQ(table.ReadValues(0, 149, 4, values.data(), valid.data()), 3);
  EXPECT_EQ(valid[1], 0);
  table.ReadRawValues(0, 149, 4, values.data());
  EXPECT_EQ(values[1], 150);
}

TEST(Stats_vdData, ShowsTheCallersVectorAsItIsNow) {
  std::vector<double> values = {1, 2};
  CStats_vdData data(&values);
  values.push_back(3);
  EXPECT_EQ(data.GetSize(), 3);
  EXPECT_EQ(data.GetValue(5, 2), 3) << "whatever the field";
}

}  // namespace

}  // namespace tallyscope
