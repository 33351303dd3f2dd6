// SPDX-License-Identifier: MIT
// A graph page in its window: tools, settings, the view that comes back, the mouse and the keyboard.
#include <gtest/gtest.h>

#include <algorithm>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QTest>
#include <QToolButton>

#include "platform/ui/WinApp.h"
#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "tests/support/Scratch.h"
#include "tests/support/ScriptedModal.h"
#include "tests/workbench/WorkbenchTesting.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_Axis.h"
#include "workbench/GraphControls.h"
#include "workbench/PP_Bivariate_Scatter.h"
#include "workbench/PP_Spatial_Scatter.h"
#include "workbench/PP_Univariate_Histogram.h"
#include "workbench/PP_Univariate_Scatter.h"
#include "workbench/PS_BaseTS.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {
namespace {

constexpr const char* kSection = "UPlotXControls";
constexpr COLORREF kSelectedColour = 0xc0c0ff;
using Container = CUPlotX_Container;

class GraphPage : public testing::Test {
 protected:
  GraphPage() { SetProfile(std::make_unique<CMemoryProfile>()); }
  ~GraphPage() override {
    SetModal(nullptr);
    SetProfile(std::make_unique<CMemoryProfile>());
  }

  void Open(OpenWorkbench& dialog) {
    dialog.Create();
    dialog.resize(1000, 800);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  }
  CPP_Base_Graph& Page(OpenWorkbench& dialog) {
    return dynamic_cast<CPP_Base_Graph&>(*dialog.GetSheet()->GetActivePage());
  }
  CPlotCanvas& Canvas(CPP_Base_Graph& page) { return *page.GetControl<CPlotCanvas>(kGraphFrame); }
  QToolButton& Tool(CPP_Base_Graph& page, int id) { return *page.GetControl<QToolButton>(id); }
  void Press(CPP_Base_Graph& page, int id) { Tool(page, id).click(); }

