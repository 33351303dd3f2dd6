// SPDX-License-Identifier: MIT
// The sheets of the bivariate and spatial modes, and what the statistics pages of all modes have in common.
#include <gtest/gtest.h>

#include <cmath>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextDocument>

#include "gridctrl/GridCtrl.h"
#include "platform/core/Messages.h"
#include "platform/core/NumberText.h"
#include "platform/ui/Modal.h"
#include "statistics/Stats_Bivariate.h"
#include "tests/support/ScriptedModal.h"
#include "tests/workbench/WorkbenchTesting.h"
#include "workbench/ControlIds.h"
#include "workbench/PS_Bivariate.h"
#include "workbench/PS_Spatial.h"

namespace tallyscope {
namespace {

constexpr double kNull = WrittenTable::kNull;
using Figures = std::vector<std::pair<int, std::string>>;

void ExpectFigures(const CWnd& page, const Figures& figures) {
  for (const auto& [id, text] : figures) EXPECT_EQ(FigureText(page, id), text) << "control " << id;
}

struct StatisticsPages : testing::Test {
  ~StatisticsPages() override {
    SetNumberCharacters({".", ","});
    SetModal(nullptr);
  }
};

// Opens the workbench on a mode of a table, with two fields by their dims.
struct OpenPage : OpenWorkbench {
  OpenPage(WrittenTable& table, CTallyscope::eAnalysisMode mode, int key = 0, int ancillary = 1)
      : OpenWorkbench(table) {
    SetMode(mode);
    SetBiDim1(key);
    SetBiDim2(ancillary);
    if (mode == CTallyscope::eUnivariate) SetUniDim(key);
    if (mode == CTallyscope::eSpatial) SetSPDim(key);
    Create();
    ShowPage("Statistics");
  }
  CPropertyPage& Page() { return *GetSheet()->GetActivePage(); }

