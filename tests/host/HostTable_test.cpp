// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <stdexcept>
#include <vector>

#include "host/ColumnConditioning.h"
#include "host/HostTable.h"
#include "host/Labels.h"
#include "host/OpenTable.h"
#include "spatial/Stats_PointSearch.h"

namespace tallyscope {
namespace {

// Three columns of `rows` values: without nulls, with runs of nulls, with a null in every third row.
CHostTable MakeTable(int rows) {
  std::vector<CHostColumn> columns(3);
  const char* const names[] = {"all", "runs", "thirds"};
  for (std::size_t c = 0; c < 3; ++c) {
    columns[c].name = names[c];
    columns[c].Reserve(static_cast<std::size_t>(rows) + 100);
    for (std::size_t row = 0; row < static_cast<std::size_t>(rows); ++row) {
      columns[c].GetValues()[row] = static_cast<double>(row) + 1000.0 * static_cast<double>(c);
      if (c == 1 && row / 50 % 3 == 1) columns[c].SetNull(row, -1);
      if (c == 2 && row % 3 == 0) columns[c].SetNull(row, -2);
    }
    columns[c].Finish(static_cast<std::size_t>(rows));
  }
  return CHostTable(std::move(columns), rows);
}

// A bulk read must give what single reads do. What it leaves for a null is open.
void ExpectSameReads(CHostTable& table, int field, const std::vector<int>& stations, bool inOrder) {
  const auto count = static_cast<int>(stations.size());
  std::vector<double> values(stations.size(), 42), raw(stations.size()), expected(stations.size(), 42);
  std::vector<unsigned char> valid(stations.size(), 9);
  const int found = inOrder ? table.ReadValues(field, stations[0], count, values.data(), valid.data())
                            : table.ReadValuesAt(field, stations.data(), count, values.data(), valid.data());
  if (inOrder) {
    table.ReadRawValues(field, stations[0], count, raw.data());
  } else {
    table.ReadRawValuesAt(field, stations.data(), count, raw.data());
  }
  int expectedFound = 0;
  for (std::size_t i = 0; i < stations.size(); ++i) {
    const bool isValid = table.GetValue(field, stations[i], expected[i]);
    expectedFound += isValid ? 1 : 0;
    ASSERT_EQ(valid[i], isValid ? 1 : 0) << stations[i];
    if (isValid) {
      ASSERT_EQ(values[i], expected[i]) << stations[i];
    }
    ASSERT_EQ(isValid, table.IsValueValid(field, stations[i]));
    ASSERT_EQ(raw[i], table.GetValue(field, stations[i]));
  }
  ASSERT_EQ(found, expectedFound);
}

TEST(HostTable, BulkReadsAreTheSingleReads) {
  std::mt19937 random(3);
  CHostTable table = MakeTable(1000);
  const int axes[] = {2, 0};
  table.SetAxes(axes);
  for (const int field : {-1, -2, 0}) {
    for (int first = 0; first < 1000; first += 37) {
      for (const int count : {1, 63, 64, 65, 300}) {
        if (first + count > 1000) continue;
        std::vector<int> stations(static_cast<std::size_t>(count));
        std::generate(stations.begin(), stations.end(), [station = first]() mutable { return station++; });
        ExpectSameReads(table, field, stations, true);
        std::shuffle(stations.begin(), stations.end(), random);
        ExpectSameReads(table, field, stations, false);
      }
    }
    ASSERT_EQ(table.ReadValues(field, 5, 0, nullptr, nullptr), 0);
  }
}

TEST(HostTable, AnAxisIsNoField) {
  CHostTable table = MakeTable(10);
  EXPECT_EQ(table.GetSpatialSize(), 0);
  EXPECT_EQ(table.GetValueSize(), 3);
  EXPECT_EQ(table.FindDim("thirds"), 2);
  table.Sort(0, 0, nullptr);
  ASSERT_TRUE(table.IsSorted(0, 0));
  table.GetPointSearch()->SetFields(0, 1, 2, 2);
  ASSERT_TRUE(table.PreparePointSearch(nullptr) && table.GetPointSearch()->IsPartitioned());
  const int axes[] = {2, 0};
  table.SetAxes(axes);
  EXPECT_FALSE(table.IsSorted(0, 0)) << "field 0 is another column now";
  EXPECT_FALSE(table.GetPointSearch()->IsPartitioned()) << "likewise";
  EXPECT_EQ(table.GetSpatialSize(), 2);
  EXPECT_EQ(table.GetValueSize(), 1);
  EXPECT_EQ(table.GetValueName(-1), "thirds");
  EXPECT_EQ(table.GetValueName(-2), "all");
  EXPECT_EQ(table.GetValueName(0), "runs");
  EXPECT_EQ(table.FindDim("all"), -2);
  EXPECT_EQ(table.FindDim("All"), CHostTable::kNoDim);
  EXPECT_EQ(table.GetValue(-1, 4), 2004);
}

TEST(Labels, NumberThatIsNoCodeFindsNone) {
  EXPECT_EQ(FindLabel(1, 2), 0u);
  EXPECT_EQ(FindLabel(2, 2), 1u);
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double code : {0.0, -1.0, 0.5, 3.0, 1e300, kInfinity, -kInfinity, std::nan("")}) {
    EXPECT_FALSE(FindLabel(code, 2)) << code;
  }
  EXPECT_FALSE(FindLabel(1, 0));
}

// Rules may take every label. What is left is a column of texts all the same, not one of numbers.
TEST(HostTable, AColumnOfTextsStaysOneWithoutLabels) {
  const auto opened = OpenTableText("n,v\nclay,1\nclay,2\n", "t", {}, nullptr);
  ASSERT_TRUE(opened.table && opened.table->GetColumn(0).IsText());
  CStats_Conditioning rules;
  rules.DefineString(0);
  rules.AddNULLValue("clay");
  opened.table->ChangeColumn(0, [&](CHostColumn& column) { ConditionColumn(rules, 2, column); });
  const auto& column = opened.table->GetColumn(0);
  EXPECT_EQ(column.CountValid(), 0u);
  EXPECT_TRUE(column.labels.empty());
  EXPECT_TRUE(column.IsText());
  EXPECT_FALSE(opened.table->GetColumn(1).IsText());
}

TEST(HostTable, AChangedColumnTakesWhatWasMadeFromItAlong) {
  CHostTable table = MakeTable(10);
  table.GetPointSearch()->SetFields(0, 1, 2, 2);
  // What is made during the change goes as well, and a change that fails half-way is one.
  const auto change = [&](CHostColumn& column) {
    column.GetValues()[0] = 5000;
    table.Sort(0, 0, nullptr);
    ASSERT_TRUE(table.PreparePointSearch(nullptr));
    column.GetValues()[0] = -5000;
    throw std::runtime_error("half-way");
  };
  EXPECT_THROW(table.ChangeColumn(0, change), std::runtime_error);
  EXPECT_FALSE(table.IsSorted(0, 0));
  EXPECT_FALSE(table.GetPointSearch()->IsPartitioned());
  table.Sort(0, 0, nullptr);
  EXPECT_EQ(table.GetSortedStation(0, 0), 0);
}

TEST(HostTable, ColumnsKeepTheirValuesAsTheyGrow) {
  CHostColumn column;
  for (std::size_t row = 0; row < 100'000; ++row) {
    if (row == column.GetCapacity()) column.Reserve(row + row / 3 + 1);
    column.GetValues()[row] = static_cast<double>(row);
    if (row % 7 == 0) column.SetNull(row, -1);
  }
  column.Finish(99'999);
  EXPECT_EQ(column.GetCapacity(), 99'999u);
  EXPECT_EQ(column.CountValid(), 99'999u - 14'286u);
  EXPECT_EQ(column.GetValues()[99'998], 99'998);
  EXPECT_EQ(column.GetValues()[7], -1);
}

}  // namespace
}  // namespace tallyscope