  QPoint At(CPP_Base_Graph& page, double x, double y) {
    const auto at = page.GetPlot()->World2Device(x, y);
    return {static_cast<int>(std::lround(at[0])), static_cast<int>(std::lround(at[1]))};
  }
  void Drag(CPP_Base_Graph& page, QPoint from, QPoint to) {
    auto& canvas = Canvas(page);
    QTest::mousePress(&canvas, Qt::LeftButton, {}, from);
    MoveTo(canvas, (from + to) / 2, Qt::LeftButton);
    MoveTo(canvas, to, Qt::LeftButton);
    QTest::mouseRelease(&canvas, Qt::LeftButton, {}, to);
  }
  static void MoveTo(QWidget& widget, QPoint to, Qt::MouseButtons buttons) {
    QMouseEvent move(QEvent::MouseMove, to, widget.mapToGlobal(to), Qt::NoButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(&widget, &move);
  }
  std::string Selected(OpenWorkbench& dialog) {
    const auto& bitmaps = dialog.GetSpatialCalculator()->bitmaps;
    std::string text;
    for (int i = 0; !bitmaps.empty() && i < bitmaps.front().GetSize(); ++i) text += bitmaps.front().Get(i) ? '1' : '0';
    return text;
  }
  std::string Shown(OpenWorkbench& dialog) { return dialog.GetControl<QLabel>(kControlStatus)->text().toStdString(); }
  std::string Pressed(CPP_Base_Graph& page) {
    std::string text;
    for (const auto& [id, name] : {std::pair{kGraphZoomIn, "in"},
                                   {kGraphZoomOut, "out"},
                                   {kGraphPan, "pan"},
                                   {kGraphSelect, "pointer"},
                                   {kGraphSelectRect, "rectangle"},
                                   {kGraphSelectPoly, "polygon"},
                                   {kGraphExclude, "exclude"},
                                   {kGraphZoomH, "h"}}) {
      if (Tool(page, id).isChecked()) text += (text.empty() ? "" : " ") + std::string(name);
    }
    return text;
  }

  WrittenTable table = SmallTable();
};

TEST_F(GraphPage, OneToolIsPressedAtATime) {
  OpenWorkbench dialog(table);
  Open(dialog);
  auto& page = Page(dialog);
  EXPECT_EQ(Pressed(page), "pointer h");
  const std::tuple<int, const char*, int> steps[] = {
      {kGraphZoomIn, "in h", Container::eZoomIn},
      {kGraphPan, "pan h", Container::ePan},
      {kGraphPan, "pointer h", Container::ePointer},  // off again: the pointer takes its place
      {kGraphSelectRect, "rectangle h", Container::eRectangle},
      {kGraphExclude, "rectangle exclude h", Container::eRectangleExclude},
      {kGraphSelectPoly, "polygon exclude h", Container::ePolygonExclude},
      {kGraphZoomH, "polygon exclude", Container::ePolygonExclude},
      {kGraphExclude, "polygon", Container::ePolygon},
      {kGraphZoomOut, "out", Container::eZoomOut},
      {kGraphSelect, "pointer", Container::ePointer},
      {kGraphSelect, "pointer", Container::ePointer},
  };
  for (const auto& [id, pressed, mode] : steps) {
    Press(page, id);
    EXPECT_EQ(Pressed(page), pressed) << id;
    EXPECT_EQ(page.GetContainer().GetCursorMode(), mode) << id;
  }
  EXPECT_EQ(page.GetContainer().GetZoomAxes(), 3);
}

TEST_F(GraphPage, TheViewComesBackWhileSessionAndFieldStay) {
  OpenWorkbench dialog(table);
  Open(dialog);
  Page(dialog).GetPlot()->ZoomAbout({300, 100}, 2, 1);
  Press(Page(dialog), kGraphSelectRect);
  Page(dialog).GetControl<QComboBox>(kGraphColour)->setCurrentIndex(4);
  emit Page(dialog).GetControl<QComboBox>(kGraphColour)->activated(4);
  EXPECT_EQ(Page(dialog).GetPlot()->colourDim, 1) << "two axes come first";
  const Box view = Page(dialog).GetPlot()->GetVisible();

  dialog.ChooseMode("Bivariate");
  EXPECT_TRUE(Page(dialog).resetView);
  dialog.ChooseMode("Univariate");
  EXPECT_FALSE(Page(dialog).resetView);
  EXPECT_NEAR(Page(dialog).GetPlot()->GetVisible().min[0], view.min[0], 1e-9);
  EXPECT_NEAR(Page(dialog).GetPlot()->GetVisible().max[0], view.max[0], 1e-9);
  EXPECT_EQ(Pressed(Page(dialog)), "rectangle h");
  EXPECT_EQ(Page(dialog).GetContainer().GetCursorMode(), Container::eRectangle);
  EXPECT_EQ(Page(dialog).GetPlot()->colourDim, 1);

  dialog.ChooseKey("Zn");
  EXPECT_TRUE(Page(dialog).viewChange.dim1 && !Page(dialog).viewChange.session && Page(dialog).resetView);
  EXPECT_EQ(Pressed(Page(dialog)), "pointer h");
  EXPECT_EQ(Page(dialog).GetPlot()->colourDim, kNoDim);
}

TEST_F(GraphPage, AnotherSessionStartsAfresh) {
  auto& profile = GetProfile();
  for (const int dim2 : {-999, 1}) {
    OpenWorkbench dialog(table);
    profile.WriteProfileInt(kSection, "UniScatter_SESSIONID", dialog.GetLevelID());
    profile.WriteProfileInt(kSection, "UniScatter_DIM1", 0);
    profile.WriteProfileInt(kSection, "UniScatter_DIM2", dim2);
    profile.WriteProfileInt(kSection, "UniScatter_ZOOM_IN", 1);
    profile.WriteProfileInt(kSection, "UniScatter_SELECT", 1);
    Open(dialog);
    EXPECT_FALSE(Page(dialog).resetView) << "a second field is not looked at here";
    EXPECT_EQ(Page(dialog).viewChange.dim2, dim2 == 1);
    EXPECT_EQ(Pressed(Page(dialog)), "pointer h") << "of two tools the later stays";
  }
  OpenWorkbench dialog(table);
  profile.WriteProfileInt(kSection, "UniScatter_SESSIONID", dialog.GetLevelID() + 1);
  Open(dialog);
  EXPECT_TRUE(Page(dialog).viewChange.session && Page(dialog).resetView);
}

TEST_F(GraphPage, SettingsAreKeptUnderTheirNames) {
  OpenWorkbench dialog(table);
  dialog.SetMode(CTallyscope::eBivariate);
  dialog.SetBiDim1(0);
  dialog.SetBiDim2(2);
  Open(dialog);
  auto& page = Page(dialog);
  page.GetPlot()->axisRange = {{-1.5, 2, 0}, {1 / 3.0, 4, 1}, 1};
  page.GetPlot()->maps[1] = {AxisMap::kLogarithmic, 0.25};
  dialog.GetSheet()->processed = false;
  dialog.GetSheet()->Process(0);
  const auto& profile = GetProfile();
  const auto text = [&](const char* key) { return profile.GetProfileString(kSection, key, "missing"); };
  const auto number = [&](const char* key) { return profile.GetProfileInt(kSection, key, -77); };
  EXPECT_EQ(text("BiScatter_DATAZOOM_L"), "-1.5");
  EXPECT_EQ(text("BiScatter_DATAZOOM_R"), "0.333333333333333");
  EXPECT_EQ(text("BiScatter_DATAZOOM_F"), "1");
  EXPECT_NE(text("BiScatter_DATAZOOMEXTENT_T"), "missing");
  EXPECT_EQ(number("BiScatter_MAPPING_X"), 0);
  EXPECT_EQ(number("BiScatter_MAPPING_Y"), 1);
  EXPECT_EQ(text("BiScatter_LOGLININT_Y"), "0.25");
  EXPECT_EQ(number("BiScatter_DIM1"), 0);
  EXPECT_EQ(number("BiScatter_DIM2"), 2);
  EXPECT_EQ(number("BiScatter_SESSIONID"), dialog.GetLevelID());
  EXPECT_EQ(number("BiScatter_SELECT"), 1);
  EXPECT_EQ(number("BiScatter_COLOUR_FIELD"), 0);
  dialog.ChooseMode("Univariate");
  dialog.ShowPage("Histogram");
  dialog.ChooseMode("Spatial");
  EXPECT_NE(text("UniHistogramDATAZOOM_L"), "missing") << "no underscore in this one";
  EXPECT_EQ(number("UniHistogramDIM2"), -999);
}

// The tour of the guide, by mouse.
TEST_F(GraphPage, ATourOverHistogramScatterAndMap) {
  OpenWorkbench dialog(table);
  Open(dialog);
  dialog.ShowPage("Histogram");
  {
    auto& page = Page(dialog);
    Press(page, kGraphSelectRect);
    Drag(page, At(page, 4.2, 0.5), At(page, 9, 0.2));
    EXPECT_EQ(Selected(dialog), "00111");
    EXPECT_EQ(dialog.GetControl<QLabel>(kControlSelected)->text(), "3 of 5 selected");
    EXPECT_TRUE(Tool(page, kGraphUndoSelection).isEnabled());
    EXPECT_FALSE(Tool(page, kGraphRedoSelection).isEnabled());
    Press(page, kGraphUndoSelection);
    EXPECT_EQ(Selected(dialog), "00000");
    Press(page, kGraphRedoSelection);
    Press(page, kGraphInvertSelection);
    EXPECT_EQ(Selected(dialog), "11000");
    Press(page, kGraphUndoSelection);
  }
  dialog.ShowPage("Graph");
  EXPECT_EQ(dialog.Cell(3, 1).background, kSelectedColour) << "the spreadsheet shows it";
  EXPECT_NE(dialog.Cell(1, 1).background, kSelectedColour);

  dialog.OnPushData();
  EXPECT_EQ(dialog.GetData()->GetSize(), 3);
  dialog.ChooseMode("Spatial");
  {
    auto& page = Page(dialog);
    Press(page, kGraphSelectPoly);
    for (const auto& [x, y] : {std::pair{35.0, 0.4}, {50.3, 0.4}, {50.3, 2.4}, {35.0, 2.4}}) {
      QTest::mouseClick(&Canvas(page), Qt::LeftButton, {}, At(page, x, y));
    }
    QTest::mouseDClick(&Canvas(page), Qt::LeftButton, {}, At(page, 35, 2.4));
    EXPECT_EQ(Selected(dialog), "011") << "stations 4 and 5 of the table below";
    Press(page, kGraphSelectRect);
    Press(page, kGraphExclude);
    Drag(page, At(page, 45, 1.5), At(page, 55, 0.5));
    EXPECT_EQ(Selected(dialog), "010");
    Press(page, kGraphSelectAll);
    EXPECT_EQ(Selected(dialog), "111");
    Press(page, kGraphClearSelection);
    EXPECT_EQ(Selected(dialog), "000");
  }
  dialog.PopData();
  EXPECT_EQ(Selected(dialog), "00111") << "as it was";
}

TEST_F(GraphPage, APickScrollsTheSpreadsheetAndARestingPointerDoesNot) {
  OpenWorkbench dialog(table);
  dialog.SetMode(CTallyscope::eSpatial);
  Open(dialog);
  auto& page = Page(dialog);
  auto& canvas = Canvas(page);
  MoveTo(canvas, At(page, 20, 4), {});
  EXPECT_NE(Shown(dialog).find("station 2:"), std::string::npos) << Shown(dialog);
  EXPECT_EQ(dialog.GetHoverStation(), -1);
  EXPECT_EQ(page.GetPlot()->hover, -2);
  QTest::mousePress(&canvas, Qt::LeftButton, {}, At(page, 40, 2));
  EXPECT_EQ(dialog.GetHoverStation(), 3);
  EXPECT_NE(Shown(dialog).find("station 4:"), std::string::npos) << Shown(dialog);
  MoveTo(canvas, At(page, 30, 3), Qt::LeftButton);
  EXPECT_EQ(dialog.GetHoverStation(), 2);
  QTest::mouseRelease(&canvas, Qt::LeftButton, {}, At(page, 30, 3));
  EXPECT_EQ(dialog.GetHoverStation(), -1);
  EXPECT_EQ(page.GetPlot()->hover, -2);
}

TEST_F(GraphPage, HoverMarksAndRubberBandsLeaveTheLayerAlone) {
  OpenWorkbench dialog(table);
  dialog.SetMode(CTallyscope::eSpatial);
  Open(dialog);
  auto& page = Page(dialog);
  auto& canvas = Canvas(page);
  const auto paints = [&] {
    canvas.grab();
    return canvas.GetKeptPaints();
  };
  const int before = paints();
  MoveTo(canvas, At(page, 20, 4), {});
  EXPECT_EQ(paints(), before);
  QTest::mousePress(&canvas, Qt::LeftButton, {}, At(page, 20, 4));
  EXPECT_EQ(paints(), before);
  QTest::mouseRelease(&canvas, Qt::LeftButton, {}, At(page, 20, 4));
  Press(page, kGraphSelectRect);
  QTest::mousePress(&canvas, Qt::LeftButton, {}, At(page, 15, 4.5));
  MoveTo(canvas, At(page, 35, 2.5), Qt::LeftButton);
  EXPECT_EQ(paints(), before);
  QTest::mouseRelease(&canvas, Qt::LeftButton, {}, At(page, 35, 2.5));
  EXPECT_EQ(paints(), before + 1) << "a new selection is drawn once";
  dialog.SelectRow(0, 0, 0);
  EXPECT_EQ(paints(), before + 2) << "one made in the spreadsheet too";
}

// A table has one search for the plot and the selection: were they to ask it for different planes, each gesture would
// build it twice.
TEST_F(GraphPage, AGestureBuildsNoSearch) {
  class Search : public CStats_PointSearch {
   public:
    using CStats_PointSearch::CStats_PointSearch;
    void ReadPoints(int first, int count, double* const* coordinates, unsigned char* valid) override {
      ++builds;
      CStats_PointSearch::ReadPoints(first, count, coordinates, valid);
    }
    int builds = 0;  // a few stations are read at once
  };
  class Table : public WrittenTable {
   public:
    using WrittenTable::WrittenTable;
    CStats_PointSearch* GetPointSearch() override { return &search; }
    void DestroyPointSearch() override { search.SetPartitioned(false); }
    Search search{this};
  };
  Table counted(2, {{"x", {10, 20, 30, 40, 50}},
                    {"y", {5, 4, 3, 2, 1}},
                    {"Cu", {3.5, 1.25, 9, 7, 5}},
                    {"Pb", {200, 250, 100, 400, 300}}});
  OpenWorkbench dialog(counted);
  Open(dialog);
  for (const char* mode : {"Bivariate", "Spatial"}) {
    SCOPED_TRACE(mode);
    dialog.ChooseMode(mode);
    auto& page = Page(dialog);
    Canvas(page).grab();
    const int before = counted.search.builds;
    EXPECT_GT(before, 0);
    Press(page, kGraphSelectRect);
    const CRect frame = page.GetPlot()->GetFrame();
    Drag(page, {frame.left + 2, frame.top + 2}, {frame.right - 2, frame.bottom - 2});
    Canvas(page).grab();
    EXPECT_EQ(Selected(dialog), "11111");
    EXPECT_EQ(counted.search.builds, before);
    Press(page, kGraphClearSelection);
  }
}

TEST_F(GraphPage, TheKeyboardWalksSelectsAndZooms) {
  OpenWorkbench dialog(table);
  Open(dialog);
  auto& page = Page(dialog);
  auto& canvas = Canvas(page);
  canvas.setFocus();
  for (const int key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Down, Qt::Key_Left})
    QTest::keyClick(&canvas, Qt::Key(key));
  EXPECT_EQ(page.GetPlot()->hover, 1);
  EXPECT_NE(Shown(dialog).find("station 2:"), std::string::npos);
  EXPECT_EQ(dialog.GetHoverStation(), 1);
  QTest::keyClick(&canvas, Qt::Key_Space);
  EXPECT_EQ(Selected(dialog), "01000");
  QTest::keyClick(&canvas, Qt::Key_End);
  QTest::keyClick(&canvas, Qt::Key_Space);
  EXPECT_EQ(Selected(dialog), "01001");
  QTest::keyClick(&canvas, Qt::Key_Space);
  EXPECT_EQ(Selected(dialog), "01000") << "a second time takes it out";
  // A button's shortcut shows it pressed for a moment before it acts.
  QTest::keyClick(&dialog, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Selected(dialog) == "01001"; }));
  QTest::keyClick(&dialog, Qt::Key_Y, Qt::ControlModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Selected(dialog) == "01000"; }));
  QTest::keyClick(&dialog, Qt::Key_I, Qt::ControlModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Selected(dialog) == "10111"; }));
  QTest::keyClick(&dialog, Qt::Key_A, Qt::ControlModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Selected(dialog) == "11111"; }));
  const double width = page.GetPlot()->GetVisible().max[0] - page.GetPlot()->GetVisible().min[0];
  QTest::keyClick(&canvas, Qt::Key_Plus);
  EXPECT_NEAR(page.GetPlot()->GetVisible().max[0] - page.GetPlot()->GetVisible().min[0], width / 1.5, 1e-9);
  QTest::keyClick(&canvas, Qt::Key_Home);
  const Box visible = page.GetPlot()->GetVisible();
  EXPECT_TRUE(visible.min[0] <= 1 && 1 <= visible.max[0]) << "the view follows the mark";
  QTest::keyClick(&dialog, Qt::Key_0, Qt::ControlModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] {
    return std::abs(page.GetPlot()->GetVisible().max[0] - page.GetPlot()->GetVisible().min[0] - width) < 1e-9;
  }));
  QTest::keyClick(&canvas, Qt::Key_Escape);
  EXPECT_LT(page.GetPlot()->hover, 0);
  EXPECT_TRUE(dialog.isVisible());
}