  GV_DISPINFO Expectation(int row, int col) {
    GV_DISPINFO cell;
    cell.idFrom = kControlExpectation;
    cell.code = kNotifyCellRequest;
    cell.row = row;
    cell.col = col;
    cell.text = "untouched";
    EXPECT_TRUE(Page().SendNotify(&cell));
    return cell;
  }
  std::string ExpectationColumn(int col) {
    std::string text;
    const auto* grid = Page().GetControl<CGridCtrl>(kControlExpectation);
    for (int row = 0; row < grid->GetRowCount(); ++row) text += (row > 0 ? " " : "") + Expectation(row, col).text;
    return text;
  }
};

// b = 2a + 1 on five stations; the sixth has no b, and a mean a.
WrittenTable LineWithGap() {
  return WrittenTable(0, {{"a", {1, 2, 3, 4, 5, 3}}, {"b", {3, 5, 7, 9, 11, kNull}}});
}

TEST_F(StatisticsPages, BivariateFiguresByHand) {
  auto table = LineWithGap();
  OpenPage dialog(table, CTallyscope::eBivariate);
  ASSERT_EQ(dialog.GetWindowText(), "Tallyscope - Bivariate");
  // Sums of products 20 over 6 - 1; deviations of all of a, sqrt(2), and all of b, sqrt(10). X on Y has slope 0.4 and
  // intercept 0.2, and the narrower field is X, so that line is solved for Y.
  ExpectFigures(dialog.Page(), {{kControlTotal, "6"},
                                {kControlValid, "5"},
                                {kControlInvalid, "1"},
                                {kControlXMinimum, "1"},
                                {kControlXMaximum, "5"},
                                {kControlXMean, "3"},
                                {kControlYMinimum, "3"},
                                {kControlYMaximum, "11"},
                                {kControlYMean, "7"},
                                {kControlCovariance, "4"},
                                {kControlCorrelation, "0.894427190999916"},
                                {kControlInertia, "9"},
                                {kControlIntercept, "-0.5"},
                                {kControlSlope, "2.5"}});
  // Ranks 1 2 3 5 6 of a, its second 3 being the gap's, against 2 to 6 of b: 13 / 5 over sqrt(4.3) sqrt(2.5).
  double rank = 0;
  ASSERT_TRUE(ParseStrict(FigureText(dialog.Page(), kControlRank), rank));
  EXPECT_NEAR(rank, 2.6 / std::sqrt(10.75), 1e-14);
  EXPECT_TRUE(dialog.GetSheet()->Process(0)) << "what shows reads back";
}

TEST_F(StatisticsPages, ConditionalExpectationAsATable) {
  auto table = LineWithGap();
  OpenPage dialog(table, CTallyscope::eBivariate);
  // Windows of three pairs, half as wide at the ends; a point for each.
  EXPECT_EQ(dialog.ExpectationColumn(0), "      1 2 3");
  EXPECT_EQ(dialog.ExpectationColumn(1), "a 1 4 5");
  EXPECT_EQ(dialog.ExpectationColumn(2), "b 4 9 10");
  EXPECT_EQ(dialog.Page().GetControl<CGridCtrl>(kControlExpectation)->GetColumnCount(), 3);
  EXPECT_EQ(dialog.Expectation(0, 0).alignment, CellAlignment::kRight);
  EXPECT_EQ(dialog.Expectation(0, 2).alignment, CellAlignment::kCentre);
  EXPECT_EQ(dialog.Expectation(1, 2).alignment, CellAlignment::kRight);
  for (const auto& [row, col] : {std::pair{4, 1}, {0, 3}, {-1, 1}, {1, -1}}) {
    EXPECT_EQ(dialog.Expectation(row, col).text, "untouched") << row << ", " << col;
  }
  dialog.ChooseKey("b");
  dialog.ChooseAncillary("a");
  SetNumberCharacters({",", "."});
  EXPECT_EQ(dialog.ExpectationColumn(2), "a 1,5 4 4,5") << "the curve follows the fields";
}

TEST_F(StatisticsPages, TheTablesRowsFollowTheCurveNotTheStations) {
  WrittenTable::Column x{"x", {}}, y{"y", {}};
  for (int i = 0; i < 1000; ++i) {
    x.values.push_back(i % 10 == 0 ? kNull : i);
    y.values.push_back(1.0 / (i + 1));
  }
  WrittenTable table(0, {x, y});
  OpenPage dialog(table, CTallyscope::eBivariate);
  const auto* pairs = dynamic_cast<CStats_Bivariate*>(dialog.GetCalculator());
  const auto n = static_cast<int>(pairs->expectationX.size());
  EXPECT_EQ(pairs->valid, 900);
  EXPECT_LT(n, 40);
  EXPECT_EQ(dialog.Page().GetControl<CGridCtrl>(kControlExpectation)->GetRowCount(), n + 1);
  EXPECT_EQ(dialog.Expectation(n, 2).text, FormatGeneral(pairs->expectationYGivenX.back(), 8));
  EXPECT_EQ(FigureText(dialog.Page(), kControlRank), FormatGeneral(pairs->rankCorrelation, 15));
}

TEST_F(StatisticsPages, FollowTheUsersDecimalCharacter) {
  auto table = LineWithGap();
  SetNumberCharacters({",", "."});
  OpenPage dialog(table, CTallyscope::eBivariate);
  ExpectFigures(dialog.Page(), {{kControlCorrelation, "0,894427190999916"}, {kControlIntercept, "-0,5"}});
  EXPECT_TRUE(dialog.GetSheet()->Process(0));
  EXPECT_EQ(dynamic_cast<CPP_Bivariate_Stats&>(dialog.Page()).intercept, -0.5);
}

// Figures that are no finite numbers must not keep the user on the page: it is left by reading its figures back.
TEST_F(StatisticsPages, FieldsThatGiveNoFigures) {
  const struct {
    const char* name;
    std::vector<double> a, b;
    Figures figures;
    int rows;
  } cases[] = {
      {"no correlation, so no line to solve for Y", {-1, 0, 1}, {10, -20, 10}, {{kControlCorrelation, "0"}}, 3},
      {"no pair", {1, kNull}, {kNull, 2}, {{kControlXMinimum, "10000000000"}, {kControlYMaximum, "-10000000000"}}, 1},
      {"one pair", {1, kNull}, {5, 2}, {{kControlRank, "0"}, {kControlXMean, "1"}}, 1},
      {"X constant", {2, 2, 2}, {1, 2, 3}, {{kControlSlope, "0"}, {kControlIntercept, "2"}}, 3},
      {"both constant", {2, 2}, {7, 7}, {{kControlSlope, "0"}, {kControlIntercept, "7"}}, 3},
      {"infinities", {HUGE_VAL, 1, 2}, {1, -HUGE_VAL, 2}, {{kControlYMinimum, "-inf"}}, 3},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const auto& modal = ScriptedModal::Install();
    WrittenTable table(0, {{"a", c.a}, {"b", c.b}});
    OpenPage dialog(table, CTallyscope::eBivariate);
    ExpectFigures(dialog.Page(), c.figures);
    EXPECT_EQ(dialog.Page().GetControl<CGridCtrl>(kControlExpectation)->GetRowCount(), c.rows);
    EXPECT_TRUE(dialog.Page().OnKillActive());
    EXPECT_TRUE(modal.told.empty());
  }
}

TEST_F(StatisticsPages, SpatialFiguresOfTwoAndThreeAxes) {
  auto flat = SmallTable();
  OpenPage dialog(flat, CTallyscope::eSpatial);
  ASSERT_EQ(dialog.GetWindowText(), "Tallyscope - Spatial");
  ExpectFigures(dialog.Page(), {{kControlTotal, "5"},
                                {kControlValid, "5"},
                                {kControlInvalid, "0"},
                                {kControlXMinimum, "10"},
                                {kControlXMaximum, "50"},
                                {kControlXMean, "30"},
                                {kControlYMinimum, "1"},
                                {kControlYMaximum, "5"},
                                {kControlYMean, "3"}});

  // A station without a z counts for no axis.
  WrittenTable deep(3, {{"x", {-5, 1, 2, 6}}, {"y", {7, 8, 9, 9}}, {"z", {kNull, -3, 1.5, 0}}, {"Cu", {1, 2, 3, 4}}});
  OpenPage deeper(deep, CTallyscope::eSpatial);
  ExpectFigures(deeper.Page(), {{kControlTotal, "4"},
                                {kControlValid, "3"},
                                {kControlInvalid, "1"},
                                {kControlXMinimum, "1"},
                                {kControlXMaximum, "6"},
                                {kControlXMean, "3"},
                                {kControlZMinimum, "-3"},
                                {kControlZMaximum, "1.5"},
                                {kControlZMean, "-0.5"}});
  for (const int id : {kControlZMinimum, kControlZMaximum, kControlZMean}) {
    EXPECT_TRUE(dialog.Page().GetDlgItem(id)->isHidden() && !dialog.Page().GetDlgItem(id)->isEnabled());
    EXPECT_TRUE(!deeper.Page().GetDlgItem(id)->isHidden() && deeper.Page().GetDlgItem(id)->isEnabled());
  }
  const auto copied = [](CPropertyPage& page) {
    page.GetControl<QPushButton>(kControlCopy)->click();
    return QApplication::clipboard()->text();
  };
  EXPECT_TRUE(copied(deeper.Page()).endsWith("Valid data range\tZ\t-3\t1.5\t-0.5\n"));
  EXPECT_TRUE(copied(dialog.Page()).endsWith("Valid data range\tY\t1\t5\t3\n")) << "and no row Z";
}

TEST_F(StatisticsPages, CopyTakesFiguresAndTable) {
  auto table = LineWithGap();
  OpenPage dialog(table, CTallyscope::eBivariate);
  dialog.Page().GetControl<QPushButton>(kControlCopy)->click();
  const auto text = QApplication::clipboard()->text();
  EXPECT_TRUE(text.startsWith("Sample Count\tTotal\t6\n"));
  EXPECT_TRUE(text.contains("Valid data range\t\tMinimum\tMaximum\tMean\nValid data range\tX\t1\t5\t3\n"));
  EXPECT_TRUE(
      text.endsWith("Conditional expectation\t\ta\tb\n"
                    "Conditional expectation\t1\t1\t4\n"
                    "Conditional expectation\t2\t4\t9\n"
                    "Conditional expectation\t3\t5\t10\n"));
}

// The pages on fields bring the working table back; the page of the axes leaves the spreadsheet alone.
TEST_F(StatisticsPages, WhichTableTheSpreadsheetShows) {
  for (const auto mode : {CTallyscope::eUnivariate, CTallyscope::eBivariate, CTallyscope::eSpatial}) {
    SCOPED_TRACE(mode);
    auto table = SmallTable();
    WrittenTable derived(0, {{"bin", {1}}});
    OpenPage dialog(table, mode);
    dialog.ConnectSpreadsheet(&derived, false);
    dialog.SetAllowSSSelection(false);
    dialog.GetSheet()->SetActivePage(0);
    dialog.ConnectSpreadsheet(&derived, false);
    dialog.SetAllowSSSelection(false);
    dialog.ShowPage("Statistics");
    const bool back = mode != CTallyscope::eSpatial;
    EXPECT_EQ(dialog.GetSSData() == &table, back);
    EXPECT_EQ(dialog.GetAllowSSSelection(), back);
    dialog.ConnectSpreadsheet(&table, true);
  }
}

TEST_F(StatisticsPages, EachModeKeepsItsFields) {
  auto table = SmallTable();
  OpenWorkbench dialog(table);
  dialog.Create();
  const auto shown = [&] {
    auto text = dialog.GetControl<QComboBox>(kControlKeyField)->currentText();
    if (!dialog.GetControl<QComboBox>(kControlAncField)->isHidden()) {
      text += "/" + dialog.GetControl<QComboBox>(kControlAncField)->currentText();
    }
    return text.toStdString();
  };
  dialog.ChooseKey("Zn");
  dialog.ChooseMode("Bivariate");
  EXPECT_EQ(shown(), "x/Cu");
  dialog.ShowPage("Statistics");
  dialog.ChooseKey("Pb");
  dialog.ChooseAncillary("y");
  EXPECT_EQ(FigureText(*dialog.GetSheet()->GetActivePage(), kControlYMaximum), "5");
  dialog.ChooseMode("Spatial");
  dialog.ChooseKey("Cu");
  for (int round = 0; round < 2; ++round) {
    dialog.ChooseMode("Univariate");
    EXPECT_EQ(shown(), "Zn");
    dialog.ShowPage("Statistics");
    EXPECT_EQ(FigureText(*dialog.GetSheet()->GetActivePage(), kControlMean), "4");
    dialog.ChooseMode("Bivariate");
    EXPECT_EQ(shown(), "Pb/y");
    dialog.ShowPage("Statistics");
    EXPECT_EQ(FigureText(*dialog.GetSheet()->GetActivePage(), kControlXMean), "250");
    dialog.ChooseMode("Spatial");
    EXPECT_EQ(shown(), "Cu");
  }
}

TEST_F(StatisticsPages, DieWithTheirSheet) {
  auto table = SmallTable();
  OpenPage dialog(table, CTallyscope::eBivariate, 0, 2);
  dialog.show();
  QPointer<QWidget> page = &dialog.Page();
  auto* sheet = dynamic_cast<CPS_Bivariate*>(dialog.GetSheet());
  ASSERT_NE(sheet, nullptr);
  EXPECT_TRUE(sheet->IsInitialised());
  sheet->CreatePPBivariateStats();
  EXPECT_TRUE(page.isNull()) << "made anew";
  ASSERT_EQ(sheet->GetPageCount(), 2);
  EXPECT_TRUE(sheet->SetActivePage(1));
  page = sheet->GetActivePage();
  dialog.ChooseMode("Spatial");
  EXPECT_TRUE(page.isNull());
  QApplication::processEvents();  // nothing asks the old page for a cell
  dynamic_cast<CPS_Spatial*>(dialog.GetSheet())->DestroyPPages();
  EXPECT_EQ(dialog.GetSheet()->GetPageCount(), 0);
  dialog.RefreshDialog(true);
  EXPECT_EQ(dialog.GetSheet()->GetPageCount(), 2);
}

class CountedPage : public CPP_BaseTS {
 public:
  void Write2Registry() override { ++written; }
  void PrePSFinalise() override { ++finalised; }
  int written = 0, finalised = 0;
};

TEST_F(StatisticsPages, ASheetAsksAllItsPages) {
  CPS_BaseTS sheet;
  CountedPage pages[2];
  for (auto& page : pages) sheet.AddPage(&page);
  sheet.Initialise();
  sheet.Process(0);
  for (const auto& page : pages) EXPECT_EQ(page.written * 10 + page.finalised, 11);
}

// Long figures, on each page, at the first size and at the smallest.
TEST_F(StatisticsPages, NothingIsCutOff) {
  WrittenTable table(3, {{"x", {-1234567.8901234, 1234567.0123456, 3.3}},
                         {"y", {-0.00012345678901234, 9876543.2109876, 1e-7 / 3}},
                         {"z", {1e-300 / 3, -2e-300 / 3, 1}},
                         {"a quite long name of a field that goes on", {-1e15 / 7, 1e-5 / 7, 2.0 / 7}}});
  for (const auto mode : {CTallyscope::eUnivariate, CTallyscope::eBivariate, CTallyscope::eSpatial}) {
    OpenPage dialog(table, mode, 0, -1);
    dialog.show();
    for (const auto& size : {QSize(1200, 860), QSize(800, 600)}) {
      SCOPED_TRACE(testing::Message() << "mode " << mode << ", " << size.width() << " wide");
      dialog.resize(size);
      QApplication::processEvents();
      const auto* area = dialog.Page().findChild<QScrollArea*>();
      EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0);
      EXPECT_TRUE(size.width() == 800 || area->verticalScrollBar()->maximum() == 0);
      for (const auto* label : area->findChildren<QLabel*>()) {
        EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width())
            << label->accessibleName().toStdString();
      }
    }
  }
}

