// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QTest>

#include "platform/core/Messages.h"
#include "platform/core/NumberText.h"
#include "platform/ui/Menu.h"
#include "platform/ui/Modal.h"
#include "tests/support/ScriptedModal.h"
#include "tests/workbench/WorkbenchTesting.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_FindValue.h"
#include "workbench/Dlg_StatsBasic.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {
namespace {

constexpr COLORREF kNormal = 0xffffff;
constexpr COLORREF kNull = 0x80c0ff;
constexpr COLORREF kKey = 0xffc0c0;

struct Spreadsheet : testing::Test {
  WrittenTable table = SmallTable();
  OpenWorkbench dialog{table};

  void SetUp() override { dialog.Create(); }
  ~Spreadsheet() override {
    SetNumberCharacters({".", ","});
    SetModal(nullptr);
  }
  std::string Menu(int row, int col) {
    CMenu menu;
    dialog.ComposeMenu(&menu, row, col);
    std::string text;
    for (const auto& item : menu.GetItems()) {
      text += item.id == 0 ? "-" : std::to_string(item.id) + (item.checked ? "*" : "");
      text += ' ';
    }
    return text;
  }
};

TEST_F(Spreadsheet, CellsHoldHeadingsRowNumbersAndValues) {
  EXPECT_EQ(dialog.GetGrid()->GetRowCount(), 6);
  EXPECT_EQ(dialog.GetGrid()->GetColumnCount(), 6);
  const struct {
    int row, col;
    const char* text;
    CellAlignment alignment;
  } cells[] = {
      {0, 0, "     ", CellAlignment::kRight}, {0, 1, "x", CellAlignment::kCentre},
      {0, 3, "Cu", CellAlignment::kCentre},   {0, 5, "Zn", CellAlignment::kCentre},
      {2, 0, "2", CellAlignment::kRight},     {2, 1, "20", CellAlignment::kRight},
      {2, 3, "1.25", CellAlignment::kRight},  {2, 4, "-1e+32", CellAlignment::kRight},
  };
  for (const auto& cell : cells) {
    EXPECT_EQ(dialog.Text(cell.row, cell.col), cell.text);
    EXPECT_EQ(dialog.Cell(cell.row, cell.col).alignment, cell.alignment);
  }
  for (const auto& [row, col] : {std::pair{6, 1}, {1, 6}, {-1, 0}}) {
    EXPECT_EQ(dialog.Text(row, col), "") << "outside the table";
    EXPECT_FALSE(dialog.Cell(row, col).hasBackground);
  }
  SetNumberCharacters({",", "."});
  EXPECT_EQ(dialog.Text(2, 3), "1,25");
}

TEST_F(Spreadsheet, ColoursTellNullsTheKeyFieldAndTheHoverStation) {
  EXPECT_EQ(dialog.Cell(1, 3).background, kKey);
  EXPECT_EQ(dialog.Cell(1, 4).background, kNormal);
  EXPECT_EQ(dialog.Cell(2, 4).background, kNull);
  EXPECT_FALSE(dialog.Cell(0, 3).hasBackground) << "headings are the grid's own";
  dialog.SetHoverStation(4);
  EXPECT_EQ(dialog.Cell(5, 1).background, kKey);
  dialog.ChooseKey("Pb");
  EXPECT_EQ(dialog.Cell(5, 1).background, kNormal) << "a new sheet forgets the hover station";
  EXPECT_EQ(dialog.Cell(1, 3).background, kNormal);
  EXPECT_EQ(dialog.Cell(1, 4).background, kKey);
  EXPECT_EQ(dialog.Cell(2, 4).background, kNull) << "a null before the key field";
  dialog.ConnectSpreadsheet(&table, false);
  EXPECT_EQ(dialog.Cell(1, 4).background, kNormal) << "no key field wanted";
}

TEST_F(Spreadsheet, SortsByAColumnAndBack) {
  dialog.SortGridByCol(1, 3, 0, 0);
  EXPECT_EQ(dialog.ColumnText(3), "1.25 3.5 5 7 9");
  EXPECT_EQ(dialog.ColumnText(1), "20 10 50 40 30") << "rows go together";
  EXPECT_EQ(dialog.ColumnText(0), "1 2 3 4 5") << "row numbers are positions";
  EXPECT_EQ(dialog.GetGrid()->GetSortColumn(), 3);
  EXPECT_TRUE(dialog.GetGrid()->GetSortAscending());
  EXPECT_EQ(dialog.GetTallyscope()->sort.ranks, (std::vector<int>{1, 0, 4, 3, 2}));
  EXPECT_EQ(dialog.Cell(1, 4).background, kNull) << "colours follow the station";

  dialog.SortGridByCol(0, 3, 0, 0);
  EXPECT_EQ(dialog.ColumnText(3), "9 7 5 3.5 1.25") << "the other direction is no toggle";
  EXPECT_FALSE(dialog.GetGrid()->GetSortAscending());
  dialog.SortGridByCol(0, 3, 0, 0);
  EXPECT_EQ(dialog.ColumnText(3), "3.5 1.25 9 7 5") << "the same command again: station order";
  EXPECT_EQ(dialog.GetGrid()->GetSortColumn(), -1);

  dialog.SortGridByCol(1, 3, 0, 0);
  dialog.SortGridByCol(1, 1, 0, 0);
  EXPECT_FALSE(table.IsSorted(0, 0)) << "one sort table at a time";
}

TEST_F(Spreadsheet, SortsAgainWhenSomethingElseTurnedTheTable) {
  dialog.SortGridByCol(0, 3, 0, 0);
  table.Sort(0, 0, nullptr);
  EXPECT_EQ(dialog.ColumnText(3), "9 7 5 3.5 1.25");
  EXPECT_EQ(dialog.GetTallyscope()->sort.ranks, (std::vector<int>{3, 4, 0, 1, 2}));
  table.ClearSort();
  EXPECT_EQ(dialog.ColumnText(3), "9 7 5 3.5 1.25");
}

// The histogram's page shows its bins instead, which have nine columns.
TEST(SpreadsheetSort, IsOfTheSessionsTableAlone) {
  std::vector<WrittenTable::Column> columns;
  for (int c = 0; c < 25; ++c) columns.push_back({"c" + std::to_string(c), {3, 1, 2}});
  WrittenTable table(0, columns);
  OpenWorkbench dialog(table);
  dialog.Create();
  dialog.SortGridByCol(1, 20, 0, 0);
  for (int times = 0; times < 2; ++times) {
    dialog.ShowPage("Histogram");
    EXPECT_NE(dialog.GetSSData(), &table);
    EXPECT_EQ(dialog.GetGrid()->GetSortColumn(), -1);
    dialog.Cell(1, 1);
  }
  dialog.SetAllowSSSelection(true);
  dialog.SortGridByCol(0, 2, 0, 0);
  EXPECT_EQ(dialog.GetTallyscope()->sort.column, 20) << "the bins keep their order";
  dialog.ShowPage("Statistics");
  EXPECT_EQ(dialog.ColumnText(20), "1 2 3");
  EXPECT_EQ(dialog.GetGrid()->GetSortColumn(), 20);
}

TEST_F(Spreadsheet, AllowingNoSelectionShowsAPlainTable) {
  dialog.SortGridByCol(0, 3, 0, 0);
  dialog.SetAllowSSSelection(false);
  dialog.UpdateSortFlag();
  EXPECT_EQ(dialog.ColumnText(3), "3.5 1.25 9 7 5");
  EXPECT_EQ(dialog.GetGrid()->GetSortColumn(), -1);
  EXPECT_EQ(Menu(1, 3), "102 103 104* 105 ");
  dialog.SetAllowSSSelection(true);
  EXPECT_EQ(dialog.ColumnText(3), "9 7 5 3.5 1.25");
}

TEST_F(Spreadsheet, TheMenuFollowsColumnAndSort) {
  EXPECT_EQ(Menu(1, 3), "106 - 100 101 - 102 103 104* 105 ");
  EXPECT_EQ(Menu(1, 0), "106 - 102 103 104* 105 ") << "row numbers can't be sorted";
  dialog.SortGridByCol(1, 3, 0, 0);
  EXPECT_EQ(Menu(1, 3), "106 - 100* 101 107 - 102 103 104* 105 ");
  EXPECT_EQ(Menu(1, 4), "106 - 100 101 - 102 103 104* 105 ") << "another column";
  dialog.ProcessMenu(1, 3, kMenuFitHeadings);
  EXPECT_EQ(Menu(1, 0), "106 - 102* 103 104 105 ");
  dialog.ProcessMenu(1, 3, kMenuDefaultWidth);
  for (int col = 0; col < 6; ++col) EXPECT_EQ(dialog.GetGrid()->GetColumnWidth(col), 64);
}

TEST_F(Spreadsheet, ARightClickOpensTheMenuAndRunsTheItem) {
  auto scripted = std::make_unique<ScriptedModal>();
  auto& modal = *scripted;
  SetModal(std::move(scripted));
  modal.menuIds = {kMenuSortDescending};
  NM_GRIDVIEW click;
  click.idFrom = kControlGrid;
  click.code = kNotifyRClick;
  click.row = 1;
  click.col = 5;
  dialog.SendNotify(&click);
  EXPECT_EQ(dialog.ColumnText(5), "10 4 3 2 1");
}

TEST_F(Spreadsheet, ADoubleClickOnAHeadingMakesItTheKeyField) {
  NM_GRIDVIEW click;
  click.idFrom = kControlGrid;
  click.code = kNotifyDblClick;
  for (const auto& [row, col, key] : {std::tuple{0, 4, 1}, {1, 5, 1}, {0, 0, 1}, {0, 1, -1}}) {
    click.row = row;
    click.col = col;
    dialog.SendNotify(&click);
    EXPECT_EQ(dialog.GetKeyDim(), key) << row << ", " << col;
  }
}

TEST_F(Spreadsheet, SummaryOfAnyColumn) {
  auto scripted = std::make_unique<ScriptedModal>();
  auto& modal = *scripted;
  SetModal(std::move(scripted));
  std::string title;
  double mean = 0;
  int invalid = 0;
  modal.onDialog = [&](CDialog& shown) {
    auto& summary = dynamic_cast<CDlg_StatsBasic&>(shown);
    title = summary.title;
    mean = summary.mean;
    invalid = summary.invalid;
    return kIdOk;
  };
  dialog.ProcessMenu(3, 4, kMenuStatistics);
  EXPECT_EQ(title, "Pb - Summary statistics");
  EXPECT_EQ(mean, 250);
  EXPECT_EQ(invalid, 1);
  dialog.ProcessMenu(3, 0, kMenuStatistics);
  EXPECT_EQ(title, "Cu - Summary statistics") << "the row numbers stand for the first field";
}

TEST(SpreadsheetFind, BringsTheFoundStationIntoView) {
  std::vector<double> values;
  for (int i = 0; i < 1000; ++i) values.push_back((i * 7) % 1000);
  WrittenTable table(0, {{"v", values}});
  OpenWorkbench dialog(table);
  dialog.Create();
  dialog.resize(800, 600);
  dialog.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
  dialog.SortGridByCol(0, 1, 0, 0);
  auto scripted = std::make_unique<ScriptedModal>();
  scripted->onDialog = [](CDialog& shown) {
    auto& find = dynamic_cast<CDlg_FindValue&>(shown);
    EXPECT_EQ(find.comparison, 3);
    EXPECT_EQ(find.value, "0");
    find.value = "250.5 and more";
    return kIdOk;
  };
  SetModal(std::move(scripted));
  dialog.ProcessMenu(1, 1, kMenuFindValue);
  EXPECT_FALSE(dialog.GetGrid()->GetCellRect(1000 - 251, 1).isEmpty()) << "251, the first at or above 250.5";
  EXPECT_EQ(dialog.Text(1000 - 251, 1), "251");
  SetModal(nullptr);
}

TEST_F(Spreadsheet, TheStatusLineNamesTheStationUnderThePointer) {
  dialog.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
  dialog.SortGridByCol(1, 3, 0, 0);
  dialog.ChooseKey("Pb");
  const QPointF place = dialog.GetGrid()->GetCellRect(1, 3).center();
  QMouseEvent move(QEvent::MouseMove, place, place, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(dialog.GetGrid()->viewport(), &move);
  EXPECT_EQ(dialog.GetControl<QLabel>(kControlStatus)->text().toStdString(), "station 2: x 20, y 4, Pb null");
}

}  // namespace
}  // namespace tallyscope