// From the mark, else from what the pointer is on, else to the first thing in view: on every plot.
TEST_F(GraphPage, ArrowsStartAtTheSamePlaceEverywhere) {
  OpenWorkbench dialog(table);
  Open(dialog);
  const std::pair<const char*, const char*> pages[] = {
      {"Univariate", "Graph"}, {"Univariate", "Histogram"}, {"Bivariate", "Graph"}, {"Spatial", "Graph"}};
  for (const auto& [mode, caption] : pages) {
    SCOPED_TRACE(std::string(mode) + " " + caption);
    dialog.ChooseMode(mode);
    dialog.ShowPage(caption);
    auto& page = Page(dialog);
    auto& canvas = Canvas(page);
    canvas.setFocus();
    auto& plot = *page.GetPlot();
    for (const auto key : {Qt::Key_Right, Qt::Key_Left}) {
      QTest::keyClick(&canvas, Qt::Key_Escape);
      QTest::keyClick(&canvas, key);
      EXPECT_EQ(plot.hover, 0) << "with nothing at hand";
    }
    QTest::keyClick(&canvas, Qt::Key_Right);
    EXPECT_EQ(plot.hover, 1);
    double x = 0;
    double y = 0;
    ASSERT_TRUE(plot.GetPlace(2, x, y));
    QTest::keyClick(&canvas, Qt::Key_Escape);
    MoveTo(canvas, At(page, x, y), {});
    ASSERT_EQ(plot.glance, 2);
    QTest::keyClick(&canvas, Qt::Key_Left);
    EXPECT_EQ(plot.hover, 1) << "from what the pointer rests on";
    QTest::keyClick(&canvas, Qt::Key_Escape);
    const auto at = plot.World2Device(x, y);
    plot.ZoomAbout({at[0], at[1]}, 1e3, 3);
    QTest::keyClick(&canvas, Qt::Key_Right);
    EXPECT_EQ(plot.hover, 2) << "the only one in view";
  }
}