TEST_F(StatisticsPages, ControlsHaveNamesAndFollowEachOther) {
  WrittenTable table(3, {{"x", {1, 2}}, {"y", {1, 2}}, {"z", {1, 2}}, {"Cu", {1, 2}}});
  const std::vector<int> counts{kControlTotal, kControlValid, kControlInvalid};
  const std::vector<int> ranges{kControlXMinimum, kControlXMaximum, kControlXMean,
                                kControlYMinimum, kControlYMaximum, kControlYMean};
  const std::vector<int> lines{kControlCovariance, kControlCorrelation, kControlInertia,     kControlRank,
                               kControlIntercept,  kControlSlope,       kControlExpectation, kControlCopy};
  const std::vector<int> depth{kControlZMinimum, kControlZMaximum, kControlZMean, kControlCopy};
  for (const auto mode : {CTallyscope::eBivariate, CTallyscope::eSpatial}) {
    OpenPage dialog(table, mode, 0, -1);
    dialog.show();
    std::vector<int> ids = counts;
    for (const auto* more : {&ranges, mode == CTallyscope::eBivariate ? &lines : &depth}) {
      ids.insert(ids.end(), more->begin(), more->end());
    }
    auto* widget = dialog.Page().GetDlgItem(ids.front());
    for (const int id : ids) {
      ASSERT_EQ(widget, dialog.Page().GetDlgItem(id))
          << "control " << id << ", but " << widget->objectName().toStdString();
      EXPECT_FALSE(widget->accessibleName().isEmpty()) << id;
      do {
        widget = widget->nextInFocusChain();
      } while ((widget->focusPolicy() & Qt::TabFocus) == 0 || widget->isHidden());
    }
    EXPECT_EQ(dialog.Page().GetDlgItem(kControlXMean)->accessibleName(), "Valid data range, X, Mean");
  }
}

