// SPDX-License-Identifier: MIT
// The pages of the trace and of the histogram on their sheet: what the spreadsheet shows beside them, and that it lets
// go of the bins in time.
#include <gtest/gtest.h>

#include <QLabel>
#include <QToolButton>

#include "platform/core/Messages.h"
#include "platform/ui/WinApp.h"
#include "statistics/Stats_RgnSelAll.h"
#include "statistics/Stats_Univariate.h"
#include "tests/workbench/WorkbenchTesting.h"
#include "workbench/ControlIds.h"
#include "workbench/GraphControls.h"
#include "workbench/PP_Univariate_Histogram.h"
#include "workbench/PP_Univariate_Scatter.h"
#include "workbench/PS_BaseTS.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {
namespace {

constexpr COLORREF kSelectedColour = 0xc0c0ff;
enum Page { kScatter, kStatistics, kHistogram };

class UnivariatePages : public ::testing::Test {
 protected:
  UnivariatePages() {
    SetProfile(std::make_unique<CMemoryProfile>());  // sessions of one second look like one: views would come back
    dialog.Create();
  }

  template <class T>
  T& Show(Page page) {
    dialog.GetSheet()->SetActivePage(page);
    return dynamic_cast<T&>(*dialog.GetSheet()->GetActivePage());
  }
  bool IsHidden(CWnd& page, int id) { return page.GetDlgItem(id)->isHidden(); }
  int CountColoured(COLORREF colour) {
    int count = 0;
    for (int row = 1; row <= dialog.GetSSData()->GetSize(); ++row) {
      const auto cell = dialog.Cell(row, 1);
      count += cell.hasBackground && cell.background == colour ? 1 : 0;
    }
    return count;
  }