TEST_F(GraphPage, ADoubleClickOnAnAxisOpensItsDialog) {
  auto& modal = ScriptedModal::Install();
  OpenWorkbench dialog(table);
  dialog.SetMode(CTallyscope::eBivariate);
  dialog.SetBiDim1(0);
  dialog.SetBiDim2(1);
  Open(dialog);
  auto& page = Page(dialog);
  auto& canvas = Canvas(page);
  std::vector<std::string> titles;
  modal.onDialog = [&](CDialog& shown) {
    shown.Create();
    titles.push_back(shown.GetWindowText());
    auto& axis = dynamic_cast<CDlg_Axis&>(shown);
    EXPECT_FALSE(axis.GetDlgItem(kAxisBand)->isEnabled());
    axis.from = 1;
    axis.to = 1000;
    axis.mapping = AxisMap::kLogarithmic;
    axis.band = -3;
    axis.UpdateData(false);
    return kIdOk;
  };
  const auto& frame = page.GetPlot()->GetFrame();
  QTest::mouseDClick(&canvas, Qt::LeftButton, {}, QPoint(frame.left - 5, frame.top + 40));
  EXPECT_EQ(titles, std::vector<std::string>{"Pb Axis Properties"});
  EXPECT_NEAR(page.GetPlot()->GetVisible().max[1], 1000, 1e-6);
  EXPECT_EQ(page.GetPlot()->maps[1], (AxisMap{AxisMap::kLogarithmic, 1}));
  EXPECT_EQ(page.GetPlot()->maps[0], AxisMap());
  QTest::mouseDClick(&canvas, Qt::LeftButton, {}, QPoint(frame.left + 40, frame.bottom + 5));
  EXPECT_EQ(titles.size(), 2u);
  dialog.ChooseMode("Spatial");
  const auto& map = Page(dialog).GetPlot()->GetFrame();
  QTest::mouseDClick(&Canvas(Page(dialog)), Qt::LeftButton, {}, QPoint(map.left - 5, map.top + 40));
  EXPECT_EQ(titles.size(), 2u) << "a map's axes are as they are";
}

