// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QTest>

#include "platform/core/Messages.h"
#include "platform/ui/Menu.h"
#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Multivariate.h"
#include "statistics/Stats_Region.h"
#include "tests/workbench/WorkbenchTesting.h"
#include "workbench/ControlIds.h"
#include "workbench/PS_BaseTS.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {
namespace {

constexpr COLORREF kSelected = 0xc0c0ff;

struct RowSelection : testing::Test {
  WrittenTable table = SmallTable();
  OpenWorkbench dialog{table};

  void SetUp() override { dialog.Create(); }

  // A click on the row number of a display position, from 0.
  void Click(int position, bool shift = false, bool control = false) {
    dialog.SelectRow(position, shift ? 1 : 0, control ? 1 : 0);
  }
  // The selected stations, as the spreadsheet tells them, in station order.
  std::string Selected() {
    std::string text;
    for (int station = 0; station < dialog.GetSSData()->GetSize(); ++station) {
      if (dialog.IsSelectedRow(station)) text += (text.empty() ? "" : " ") + std::to_string(station);
    }
    return text;
  }
  CStats_RgnList& Regions() { return dialog.GetSpatialCalculator()->regions; }
  CStats_Rgn& LastRegion() { return Regions().Get(Regions().GetCount() - 1); }
  bool CanPush() { return dialog.GetDlgItem(kControlPush)->isEnabled(); }
};

TEST_F(RowSelection, ClicksAddAndControlRemoves) {
  EXPECT_EQ(Selected(), "");
  EXPECT_FALSE(CanPush());
  Click(1);
  Click(3);
  EXPECT_EQ(Selected(), "1 3") << "a plain click adds";
  EXPECT_TRUE(CanPush());
  EXPECT_EQ(dialog.GetControl<QLabel>(kControlSelected)->text().toStdString(), "2 of 5 selected");
  EXPECT_EQ(dialog.Cell(2, 4).background, kSelected) << "a null that is selected too";
  EXPECT_NE(dialog.Cell(1, 1).background, kSelected);
  const auto regions = Regions().GetCount();
  Click(3);
  Click(3, /*shift=*/true);
  EXPECT_EQ(Regions().GetCount(), regions) << "a selected row without Control: nothing";
  Click(1, false, /*control=*/true);
  EXPECT_EQ(Selected(), "3");
  EXPECT_FALSE(LastRegion().include);
  Click(-1);
  Click(5);
  EXPECT_EQ(Selected(), "3") << "outside the table";
}

TEST_F(RowSelection, ModesOfTheGridAndTheAllowFlag) {
  dialog.GetGrid()->SetSelectRowMode(CTSSelectGridCtrl::eSingle);
  Click(0);
  Click(2, /*shift=*/true);
  EXPECT_EQ(Selected(), "0 2") << "row by row";
  dialog.GetGrid()->SetSelectRowMode(CTSSelectGridCtrl::eNone);
  Click(4);
  EXPECT_EQ(Selected(), "0 2");
  dialog.GetGrid()->SetSelectRowMode(CTSSelectGridCtrl::eExtended);
  dialog.SetAllowSSSelection(false);
  Click(4);
  EXPECT_EQ(Selected(), "0 2");
  EXPECT_NE(dialog.Cell(1, 1).background, kSelected) << "a plain table";
}

TEST_F(RowSelection, UndoneGesturesAreDroppedByTheNextOne) {
  Click(0);
  Click(2);
  dialog.GetSpatialCalculator()->ClearLastSelRegion();
  EXPECT_EQ(Selected(), "0");
  dialog.GetSpatialCalculator()->ClearLastSelRegion();
  dialog.EnableControls();
  EXPECT_FALSE(CanPush()) << "no region is active";
  Click(4);
  EXPECT_EQ(Selected(), "4");
  EXPECT_EQ(Regions().GetCount(), 1);
  dialog.GetSpatialCalculator()->RestoreLastSelRegion();
  EXPECT_EQ(Selected(), "4");
}

TEST_F(RowSelection, IsTellingAndRecordingOnceForEachGesture) {
  for (const char* page : {"Scatter", "Statistics"}) {
    dialog.ShowPage(page);
    dialog.refreshed = 0;
    Click(page[1] == 'c' ? 1 : 3);
    EXPECT_EQ(dialog.refreshed, 1) << page;
  }
  auto* spatial = dialog.GetSpatialCalculator();
  EXPECT_TRUE(spatial->changed.empty()) << "whoever reads what changed has been told";
  spatial->ClearLastSelRegion();
  spatial->RestoreLastSelRegion();
  for (const auto& changes : spatial->changed) EXPECT_TRUE(changes.empty()) << "recorded for no one";
  EXPECT_EQ(Selected(), "1 3");
}

TEST_F(RowSelection, ASpreadsheetWithoutATableTakesNoClick) {
  Click(0);
  dialog.ConnectSpreadsheet(nullptr, false);
  dialog.SendMessage(kMessageRowSelect, 3);
  dialog.SortGridByCol(1, 3, 0, 0);
  CMenu menu;
  dialog.ComposeMenu(&menu, 1, 1);
  dialog.ProcessMenu(1, 1, kMenuStatistics);
  EXPECT_FALSE(dialog.IsSelectedRow(0));
  WrittenTable bins(0, {{"bin", {1, 2}}});
  dialog.ConnectSpreadsheet(&bins, false);
  dialog.ProcessMenu(1, 3, kMenuStatistics);
  dialog.ConnectSpreadsheet(&table, true);
  EXPECT_EQ(Selected(), "0");
  EXPECT_EQ(dialog.GetGrid()->GetSortColumn(), -1);
}

TEST_F(RowSelection, ATableOfAnotherSizeShowsNoSelection) {
  Click(0);
  WrittenTable other(0, {{"bin", {1, 2}}});
  dialog.ConnectSpreadsheet(&other, false);
  EXPECT_EQ(Selected(), "");
  dialog.ConnectSpreadsheet(&table, true);
  EXPECT_EQ(Selected(), "0");
}

TEST_F(RowSelection, APushedSelectionIsTheWorkingTable) {
  dialog.ChooseKey("Pb");
  for (const int row : {4, 0, 1}) Click(row);
  QTest::mouseClick(dialog.GetDlgItem(kControlPush), Qt::LeftButton);
  EXPECT_EQ(dialog.GetWindowText(), "Tallyscope - Univariate");
  EXPECT_EQ(dialog.ColumnText(3), "3.5 1.25 5") << "in station order";
  EXPECT_EQ(dialog.GetGrid()->GetRowCount(), 4);
  EXPECT_EQ(Selected(), "") << "its selection is its own";
  EXPECT_FALSE(CanPush());
  dialog.ChooseKey("Pb");
  EXPECT_EQ(dialog.GetUniStats(1)->valid, 2);
  EXPECT_EQ(dialog.GetUniStats(1)->invalid, 1);
  EXPECT_EQ(dialog.GetUniStats(1)->mean, 250);

  Click(2);
  dialog.OnPushData();
  EXPECT_EQ(dialog.ColumnText(3), "5");
  EXPECT_EQ(dialog.GetData()->GetSourceStation(0), 4) << "the host's station, two selections deep";

  dialog.PopData();
  EXPECT_EQ(Selected(), "2") << "the selection comes back with its session";
  dialog.PopData();
  dialog.EnableControls();
  EXPECT_EQ(Selected(), "0 1 4");
  EXPECT_EQ(dialog.GetKeyDim(), 1);
  EXPECT_TRUE(CanPush());
}

TEST_F(RowSelection, TheRowNumberTakesTheClick) {
  dialog.resize(900, 700);
  dialog.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
  auto* grid = dialog.GetGrid();
  QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->GetCellRect(2, 0).center());
  EXPECT_EQ(Selected(), "1");
  QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::ShiftModifier, grid->GetCellRect(4, 0).center());
  EXPECT_EQ(Selected(), "1 2 3");
  QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::ControlModifier, grid->GetCellRect(3, 0).center());
  EXPECT_EQ(Selected(), "1 3");
  QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->GetCellRect(5, 1).center());
  EXPECT_EQ(Selected(), "1 3") << "a click on a value selects nothing";
}

