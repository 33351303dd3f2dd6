// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QTest>
#include <QToolButton>

#include "platform/ui/WinApp.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Univariate.h"
#include "tests/support/ScriptedModal.h"
#include "tests/workbench/WorkbenchTesting.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_Tallyscope_Ext.h"
#include "workbench/GraphControls.h"
#include "workbench/PS_Univariate.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {
namespace {

using Names = std::vector<std::string>;

WrittenTable TableOf(int axes, int fields) {
  std::vector<WrittenTable::Column> columns;
  for (int i = 0; i < axes + fields; ++i) columns.push_back({"c" + std::to_string(i), {1, 2, 3}});
  return WrittenTable(axes, columns);
}

TEST(Workbench, OffersTheModesThatTheTableAllows) {
  const struct {
    const char* name;
    int axes, fields;
    unsigned long more, less;
    Names modes;
  } cases[] = {
      {"one field", 0, 1, 0, 0, {"Univariate"}},
      {"two fields", 0, 2, 0, 0, {"Univariate", "Bivariate"}},
      {"two axes alone", 2, 0, 0, 0, {"Univariate", "Bivariate", "Spatial", "Variogram"}},
      {"one axis, two fields", 1, 2, 0, 0, {"Univariate", "Bivariate"}},
      {"no univariate", 2, 2, 0, 1, {"Bivariate", "Spatial", "Variogram"}},
      {"no variogram", 2, 2, 0, 0x30, {"Univariate", "Bivariate", "Spatial"}},
      {"variogram by its model page alone", 2, 2, 0x20, 0x10, {"Univariate", "Bivariate", "Spatial", "Variogram"}},
      {"nothing", 0, 0, 0, 0, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    auto table = TableOf(c.axes, c.fields);
    OpenWorkbench dialog(table);
    dialog.offersAll = true;
    if (c.axes > 0) dialog.SetUniDim(-1);
    dialog.DisableShow(c.less);
    dialog.EnableShow(c.more);
    dialog.Create();
    EXPECT_EQ(dialog.Modes(), c.modes);
    EXPECT_EQ(dialog.GetControl<QComboBox>(kControlKeyField)->count(), c.axes + c.fields);
  }
}

TEST(Workbench, OffersOnlyModesWithASheet) {
  auto table = SmallTable();
  OpenWorkbench dialog(table);
  dialog.Create();
  EXPECT_EQ(dialog.Modes(), (Names{"Univariate", "Bivariate", "Spatial"})) << "variograms have none yet";
}

TEST(Workbench, OpensOnTheKeyFieldWithItsFigures) {
  auto table = SmallTable();
  OpenWorkbench dialog(table);
  dialog.SetUniDim(2);
  dialog.Create();
  EXPECT_EQ(dialog.GetWindowText(), "Tallyscope - Univariate");
  EXPECT_EQ(dialog.GetControl<QComboBox>(kControlKeyField)->currentText(), "Zn");
  EXPECT_TRUE(dialog.GetControl<QComboBox>(kControlAncField)->isHidden());
  EXPECT_FALSE(dialog.GetDlgItem(kControlPop)->isEnabled());
  EXPECT_FALSE(dialog.GetDlgItem(kControlPush)->isEnabled());
  EXPECT_TRUE(dialog.GetDlgItem(kControlHelp)->isHidden());
  EXPECT_EQ(dialog.GetUniStats(2)->GetFlags(0), 11);
  EXPECT_EQ(dialog.GetUniStats(2)->GetItemCount(), 1) << "the cached calculator is not given the field twice";
  EXPECT_EQ(dialog.GetUniStats(2)->mean, 4);
}

TEST(Workbench, AnotherFieldBuildsTheSheetAnewOnTheSamePage) {
  auto table = SmallTable();
  OpenWorkbench dialog(table);
  dialog.Create();
  const auto* before = dialog.GetSheet();
  dialog.started.clear();
  dialog.ChooseKey("Cu");
  EXPECT_EQ(dialog.GetSheet(), before) << "the same field: nothing happens";
  EXPECT_TRUE(dialog.started.empty());
  dialog.ChooseKey("y");
  EXPECT_EQ(dialog.GetKeyDim(), -2);
  EXPECT_EQ(dialog.started, std::vector<int>{0});
  EXPECT_EQ(dialog.GetSheet()->GetActiveIndex(), 0);
  dialog.ChooseKey("Cu");
  EXPECT_EQ(dialog.GetUniStats(0)->GetItemCount(), 1);
}

// The fields that each mode starts with, told by the dims of the session.
TEST(Workbench, AModeChangeRepairsTheFields) {
  const struct {
    const char* name;
    int axes, fields;
    int bi1, bi2;
    const char* mode;
    int key, anc;
    const char* title;
  } cases[] = {
      {"as they were", 2, 3, 1, 2, "Bivariate", 1, 2, "Tallyscope - Bivariate"},
      {"equal fields", 2, 3, 1, 1, "Bivariate", -1, 0, "Tallyscope - Bivariate"},
      {"no axes, fresh session", 0, 2, -1, 0, "Bivariate", 0, 0, "Tallyscope - Bivariate"},
      {"ancillary out of range", 2, 3, 1, 9, "Bivariate", 1, 1, "Tallyscope - Bivariate"},
      {"both out of range, no fields: no sheet", 2, 0, 5, 6, "Bivariate", 0, -1, "Tallyscope"},
      {"spatial key", 2, 3, 0, 1, "Spatial", -1, -1, "Tallyscope - Spatial"},
      {"variogram key: no sheet yet", 2, 3, 0, 1, "Variogram", 0, 0, "Tallyscope"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    auto table = TableOf(c.axes, c.fields);
    OpenWorkbench dialog(table);
    dialog.offersAll = true;
    dialog.SetBiDim1(c.bi1);
    dialog.SetBiDim2(c.bi2);
    dialog.SetUniDim(c.fields > 0 ? 0 : -1);
    dialog.Create();
    dialog.started.clear();
    dialog.ChooseMode(c.mode);
    EXPECT_EQ(dialog.GetKeyDim(), c.key);
    EXPECT_EQ(dialog.GetAncDim(), c.anc);
    EXPECT_EQ(dialog.started.size(), 1u);
    EXPECT_EQ(dialog.GetWindowText(), c.title);
    const bool two = std::string(c.mode) == "Bivariate";
    EXPECT_EQ(!dialog.GetDlgItem(kControlAncField)->isHidden(), two);
    dialog.ChooseMode(c.mode);
    EXPECT_EQ(dialog.started.size(), 1u) << "the same mode again";
  }
}

TEST(Workbench, PopBringsTheSessionBelowBack) {
  auto table = SmallTable();
  OpenWorkbench dialog(table);
  dialog.SetUniDim(1);
  dialog.Create();
  dialog.SortGridByCol(0, 3, 0, 0);
  dialog.PopData();
  EXPECT_EQ(dialog.started.size(), 1u) << "the bottom session stays";

  auto* few = new WrittenTable(2, {{"x", {1, 2}}, {"y", {1, 2}}, {"Cu", {8, 9}}, {"Pb", {1, 1}}, {"Zn", {0, 0}}});
  dialog.PushData(few, /*owns=*/true);
  dialog.SetUniDim(0);
  dialog.RefreshDialog(true);
  dialog.EnableControls();
  EXPECT_EQ(dialog.ColumnText(3), "8 9") << "station order: the sort belongs to the session below";
  EXPECT_EQ(dialog.GetGrid()->GetSortColumn(), -1);
  EXPECT_TRUE(dialog.GetDlgItem(kControlPop)->isEnabled());
  QTest::mouseClick(dialog.GetDlgItem(kControlPop), Qt::LeftButton);
  EXPECT_EQ(dialog.GetData(), &table);
  EXPECT_EQ(dialog.GetKeyDim(), 1);
  EXPECT_EQ(dialog.GetControl<QComboBox>(kControlKeyField)->currentText(), "Pb");
  EXPECT_EQ(dialog.ColumnText(3), "9 7 5 3.5 1.25") << "sorted as it was";
  EXPECT_EQ(dialog.GetGrid()->GetSortColumn(), 3);
  EXPECT_FALSE(dialog.GetDlgItem(kControlPop)->isEnabled());
}

TEST(Workbench, HidesAndShowsTheSpreadsheet) {
  auto table = SmallTable();
  OpenWorkbench dialog(table);
  dialog.Create();
  dialog.resize(1000, 800);  // well above the smallest size
  dialog.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
  const int height = dialog.height();
  QTest::mouseClick(dialog.GetDlgItem(kControlShowSpreadsheet), Qt::LeftButton);
  EXPECT_FALSE(dialog.IsSpreadsheetShown());
  EXPECT_FALSE(dialog.GetGrid()->isVisible());
  EXPECT_LT(dialog.height(), height);
  QTest::mouseClick(dialog.GetDlgItem(kControlShowSpreadsheet), Qt::LeftButton);
  EXPECT_TRUE(dialog.GetGrid()->isVisible());
  EXPECT_EQ(dialog.height(), height);
}

TEST(Workbench, EscapeAndEnterLeaveTheWindowOpen) {
  auto table = SmallTable();
  OpenWorkbench dialog(table);
  dialog.Create();
  dialog.show();
  QTest::keyClick(&dialog, Qt::Key_Escape);
  QTest::keyClick(&dialog, Qt::Key_Return);
  EXPECT_TRUE(dialog.isVisible());
}

// A page that goes takes its controls along; the focus must not fall on the window's own buttons.
TEST(Workbench, TheFocusGoesToTheNewPage) {
  auto table = SmallTable();
  OpenWorkbench dialog(table);
  dialog.Create();
  dialog.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  const auto plot = [&] { return dialog.GetSheet()->GetActivePage()->GetDlgItem(kGraphFrame); };
  const struct {
    const char* name;
    int focus;  // control that has it before; 0 the plot
    std::function<void()> act;
    std::function<QWidget*()> after;
  } cases[] = {
      {"push by keys", 0, [&] { QTest::keyClick(&dialog, Qt::Key_Down, Qt::ControlModifier | Qt::ShiftModifier); },
       plot},
      {"pop by keys", 0, [&] { QTest::keyClick(&dialog, Qt::Key_Up, Qt::ControlModifier | Qt::ShiftModifier); }, plot},
      {"push by its button", kControlKeyField,
       [&] { QTest::mouseClick(dialog.GetDlgItem(kControlPush), Qt::LeftButton); }, plot},
      {"pop by its button's key", kControlPop, [&] { QTest::keyClick(dialog.GetDlgItem(kControlPop), Qt::Key_Space); },
       plot},
      {"another mode, from its box", kControlMode, [&] { dialog.ChooseMode("Bivariate"); },
       [&] { return dialog.GetDlgItem(kControlMode); }},
      {"another mode, from the plot", 0, [&] { dialog.ChooseMode("Spatial"); }, plot},
      {"refreshed, from the spreadsheet", kControlGrid, [&] { dialog.RefreshDialog(true); },
       [&] { return dialog.GetDlgItem(kControlGrid); }},
      {"refreshed, from the plot", 0, [&] { dialog.RefreshDialog(true); }, plot},
      {"a page without a plot", 0,
       [&] {
         dialog.ShowPage("Statistics");
         dialog.GetSheet()->GetActivePage()->GetDlgItem(kControlCopy)->setFocus();
         dialog.RefreshDialog(true);
       },
       [&] { return dialog.GetDlgItem(kControlGrid); }},
  };
  dialog.SelectRow(1, 0, 0);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    (c.focus != 0 ? dialog.GetDlgItem(c.focus) : plot())->setFocus();
    const auto sheets = dialog.started.size();
    c.act();
    ASSERT_TRUE(QTest::qWaitFor([&] { return dialog.started.size() > sheets; }));
    EXPECT_EQ(dialog.focusWidget(), c.after());
    for (const auto key : {Qt::Key_Space, Qt::Key_Return}) QTest::keyClick(dialog.focusWidget(), key);
    dialog.GetSpatialCalculator()->ClearAllSelRegion();
    dialog.SelectRow(1, 0, 0);
    EXPECT_TRUE(dialog.isVisible());
  }
}

// Code of a page may be on the stack while something is open on top of the window.
TEST(Workbench, WhatTakesAPageDownWaitsForWhatIsOpen) {
  const struct {
    const char* name;
    std::function<void(OpenWorkbench&)> act;
    std::function<bool(OpenWorkbench&)> isDone;
  } cases[] = {
      {"push", [](auto& dialog) { dialog.OnPushData(); },
       [](auto& dialog) { return dialog.GetData()->GetSize() == 1; }},
      {"pop", [](auto& dialog) { dialog.OnPopData(); }, [](auto& dialog) { return dialog.GetData()->GetSize() == 5; }},
      {"pop as a host", [](auto& dialog) { dialog.PopData(); },
       [](auto& dialog) { return dialog.GetData()->GetSize() == 5; }},
      {"mode", [](auto& dialog) { dialog.ChooseMode("Spatial"); },
       [](auto& dialog) { return dialog.GetWindowText() == "Tallyscope - Spatial"; }},
      {"key field", [](auto& dialog) { dialog.ChooseKey("Zn"); }, [](auto& dialog) { return dialog.GetKeyDim() == 2; }},
      {"refresh", [](auto& dialog) { dialog.RefreshDialog(true); },
       [](auto& dialog) { return dialog.started.size() > 2; }},
      {"end", [](auto& dialog) { dialog.close(); }, [](auto& dialog) { return !dialog.isVisible(); }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    auto table = SmallTable();
    OpenWorkbench dialog(table);
    dialog.Create();
    dialog.show();
    for (const int row : {0, 2, 3}) dialog.SelectRow(row, 0, 0);
    dialog.OnPushData();
    dialog.SelectRow(1, 0, 0);
    auto& modal = ScriptedModal::Install();
    modal.onDialog = [&](CDialog&) {
      const auto* before = dialog.GetSheet();
      c.act(dialog);
      QTest::qWait(50);
      EXPECT_EQ(dialog.GetSheet(), before);
      EXPECT_FALSE(c.isDone(dialog)) << "still open";
      return kIdCancel;
    };
    dialog.ProcessMenu(1, 1, kMenuStatistics);
    EXPECT_FALSE(c.isDone(dialog)) << "code that opened it may still run";
    EXPECT_TRUE(QTest::qWaitFor([&] { return c.isDone(dialog); }));
    SetModal(nullptr);
  }
}

TEST(Workbench, RemembersItsSize) {
  auto table = SmallTable();
  {
    OpenWorkbench dialog(table);
    dialog.Create();
    dialog.resize(810, 640);
    dialog.OnDestroy();
    EXPECT_EQ(dialog.GetSheet(), nullptr);
  }
  OpenWorkbench dialog(table);
  dialog.Create();
  EXPECT_EQ(dialog.width(), std::min(810, dialog.screen()->availableSize().width()));
  SetProfile(std::make_unique<CMemoryProfile>());
}

TEST(Workbench, ControlsHaveNamesAndTips) {
  auto table = SmallTable();
  OpenWorkbench dialog(table);
  dialog.Create();
  for (const int id : {kControlMode, kControlKeyField, kControlAncField, kControlPush, kControlPop,
                       kControlShowSpreadsheet, kControlGrid}) {
    EXPECT_FALSE(dialog.GetDlgItem(id)->accessibleName().isEmpty()) << id;
    EXPECT_EQ(dialog.GetDlgItem(id)->toolTip().isEmpty(), id == kControlGrid) << id;
  }
  EXPECT_TRUE(dialog.GetDlgItem(kControlPush)->toolTip().startsWith("Collapse to current selection"));
}

TEST(WorkbenchExt, RefusesToOpenWithoutATable) {
  CDlg_Tallyscope_Ext workbench;
  EXPECT_FALSE(workbench.DoModal());
  workbench.ReleaseRC();
  workbench.ReleaseRC();
}

}  // namespace
}  // namespace tallyscope