TEST_F(GraphPage, AnAxisThatRunsBackwardsIsRefused) {
  auto& modal = ScriptedModal::Install();
  CDlg_Axis dialog;
  dialog.from = 5;
  dialog.to = 5;
  modal.onDialog = [](CDialog& shown) {
    shown.Create();
    static_cast<QDialog&>(shown).accept();
    return kIdCancel;
  };
  dialog.DoModal();
  ASSERT_EQ(modal.told.size(), 1u);
  EXPECT_NE(modal.told.front().find("lower to a higher"), CString::npos);
}

TEST_F(GraphPage, TheMenuGivesPictureAndData) {
  const CScratch scratch;
  auto& modal = ScriptedModal::Install();
  OpenWorkbench dialog(table);
  Open(dialog);
  auto& page = Page(dialog);
  const auto run = [&](const char* item) {
    modal.menuIds.clear();
    QTest::mouseClick(&Canvas(page), Qt::RightButton, {}, QPoint(200, 100));
    for (const auto& each : modal.menus.back().GetItems()) {
      if (each.text == item) modal.menuIds = {each.id};
    }
    ASSERT_EQ(modal.menuIds.size(), 1u) << item;
    QTest::mouseClick(&Canvas(page), Qt::RightButton, {}, QPoint(200, 100));
  };
  run("Copy data");
  const auto text = QApplication::clipboard()->text().toStdString();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 6) << text;
  run("Copy picture");
  EXPECT_FALSE(QApplication::clipboard()->image().isNull());
  modal.files = {scratch.Path("trace.svg")};
  run("Save picture...");
  EXPECT_NE(ReadAll(scratch.Path("trace.svg")).find("<svg"), std::string::npos);
  modal.files = {scratch.Path("missing/trace.png")};
  run("Save picture...");
  ASSERT_EQ(modal.told.size(), 1u);
  EXPECT_NE(modal.told.front().find("missing"), CString::npos);
  const auto before = page.GetPlot()->colourTable;
  run("Perceptual colours");
  EXPECT_NE(page.GetPlot()->colourTable, before);
  dialog.ChooseMode("Spatial");
  EXPECT_NE(Page(dialog).GetPlot()->colourTable, before) << "on every page";
}

