// SPDX-License-Identifier: MIT
// The workbench in a real window of a real display server, run modally as a host runs it, with mouse and keyboard.
#include <gtest/gtest.h>

#include <functional>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include "plots/UPlotX_Tallyscope.h"
#include "statistics/Stats_Univariate.h"
#include "tests/workbench/WorkbenchTesting.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_Tallyscope_Ext.h"
#include "workbench/GraphControls.h"
#include "workbench/PP_Base_Graph.h"
#include "workbench/PS_BaseTS.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {
namespace {

// Runs the workbench modally on a table; `drive` acts once its window is on the screen, and ends it.
bool RunWorkbench(CStats_Data& table, const std::function<void(CDlg_Tallyscope&)>& drive) {
  CDlg_Tallyscope_Ext workbench;
  auto* dialog = workbench.GetDlg();
  dialog->PushData(&table, false);
  dialog->SetUniDim(0);
  bool driven = false;
  QTimer::singleShot(0, dialog, [&] {
    driven = QTest::qWaitForWindowActive(dialog);
    if (driven) drive(*dialog);
    if (dialog->isVisible()) dialog->close();
  });
  const bool accepted = workbench.DoModal();
  EXPECT_TRUE(driven) << "the window never came up";
  return accepted;
}

TEST(RealWindow, ATourByMouseAndKeyboard) {
  ASSERT_EQ(QApplication::platformName(), "xcb");
  auto table = SmallTable();
  const bool accepted = RunWorkbench(table, [](CDlg_Tallyscope& dialog) {
    EXPECT_EQ(dialog.GetWindowText(), "Tallyscope - Univariate");
    auto* grid = dialog.GetGrid();

    const QPoint heading = grid->GetCellRect(0, 5).center();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, heading);
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, heading);
    EXPECT_EQ(dialog.GetKeyDim(), 2) << "a double click on \"Zn\"";
    dialog.GetSheet()->SetActivePage(1);
    const auto* mean = dialog.GetSheet()->GetActivePage()->GetControl<QLabel>(kControlMean);
    EXPECT_EQ(mean->text(), "4");

    auto* key = dialog.GetControl<QComboBox>(kControlKeyField);
    key->setFocus();
    QTest::keyClick(key, Qt::Key_Up);
    EXPECT_EQ(dialog.GetKeyDim(), 1) << "one field up by the keyboard";

    auto* mode = dialog.GetControl<QComboBox>(kControlMode);
    mode->setFocus();
    QTest::keyClick(mode, Qt::Key_Down);
    EXPECT_EQ(dialog.GetWindowText(), "Tallyscope - Bivariate");
    EXPECT_TRUE(dialog.GetDlgItem(kControlAncField)->isVisible());
    QTest::keyClick(mode, Qt::Key_Up);
    EXPECT_EQ(dialog.GetWindowText(), "Tallyscope - Univariate");
    EXPECT_EQ(dialog.GetKeyDim(), 1) << "the field it had";

    const int height = dialog.height();
    QTest::keyClick(&dialog, Qt::Key_F9);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !grid->isVisible() && dialog.height() < height; }));
    QTest::keyClick(&dialog, Qt::Key_F9);
    EXPECT_TRUE(QTest::qWaitFor([&] { return grid->isVisible() && dialog.height() == height; }));

    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_TRUE(dialog.isVisible());
    QTest::mouseClick(dialog.GetControl<QPushButton>(kIdOk), Qt::LeftButton);
  });
  EXPECT_TRUE(accepted);
}

// A drag over the histogram's tail, seen in the spreadsheet and on the map, by the real pointer's events.
TEST(RealWindow, ADragOverTheHistogramSelects) {
  auto table = SmallTable();
  RunWorkbench(table, [](CDlg_Tallyscope& dialog) {
    dialog.GetSheet()->SetActivePage(2);
    auto& page = dynamic_cast<CPP_Base_Graph&>(*dialog.GetSheet()->GetActivePage());
    QTest::mouseClick(page.GetControl<QToolButton>(kGraphSelectRect), Qt::LeftButton);
    auto* canvas = page.GetControl<CPlotCanvas>(kGraphFrame);
    const auto at = [&](double value, double height) {
      const auto place = page.GetPlot()->World2Device(value, height);
      return QPoint(static_cast<int>(place[0]), static_cast<int>(place[1]));
    };
    QTest::mousePress(canvas, Qt::LeftButton, {}, at(4.2, 0.6));
    QTest::mouseMove(canvas, at(6, 0.5));
    QTest::mouseMove(canvas, at(9, 0.3));
    QTest::mouseRelease(canvas, Qt::LeftButton, {}, at(9, 0.3));
    EXPECT_EQ(dialog.GetControl<QLabel>(kControlSelected)->text(), "3 of 5 selected");
    QTest::keyClick(&dialog, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.GetControl<QLabel>(kControlSelected)->text() == "5 stations"; }));
  });
}

TEST(RealWindow, ClosingItIsNoAcceptance) {
  auto table = SmallTable();
  EXPECT_FALSE(RunWorkbench(table, [](CDlg_Tallyscope& dialog) { dialog.close(); }));
}

TEST(RealWindow, AnEmptyTableOpensToo) {
  WrittenTable empty(0, {});
  bool seen = false;
  RunWorkbench(empty, [&](CDlg_Tallyscope& dialog) {
    EXPECT_EQ(dialog.GetSheet(), nullptr);
    EXPECT_EQ(dialog.GetControl<QComboBox>(kControlMode)->count(), 0);
    seen = true;
  });
  EXPECT_TRUE(seen);
}

}  // namespace
}  // namespace tallyscope