TEST_F(RowSelection, StartsOfTheOtherModesPrepareTheirCalculators) {
  dialog.SetMode(CTallyscope::eBivariate);
  dialog.SetBiDim1(0);
  dialog.SetBiDim2(2);
  dialog.CreateSC_Bivariate();
  const auto* pair = dynamic_cast<CStats_Bivariate*>(dialog.GetCalculator());
  ASSERT_NE(pair, nullptr);
  EXPECT_EQ(pair->valid, 5);
  EXPECT_EQ(pair->xLink, dialog.GetUniStats(0));
  EXPECT_EQ(dialog.GetSpatialCalculator()->GetSpatialDimX(), 0);
  EXPECT_EQ(dialog.GetSpatialCalculator()->GetSpatialDimY(), 2);

  dialog.SetMode(CTallyscope::eSpatial);
  dialog.SetSPDim(1);
  dialog.CreateSC_Spatial();
  EXPECT_EQ(dialog.GetCalculator(), dialog.GetSpatialCalculator());
  EXPECT_EQ(dialog.GetSpatialCalculator()->GetSpatialDimX(), -1);
  const auto* axes = dynamic_cast<CStats_Multivariate*>(dialog.GetTallyscope()->GetOwnCalculator());
  ASSERT_NE(axes, nullptr);
  EXPECT_EQ(axes->valid, 5);

  dialog.SetMode(CTallyscope::eVariogram);
  for (int start = 0; start < 2; ++start) {
    dialog.SetVarDim(2);
    dialog.CreateSC_Variogram();
    EXPECT_EQ(dialog.GetCalculator(), dialog.GetVariogram(2));
    EXPECT_EQ(dialog.GetVariogram(2)->GetItemCount(), 1);
    EXPECT_EQ(dialog.GetVariogram(2)->GetFlags(0), 0) << "nothing is computed yet";
    EXPECT_TRUE(dialog.GetData()->GetPointSearch()->IsPartitioned());
    EXPECT_TRUE(dialog.GetVariogramModel(2)->IsEmpty());
  }
}

}  // namespace
}  // namespace tallyscope