TEST_F(GraphPage, EveryControlHasANameAndAPlaceForTheKeyboard) {
  OpenWorkbench dialog(table);
  for (const auto mode : {CTallyscope::eUnivariate, CTallyscope::eBivariate, CTallyscope::eSpatial}) {
    dialog.SetMode(mode);
    if (mode == CTallyscope::eUnivariate) Open(dialog);
    dialog.RefreshDialog(false);
    auto& page = Page(dialog);
    for (auto* button : page.findChildren<QToolButton*>()) {
      EXPECT_FALSE(button->accessibleName().isEmpty());
      EXPECT_TRUE(button->focusPolicy() & Qt::TabFocus) << button->accessibleName().toStdString();
      EXPECT_FALSE(button->icon().isNull()) << button->accessibleName().toStdString();
      EXPECT_TRUE(button->toolTip().contains('(')) << "a shortcut: " << button->toolTip().toStdString();
    }
    for (auto* box : page.findChildren<QComboBox*>()) EXPECT_FALSE(box->accessibleName().isEmpty());
    EXPECT_EQ(Canvas(page).focusPolicy(), Qt::StrongFocus);
    EXPECT_FALSE(Canvas(page).accessibleName().isEmpty());
  }
}

// Names come from files: they may hold markup, and hundreds of characters.
TEST_F(GraphPage, OddNamesAreShownAsTheyStand) {
  WrittenTable odd(2, {{"x", {1, 2}}, {"y", {1, 2}}, {"<b>Zn</b> & co", {3, 4}}, {CString(300, 'n'), {5, 6}}});
  OpenWorkbench dialog(odd);
  Open(dialog);
  auto& page = Page(dialog);
  MoveTo(Canvas(page), At(page, 1, 3), {});
  EXPECT_NE(Shown(dialog).find("<b>Zn</b> & co 3"), std::string::npos);
  EXPECT_EQ(dialog.GetControl<QLabel>(kControlStatus)->textFormat(), Qt::PlainText);
  EXPECT_LE(dialog.minimumSizeHint().width(), 800) << "the window can still be made small";
  page.GetControl<QComboBox>(kGraphColour)->setCurrentIndex(3);
  emit page.GetControl<QComboBox>(kGraphColour)->activated(3);
  const auto views = page.findChildren<QWidget*>();
  const bool escaped = std::any_of(views.begin(), views.end(), [](auto* view) {
    return view->toolTip().contains("&lt;b&gt;Zn&lt;/b&gt; &amp; co");
  });
  EXPECT_TRUE(escaped) << "the tool tip of the colours' legend";
}