  WrittenTable table = SmallTable();
  OpenWorkbench dialog{table};
};

TEST_F(UnivariatePages, OfferWhatTheirPlotsHave) {
  auto& scatter = Show<CPP_Univariate_Scatter>(kScatter);
  EXPECT_EQ(scatter.GetPlot()->titleY, "Cu");
  EXPECT_EQ(scatter.GetPlot()->extents.min, (Point3{1, 1.25, 0}));
  EXPECT_EQ(scatter.GetPlot()->extents.max, (Point3{5, 9, 1}));
  EXPECT_TRUE(IsHidden(scatter, kGraphSize) && IsHidden(scatter, kGraphSizeLabel));
  EXPECT_FALSE(IsHidden(scatter, kGraphColour));
  auto& histogram = Show<CPP_Univariate_Histogram>(kHistogram);
  EXPECT_EQ(histogram.GetPlot()->titleX, "Cu");
  EXPECT_EQ(histogram.GetPlot()->extents.min, (Point3{1.25, 0, 0}));
  EXPECT_EQ(histogram.GetPlot()->extents.max, (Point3{9, 1, 1}));
  for (const int id : {kGraphSize, kGraphSizeLabel, kGraphColour, kGraphColourLabel}) {
    EXPECT_TRUE(IsHidden(histogram, id)) << id;
  }
  for (CWnd* page : {static_cast<CWnd*>(&scatter), static_cast<CWnd*>(&histogram)}) {
    const auto tip = page->GetControl<QToolButton>(kGraphSelectPoly)->toolTip();
    EXPECT_TRUE(tip.startsWith("Polygon selection: not on a ")) << tip.toStdString();
  }
}

// There are as many bins as stations, so nothing but the page tells them apart.
TEST_F(UnivariatePages, BinsAreNeverSelected) {
  dialog.ChooseKey("Zn");
  auto& histogram = Show<CPP_Univariate_Histogram>(kHistogram);
  ASSERT_EQ(dialog.GetSSData()->GetSize(), table.GetSize());
  EXPECT_EQ(dialog.Text(0, 1), "Bin");
  EXPECT_EQ(dialog.ColumnText(8), "2 2 0 0 1");
  histogram.GetPlot()->AddSelRegion(std::make_unique<CStats_RgnSelAll>());
  EXPECT_EQ(CountColoured(kSelectedColour), 0);
  EXPECT_EQ(dialog.GetControl<QLabel>(kControlSelected)->text(), "5 of 5 selected");
  const int regions = dialog.GetSpatialCalculator()->regions.GetCount();
  dialog.SelectRow(1, 0, 0);
  EXPECT_EQ(dialog.GetSpatialCalculator()->regions.GetCount(), regions) << "a click on a bin's number";
  for (const Page page : {kStatistics, kHistogram, kScatter}) {
    Show<CPropertyPage>(page);
    EXPECT_EQ(CountColoured(kSelectedColour), page == kHistogram ? 0 : 5);
    EXPECT_EQ(dialog.Text(0, 1), page == kHistogram ? "Bin" : "x");
  }
}

TEST_F(UnivariatePages, AHeadingOfTheBinsIsNoField) {
  Show<CPP_Univariate_Histogram>(kHistogram);
  NM_GRIDVIEW click;
  click.idFrom = kControlGrid;
  click.code = kNotifyDblClick;
  click.row = 0;
  click.col = 9;
  dialog.SendNotify(&click);
  EXPECT_EQ(dialog.GetKeyDim(), 0);
  EXPECT_EQ(dialog.Text(0, 1), "Bin");
}

TEST_F(UnivariatePages, CountsAreThoseOfTheSelectionWhenTheHistogramShows) {
  dialog.ChooseKey("Zn");
  Show<CPP_Univariate_Scatter>(kScatter).GetPlot()->AddSelRegion(std::make_unique<CStats_RgnSelAll>());
  auto& plot = dynamic_cast<CUPlotX_Uni_Histogram&>(*Show<CPP_Univariate_Histogram>(kHistogram).GetPlot());
  EXPECT_EQ(plot.selectedCounts, (std::vector<int>{2, 2, 0, 0, 1}));
}

// Space with three axes has no map, and its statistics leave the spreadsheet as it is.
TEST_F(UnivariatePages, RowsCanBeSelectedAfterTheBinsHaveGone) {
  WrittenTable deep(3, {{"x", {1, 2}}, {"y", {1, 2}}, {"z", {1, 2}}, {"Cu", {3, 4}}});
  OpenWorkbench space(deep);
  space.Create();
  space.GetSheet()->SetActivePage(kHistogram);
  EXPECT_FALSE(space.GetAllowSSSelection());
  space.ChooseMode("Spatial");
  EXPECT_TRUE(space.GetAllowSSSelection());
  EXPECT_EQ(space.Text(0, 1), "x");
}

// The bins end with their page: no session may be left with them.
TEST_F(UnivariatePages, ComeAndGoWithPushAndPop) {
  auto& histogram = Show<CPP_Univariate_Histogram>(kHistogram);
  CRect left{0, 0, histogram.GetPlot()->GetFrame().left + histogram.GetPlot()->GetFrame().Width() / 2, 100};
  histogram.GetPlot()->Select(left, true);
  dialog.OnPushData();
  EXPECT_EQ(dialog.ColumnText(3), "3.5 1.25 5");
  Show<CPP_Univariate_Histogram>(kHistogram);
  EXPECT_EQ(dialog.GetSSData()->GetSize(), 3);
  dialog.PopData();
  EXPECT_EQ(dialog.GetSSData(), &table);
  EXPECT_EQ(dialog.ColumnText(3), "3.5 1.25 9 7 5");
  Show<CPP_Univariate_Histogram>(kHistogram);
  dialog.ChooseKey("Pb");
  EXPECT_EQ(dialog.GetSheet()->GetActiveIndex(), kHistogram);
  EXPECT_EQ(dialog.GetSSData()->GetSize(), 4) << "a bin for each value";
}

}  // namespace
}  // namespace tallyscope