// Headings come from files and may look like markup.
TEST_F(StatisticsPages, HeadingsAreShownAsTheyStand) {
  const CString names[] = {"<b>Pb & Zn</b>", "<img src='x.png'>\t[*]"};
  WrittenTable table(0, {{names[0], {1, 2, 3, 4}}, {names[1], {4, 3, 1, 2}}});
  OpenPage dialog(table, CTallyscope::eBivariate);
  const QString shown[] = {ToQString(names[0]), "<img src='x.png'> [*]"};
  for (const auto& [id, row] : {std::pair{kControlXMinimum, 0}, {kControlYMinimum, 1}}) {
    QTextDocument tip;
    tip.setHtml(dialog.Page().GetDlgItem(id)->toolTip());
    EXPECT_EQ(tip.toPlainText(), ToQString(names[row]));
    for (const int box : {kControlKeyField, kControlAncField}) {
      EXPECT_EQ(dialog.GetControl<QComboBox>(box)->itemText(row), shown[row]);
    }
  }
  EXPECT_EQ(dialog.GetControl<QLabel>(kControlStatus)->textFormat(), Qt::PlainText);
  auto& modal = ScriptedModal::Install();
  QString title;
  modal.onDialog = [&](CDialog& summary) {
    summary.Create();
    title = summary.windowTitle();
    return kIdOk;
  };
  dialog.ProcessMenu(1, 2, kMenuStatistics);
  EXPECT_EQ(title, "<img src='x.png'> [*][*] - Summary statistics") << "a lone mark would be swallowed";
}

}  // namespace
}  // namespace tallyscope