TEST_F(GraphPage, TheSecondOfTwoQuickClicksZoomsToo) {
  OpenWorkbench dialog(table);
  Open(dialog);
  auto& page = Page(dialog);
  auto& canvas = Canvas(page);
  const auto width = [&] { return page.GetPlot()->GetVisible().max[0] - page.GetPlot()->GetVisible().min[0]; };
  const double before = width();
  Press(page, kGraphZoomIn);
  const auto& frame = page.GetPlot()->GetFrame();
  const QPoint at((frame.left + frame.right) / 2, (frame.top + frame.bottom) / 2);
  QTest::mouseClick(&canvas, Qt::LeftButton, {}, at);
  QTest::mouseDClick(&canvas, Qt::LeftButton, {}, at);
  QTest::mouseRelease(&canvas, Qt::LeftButton, {}, at);
  EXPECT_NEAR(width(), before / 4, 1e-9);
}

// Dark paper stays dark between the marks, and what is drawn is seen on it.
TEST_F(GraphPage, FollowsADarkPalette) {
  const QPalette light = QApplication::palette();
  QPalette dark = light;
  dark.setColor(QPalette::Base, QColor(27, 30, 32));
  dark.setColor(QPalette::Text, QColor(252, 252, 252));
  dark.setColor(QPalette::Window, QColor(49, 54, 59));
  dark.setColor(QPalette::WindowText, QColor(252, 252, 252));
  OpenWorkbench dialog(table);
  dialog.SetMode(CTallyscope::eSpatial);
  Open(dialog);
  QApplication::setPalette(dark);
  QApplication::processEvents();
  auto& page = Page(dialog);
  const QImage image = Canvas(page).grab().toImage();
  const double ratio = image.devicePixelRatio();
  const auto colourAt = [&](QPointF at) {
    return image.pixelColor(int(std::lround(at.x() * ratio)), int(std::lround(at.y() * ratio)));
  };
  const auto mark = page.GetPlot()->World2Device(30, 3);
  EXPECT_EQ(colourAt({mark[0], mark[1]}), QColor(252, 252, 252)) << "a mark";
  EXPECT_EQ(colourAt({2, 2}), QColor(27, 30, 32)) << "paper";
  QApplication::setPalette(light);
}

}  // namespace
}  // namespace tallyscope
