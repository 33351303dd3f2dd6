// SPDX-License-Identifier: MIT
#include "workbench/SessionController.h"

#ifdef QT_VERSION
#error "sessions and selection need no window"
#endif

#include <gtest/gtest.h>

#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_RgnIndexList.h"
#include "tests/workbench/WorkbenchTesting.h"

namespace tallyscope {
namespace {

struct Sessions : testing::Test {
  WrittenTable table = SmallTable();
  SessionController sessions;

  Sessions() { Open(sessions); }
  void Open(SessionController& opened) {
    opened.Push(&table, /*owns=*/false);
    opened.GetTop()->SetUniDim(0);
    opened.GetTop()->CreateSpatialCalculator();
  }
  static std::string Selected(const SessionController& of) {
    std::string text;
    for (int station = 0; station < of.GetTop()->GetSSData()->GetSize(); ++station) {
      if (of.IsSelected(station)) text += (text.empty() ? "" : " ") + std::to_string(station);
    }
    return text;
  }
};

TEST_F(Sessions, ARowExtendsFromTheNearestSelectedOne) {
  const struct {
    const char* name;
    std::vector<int> before;
    int row;
    const char* after;
  } cases[] = {
      {"none selected", {}, 2, "2"},
      {"one above", {0}, 2, "0 1 2"},
      {"one below", {4}, 2, "2 3 4"},
      {"above before below", {0, 4}, 3, "0 1 2 3 4"},
      {"the nearest above", {0, 1}, 3, "0 1 2 3"},
  };
  for (const auto& c : cases) {
    SessionController fresh;
    Open(fresh);
    for (const int row : c.before) EXPECT_TRUE(fresh.SelectRow(row, {}));
    EXPECT_TRUE(fresh.SelectRow(c.row, {.extends = true}));
    EXPECT_EQ(Selected(fresh), c.after) << c.name;
  }
}

TEST_F(Sessions, PositionsOfASortedSpreadsheetAreTurnedIntoStations) {
  ASSERT_TRUE(sessions.SortBy(3, /*ascending=*/false));  // Cu descending: stations 2 3 4 0 1
  EXPECT_EQ(sessions.GetStation(1), 3);
  EXPECT_EQ(sessions.GetPosition(3), 1);
  sessions.SelectRow(0, {});
  sessions.SelectRow(2, {.extends = true});
  EXPECT_EQ(Selected(sessions), "2 3 4");
  const auto& regions = sessions.GetTop()->GetSpatialCalculator()->regions;
  const auto* last = dynamic_cast<const CStats_RgnIndexList*>(&regions.Get(regions.GetCount() - 1));
  ASSERT_NE(last, nullptr);
  EXPECT_EQ(last->stations, (std::vector<int>{2, 3, 4})) << "in the order of the rows";
  sessions.SelectRow(1, {.removes = true});
  EXPECT_EQ(Selected(sessions), "2 4");
  EXPECT_FALSE(sessions.SelectRow(0, {})) << "selected already";
  sessions.allowSelection = false;
  EXPECT_EQ(sessions.GetStation(1), 1) << "a plain table";
  EXPECT_FALSE(sessions.SelectRow(1, {}));
}

TEST_F(Sessions, ChangedStationsAreRecordedForOneReader) {
  auto& spatial = *sessions.GetTop()->GetSpatialCalculator();
  sessions.SelectRow(3, {});
  EXPECT_EQ(spatial.changed, (std::vector<std::vector<int>>{{3}}));
  sessions.ForgetChanges();
  EXPECT_TRUE(spatial.changed.empty());
  spatial.ClearLastSelRegion();
  spatial.RestoreLastSelRegion();
  for (const auto& changes : spatial.changed) EXPECT_TRUE(changes.empty());
}

TEST_F(Sessions, ASelectionIsPushedAndEverythingComesBackByPops) {
  EXPECT_FALSE(sessions.PushSelection()) << "nothing is selected";
  EXPECT_FALSE(sessions.Pop());
  sessions.GetTop()->SetUniDim(1);
  sessions.SortBy(3, true);
  for (const int row : {0, 1, 4}) sessions.SelectRow(row, {});  // stations 1, 0 and 2
  ASSERT_TRUE(sessions.PushSelection());
  EXPECT_EQ(sessions.GetTop()->GetData()->GetSize(), 3);
  EXPECT_EQ(sessions.GetTop()->GetMode(), CTallyscope::eUnivariate);
  EXPECT_FALSE(sessions.WantsSort()) << "in the order of the stations";
  sessions.GetTop()->CreateSpatialCalculator();
  sessions.SelectRow(2, {});
  ASSERT_TRUE(sessions.PushSelection());
  EXPECT_EQ(sessions.GetTop()->GetData()->GetSourceStation(0), 2) << "the host's station, two selections deep";
  ASSERT_TRUE(sessions.Pop());
  EXPECT_EQ(Selected(sessions), "2");
  ASSERT_TRUE(sessions.Pop());
  EXPECT_EQ(Selected(sessions), "0 1 2");
  EXPECT_EQ(sessions.CountSelected(), 3);
  EXPECT_EQ(sessions.GetTop()->GetKeyDim(), 1);
  EXPECT_EQ(sessions.GetStation(0), 1) << "sorted as it was";
}

TEST_F(Sessions, TheSortIsOfTheSessionsTable) {
  WrittenTable bins(0, {{"bin", {1, 2}}});
  sessions.SortBy(5, true);
  sessions.GetTop()->SetSSData(&bins);
  EXPECT_FALSE(sessions.IsSorted());
  EXPECT_FALSE(sessions.SortBy(1, true));
  EXPECT_FALSE(sessions.IsSelected(0));
  sessions.GetTop()->SetSSData(nullptr);
  EXPECT_FALSE(sessions.IsSorted());
  EXPECT_FALSE(sessions.SortBy(1, true));
  EXPECT_FALSE(sessions.SelectRow(0, {}));
  sessions.GetTop()->SetSSData(&table);
  EXPECT_TRUE(sessions.IsSorted());
  table.Sort(2, 1, nullptr);  // something else wants it the other way
  EXPECT_EQ(sessions.GetStation(0), 0);
  EXPECT_FALSE(sessions.SortBy(6, true)) << "no such column";
  EXPECT_TRUE(sessions.SortBy(5, true));
  EXPECT_FALSE(sessions.IsSorted()) << "the same again: back to the stations' order";
}

TEST_F(Sessions, TheHostsTableGetsItsSearchBack) {
  table.GetPointSearch()->SetFields(0, 1, -3, 2);
  sessions.EndAll();
  EXPECT_EQ(sessions.GetDepth(), 0);
  EXPECT_EQ(table.GetPointSearch()->GetFieldX(), -1);
  EXPECT_TRUE(table.GetPointSearch()->IsPartitioned());
}

}  // namespace
}  // namespace tallyscope
