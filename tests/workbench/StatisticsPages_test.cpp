// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QPushButton>

#include "platform/core/NumberText.h"
#include "statistics/Stats_Univariate.h"
#include "tests/workbench/WorkbenchTesting.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_StatsBasic.h"
#include "workbench/PS_Univariate.h"

namespace tallyscope {
namespace {

struct UnivariatePage : testing::Test {
  WrittenTable table{0, {{"Cu", {1, 2, WrittenTable::kNull, 3, 10}}, {"flat", {0.1, 0.1, 0.1, 0.1, 0.1}}}};
  OpenWorkbench dialog{table};

  ~UnivariatePage() override { SetNumberCharacters({".", ","}); }
  CPropertyPage& Page() { return *dialog.GetSheet()->GetActivePage(); }
};

TEST_F(UnivariatePage, ShowsTheFiguresOfTheKeyField) {
  dialog.Create();
  dialog.ShowPage("Statistics");
  const std::pair<int, const char*> figures[] = {
      {kControlTotal, "5"},
      {kControlValid, "4"},
      {kControlInvalid, "1"},
      {kControlMinimum, "1"},
      {kControlMaximum, "10"},
      {kControlMean, "4"},
      {kControlVariance, "16.6666666666667"},
      {kControlStdDeviation, "4.08248290463863"},
      {kControlDirection, "Positively skewed"},
  };
  for (const auto& [id, text] : figures) EXPECT_EQ(FigureText(Page(), id), text) << id;
  EXPECT_EQ(FigureText(Page(), kControlMedian), FormatGeneral(dialog.GetUniStats(0)->binnedMedian, 15));

  dialog.ChooseKey("flat");
  EXPECT_EQ(FigureText(Page(), kControlMean), "0.1") << "no tail of binary digits";
  EXPECT_EQ(FigureText(Page(), kControlDirection), "Negatively skewed") << "a skewness of 0 is not above 0";
}

TEST_F(UnivariatePage, FollowsTheUsersDecimalCharacter) {
  SetNumberCharacters({",", "."});
  dialog.Create();
  dialog.ShowPage("Statistics");
  EXPECT_EQ(FigureText(Page(), kControlVariance), "16,6666666666667");
  EXPECT_TRUE(dialog.GetSheet()->Process(0)) << "the figures read back through the same characters";
  EXPECT_EQ(dynamic_cast<CPP_Univariate_Stats&>(Page()).variance, 16.6666666666667);
}

TEST_F(UnivariatePage, CopiesAllFiguresAsText) {
  dialog.Create();
  dialog.ShowPage("Statistics");
  Page().GetControl<QPushButton>(kControlCopy)->click();
  const auto text = QApplication::clipboard()->text();
  EXPECT_TRUE(text.startsWith("Sample Count\tTotal\t5\n"));
  EXPECT_TRUE(text.contains("Valid data range\tMean\t4\n"));
  EXPECT_EQ(text.count('\n'), 16);
}

TEST(StatsBasic, ShowsTheFieldInItsTitle) {
  WrittenTable table(0, {{"Cu", {1, 3}}});
  CStats_Univariate figures;
  figures.Add(&table, 0);
  figures.Calculate(1, nullptr);
  CDlg_StatsBasic dialog;
  dialog.SetFigures(figures);
  dialog.title = "Cu - Summary statistics";
  dialog.Create();
  EXPECT_EQ(dialog.GetWindowText(), "Cu - Summary statistics");
  EXPECT_EQ(FigureText(dialog, kControlVariance), "2");
  EXPECT_EQ(FigureText(dialog, kControlRatio), "1.41421356237309");
  EXPECT_EQ(dialog.GetDlgItem(kIdCancel), nullptr) << "OK is its only button";
}

}  // namespace
}  // namespace tallyscope
