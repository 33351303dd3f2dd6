// SPDX-License-Identifier: MIT
#include "gridctrl/GridCtrl.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <QClipboard>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>

#include "tests/gridctrl/GridTesting.h"

namespace tallyscope {
namespace {

constexpr Qt::KeyboardModifiers kControl = Qt::ControlModifier;

bool Contains(const std::vector<CCellID>& cells, CCellID cell) {
  return std::find(cells.begin(), cells.end(), cell) != cells.end();
}

TEST(Grid, PaintingAsksForTheCellsInViewAndNoOthers) {
  ShownGrid shown(50'000'001, 31);
  const auto& asked = shown.Paint();
  for (const CCellID cell : asked) {
    EXPECT_FALSE(shown.grid.GetCellRect(cell.row, cell.col).isEmpty()) << cell.row << ", " << cell.col;
    EXPECT_EQ(std::count(asked.begin(), asked.end(), cell), 1) << cell.row << ", " << cell.col;
  }
  for (const CCellID cell : {CCellID{0, 0}, {0, 1}, {1, 0}, {1, 1}}) EXPECT_TRUE(Contains(asked, cell));

  shown.grid.EnsureVisible(50'000'000, 30);
  shown.Paint();
  for (const CCellID cell : {CCellID{0, 0}, {0, 30}, {50'000'000, 0}, {50'000'000, 30}}) {
    EXPECT_TRUE(Contains(asked, cell)) << cell.row << ", " << cell.col;
  }
  EXPECT_FALSE(Contains(asked, {1, 1}));
}

TEST(Grid, AnExposedStripAsksForItsCellsOnly) {
  ShownGrid shown(1000, 10);
  shown.owner.asked.clear();
  shown.grid.viewport()->grab(shown.grid.GetCellRect(3, 2));
  EXPECT_EQ(shown.owner.asked, (std::vector<CCellID>{{3, 2}}));
}

TEST(Grid, CostsNoMemoryPerRow) {
  ShownGrid shown(2, 31);
  const auto before = mallinfo2().uordblks;
  shown.grid.SetRowCount(2'000'000'001);
  shown.grid.AutoSizeColumns();
  shown.grid.EnsureVisible(1'000'000'000, 1);
  shown.Paint();
  EXPECT_LT(static_cast<double>(mallinfo2().uordblks) - static_cast<double>(before), 1e6);
}

TEST(Grid, BarKeyAndWheelReachTheLastRow) {
  for (const int rows : {50'000'001, 2'000'000'001}) {
    ShownGrid shown(rows, 4);
    auto* bar = shown.grid.verticalScrollBar();
    const auto showsLast = [&] {
      const QRect last = shown.grid.GetCellRect(rows - 1, 1);
      return last.height() == shown.grid.GetCellRect(rows - 2, 1).height() && shown.grid.GetCellRect(1, 1).isEmpty();
    };
    bar->setValue(bar->maximum());
    EXPECT_TRUE(showsLast());
    bar->setValue(0);
    EXPECT_EQ(shown.grid.GetTopLeft().row, 1);
    shown.Press(Qt::Key_End, kControl);
    EXPECT_TRUE(showsLast());
    EXPECT_EQ(shown.grid.GetCurrentCell(), (CCellID{rows - 1, 3}));
    shown.Press(Qt::Key_PageDown);
    EXPECT_EQ(shown.grid.GetCurrentCell().row, rows - 1) << "no wrap";
    shown.grid.EnsureVisible(rows - 20, 1);
    for (int i = 0; i < 20; ++i) shown.Wheel({0, -120});
    EXPECT_TRUE(showsLast());
    EXPECT_EQ(bar->value(), bar->maximum());
  }
}

TEST(Grid, KeysMoveTheCurrentCell) {
  ShownGrid shown(101, 6);
  shown.Press(Qt::Key_Down);
  EXPECT_EQ(shown.grid.GetCurrentCell(), (CCellID{1, 1})) << "the first key shows where one is";
  const int page = shown.grid.GetVisibleRowCount() - 1;
  const struct {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    CCellID cell;
  } steps[] = {
      {Qt::Key_Down, {}, {2, 1}},       {Qt::Key_Right, {}, {2, 2}},        {Qt::Key_Up, {}, {1, 2}},
      {Qt::Key_Up, {}, {1, 2}},         {Qt::Key_Left, {}, {1, 1}},         {Qt::Key_Left, {}, {1, 1}},
      {Qt::Key_End, {}, {1, 5}},        {Qt::Key_Home, {}, {1, 1}},         {Qt::Key_PageDown, {}, {1 + page, 1}},
      {Qt::Key_PageUp, {}, {1, 1}},     {Qt::Key_Down, kControl, {100, 1}}, {Qt::Key_Right, kControl, {100, 5}},
      {Qt::Key_Up, kControl, {1, 5}},   {Qt::Key_Left, kControl, {1, 1}},   {Qt::Key_End, kControl, {100, 5}},
      {Qt::Key_Home, kControl, {1, 1}},
  };
  for (const auto& step : steps) {
    shown.Press(step.key, step.modifiers);
    EXPECT_EQ(shown.grid.GetCurrentCell(), step.cell) << step.key;
    EXPECT_EQ(shown.grid.GetCellRect(step.cell.row, step.cell.col).height(),
              shown.grid.GetCellRect(100, 0).isEmpty() ? shown.grid.GetCellRect(1, 0).height()
                                                       : shown.grid.GetCellRect(100, 0).height())
        << "whole in view";
  }
  shown.grid.SetRowCount(1);
  for (const auto& step : steps) shown.Press(step.key, step.modifiers);
  EXPECT_EQ(shown.grid.GetCurrentCell(), CCellID()) << "an empty table has none";
}

TEST(Grid, SpaceClicksTheRowNumberOfTheCurrentCell) {
  ShownGrid shown(101, 6);
  shown.grid.SetCurrentCell(5, 2);
  shown.Press(Qt::Key_Space);
  EXPECT_EQ(shown.grid.rowClicks, std::vector<int>{5});
}

TEST(Grid, TheWheelGathersSmallTurns) {
  ShownGrid shown(1001, 40);
  const auto row = [&] { return shown.grid.GetTopLeft().row; };
  const auto left = [&] { return shown.grid.horizontalScrollBar()->value(); };
  const int lines = QApplication::wheelScrollLines();
  shown.Wheel({0, -120});
  EXPECT_EQ(row(), 1 + lines);
  for (int i = 0; i < 8; ++i) shown.Wheel({0, -15});
  EXPECT_EQ(row(), 1 + 2 * lines) << "eight eighths of a notch";
  shown.Wheel({0, 240});
  EXPECT_EQ(row(), 1);
  shown.Wheel({0, -39});
  shown.Wheel({0, 1});
  shown.Wheel({0, -39});
  EXPECT_EQ(row(), 1) << "a turn back drops what had gathered";

  const int height = shown.grid.GetCellRect(1, 1).height();
  for (int i = 0; i < height; ++i) shown.Wheel({0, -2}, {0, -1});
  EXPECT_EQ(row(), 2) << "a trackpad tells pixels";
  shown.Wheel({0, -120}, {}, Qt::ShiftModifier);
  EXPECT_EQ(row(), 2);
  EXPECT_EQ(left(), lines * shown.grid.horizontalScrollBar()->singleStep());
  shown.Wheel({120, 0});
  EXPECT_EQ(left(), 0);
  shown.Wheel({}, {-37, 0});
  EXPECT_EQ(left(), 37) << "columns scroll by pixels";
}

TEST(Grid, ClicksTellTheirCellAndTheFixedOnesTheirOwn) {
  ShownGrid shown(101, 4);
  shown.Click(2, 3);
  shown.Click(0, 2);
  shown.Click(4, 0);
  shown.Click(0, 0);
  shown.Click(3, 1, Qt::RightButton);
  EXPECT_EQ(shown.owner.told, (std::vector<GridOwner::Told>{{kNotifyClick, 2, 3},
                                                            {kNotifyClick, 0, 2},
                                                            {kNotifyClick, 4, 0},
                                                            {kNotifyClick, 0, 0},
                                                            {kNotifyRClick, 3, 1}}));
  EXPECT_EQ(shown.grid.rowClicks, std::vector<int>{4});
  EXPECT_EQ(shown.grid.columnClicks, std::vector<int>{2});
  EXPECT_EQ(shown.grid.GetCurrentCell(), (CCellID{3, 1})) << "the menu works on what it was opened on";

  shown.owner.told.clear();
  QTest::mousePress(shown.grid.viewport(), Qt::LeftButton, {}, shown.Middle(2, 0));
  QTest::mouseRelease(shown.grid.viewport(), Qt::LeftButton, {}, shown.Middle(5, 0));
  EXPECT_TRUE(shown.owner.told.empty()) << "let go elsewhere";

  shown.Click(0, 3);
  QTest::mouseDClick(shown.grid.viewport(), Qt::LeftButton, {}, shown.Middle(0, 3));
  const std::vector<GridOwner::Told> expected{{kNotifyClick, 0, 3}, {kNotifyDblClick, 0, 3}};
  EXPECT_EQ(shown.owner.told, expected);
}

TEST(Grid, TheMenuKeyStandsForARightClick) {
  ShownGrid shown(101, 4);
  shown.grid.SetCurrentCell(7, 2);
  QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
  QApplication::sendEvent(&shown.grid, &key);
  QContextMenuEvent mouse(QContextMenuEvent::Mouse, QPoint(1, 1), QPoint(1, 1));
  QApplication::sendEvent(shown.grid.viewport(), &mouse);
  EXPECT_EQ(shown.owner.told, (std::vector<GridOwner::Told>{{kNotifyRClick, 7, 2}})) << "once with the mouse, too";
}

TEST(Grid, HeadingBordersAreDragged) {
  ShownGrid shown(101, 4);
  auto* view = shown.grid.viewport();
  const QRect heading = shown.grid.GetCellRect(0, 2);
  const QPoint border(heading.right() + 1, heading.center().y());
  const auto move = [&](QPoint to, Qt::MouseButtons buttons) {
    QMouseEvent event(QEvent::MouseMove, to, view->mapToGlobal(to), Qt::NoButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(view, &event);
  };
  move(border, Qt::NoButton);
  EXPECT_EQ(view->cursor().shape(), Qt::SplitHCursor);
  move(heading.center(), Qt::NoButton);
  EXPECT_EQ(view->cursor().shape(), Qt::ArrowCursor);

  QTest::mousePress(view, Qt::LeftButton, {}, border);
  move(border - QPoint(1000, 0), Qt::LeftButton);
  EXPECT_GT(shown.grid.GetCellRect(0, 2).width(), 0) << "it can still be seen and taken";
  EXPECT_LT(shown.grid.GetCellRect(0, 2).width(), heading.width());
  shown.Press(Qt::Key_Escape);
  EXPECT_EQ(shown.grid.GetColumnWidth(2), CGridCtrl::kDefaultWidth) << "Escape gives up";
  QTest::mouseRelease(view, Qt::LeftButton, {}, border);

  QTest::mousePress(view, Qt::LeftButton, {}, border);
  move(border + QPoint(30, 0), Qt::LeftButton);
  QTest::mouseRelease(view, Qt::LeftButton, {}, border + QPoint(30, 0));
  EXPECT_NEAR(shown.grid.GetCellRect(0, 2).width(), heading.width() + 30, 2) << "to a unit";
  EXPECT_TRUE(shown.owner.told.empty()) << "a drag is no click";
  EXPECT_TRUE(shown.grid.columnClicks.empty());
}

TEST(Grid, ADoubleClickOnABorderFitsTheColumn) {
  ShownGrid shown(11, 4);
  shown.owner.fill = [](GV_DISPINFO& info) { info.text = info.col == 2 ? std::string(30, 'm') : "1"; };
  const QRect heading = shown.grid.GetCellRect(0, 2);
  QTest::mouseDClick(shown.grid.viewport(), Qt::LeftButton, {}, QPoint(heading.right(), heading.center().y()));
  EXPECT_GT(shown.grid.GetCellRect(0, 2).width(), shown.grid.fontMetrics().horizontalAdvance(QString(30, 'm')));
  EXPECT_EQ(shown.grid.GetColumnWidth(1), CGridCtrl::kDefaultWidth);
  EXPECT_TRUE(std::none_of(shown.owner.told.begin(), shown.owner.told.end(),
                           [](const auto& each) { return each.code == kNotifyDblClick; }));
}

TEST(Grid, AutoSizeFitsHeadingsDataOrBoth) {
  ShownGrid shown(1001, 3);
  shown.owner.fill = [](GV_DISPINFO& info) {
    const bool longest = info.row == (info.col == 1 ? 0 : 1000);
    info.text = longest ? std::string(24, '8') : "8";
  };
  const auto widths = [&](int mode) {
    shown.grid.SetAutoSizeMode(mode);
    shown.grid.AutoSizeColumns();
    return std::pair{shown.grid.GetColumnWidth(1), shown.grid.GetColumnWidth(2)};
  };
  const auto headings = widths(1), data = widths(2), both = widths(3);
  EXPECT_GT(headings.first, headings.second);
  EXPECT_LT(data.first, data.second) << "the last row is part of the sample";
  EXPECT_EQ(both, (std::pair{headings.first, data.second}));
  const int text = shown.grid.fontMetrics().horizontalAdvance(QString(24, '8'));
  EXPECT_GT(shown.grid.GetCellRect(0, 2).width(), text) << "nothing is cut";
  shown.owner.fill = [](GV_DISPINFO& info) { info.text = std::string(1'000'000, 'W'); };
  widths(3);
  EXPECT_LT(shown.grid.GetCellRect(0, 1).width(), 2000) << "one long text does not fill the screen";
}

TEST(Grid, AutoSizeAsksForABoundedSample) {
  for (const int columns : {5, 1000, 30000}) {
    ShownGrid shown(2'000'000'001, columns + 1);
    shown.owner.asked.clear();
    shown.grid.AutoSizeColumns();
    EXPECT_LE(shown.owner.asked.size(), std::max<std::size_t>(30'000, 2 * static_cast<std::size_t>(columns)));
    EXPECT_LE(shown.owner.asked.size(), static_cast<std::size_t>(columns) * 300);
    EXPECT_TRUE(Contains(shown.owner.asked, {0, columns}));
  }
}

TEST(Grid, RowNumbersAlwaysFit) {
  ShownGrid shown(11, 3);
  for (const int rows : {11, 100'001, 2'000'000'001}) {
    shown.grid.SetRowCount(rows);
    const int needed = shown.grid.fontMetrics().horizontalAdvance(QString::number(rows - 1));
    EXPECT_GE(shown.grid.GetCellRect(0, 0).width(), needed + 2);
  }
}

TEST(Grid, CopiesTheCurrentCell) {
  ShownGrid shown(11, 3);
  QApplication::clipboard()->setText("before");
  shown.Press(Qt::Key_C, kControl);
  EXPECT_EQ(QApplication::clipboard()->text(), "before") << "no current cell";
  shown.grid.SetCurrentCell(4, 2);
  shown.Press(Qt::Key_C, kControl);
  EXPECT_EQ(QApplication::clipboard()->text(), "4:2");
}

TEST(Grid, AScreenReaderHearsTheCurrentCell) {
  ShownGrid shown(11, 3);
  shown.grid.SetCurrentCell(4, 2);
  EXPECT_EQ(shown.grid.accessibleDescription(), "row 4, 0:2: 4:2");
}

TEST(Grid, ATipShowsTheWholeTextOfACutCell) {
  ShownGrid shown(11, 3);
  shown.owner.fill = [](GV_DISPINFO& info) { info.text = info.col == 1 ? "a <b>long</b> heading with more" : "1"; };
  const auto hover = [&](int row, int col) {
    const QPoint at = shown.Middle(row, col);
    QHelpEvent help(QEvent::ToolTip, at, shown.grid.viewport()->mapToGlobal(at));
    QApplication::sendEvent(shown.grid.viewport(), &help);
  };
  hover(0, 1);
  EXPECT_TRUE(QToolTip::text().contains("a &lt;b&gt;long&lt;/b&gt; heading with more")) << "text is no markup";
  hover(0, 2);
  QTRY_VERIFY(!QToolTip::isVisible());
}

TEST(Grid, KeepsItsCountsInRange) {
  ShownGrid shown(11, 3);
  shown.grid.SetCurrentCell(10, 2);
  shown.grid.EnsureVisible(1'000'000, 1'000'000);
  shown.grid.EnsureVisible(-5, -5);
  shown.grid.SetRowCount(5);
  EXPECT_EQ(shown.grid.GetCurrentCell(), CCellID()) << "its row has gone";
  shown.grid.SetColumnWidth(17, 10);
  EXPECT_EQ(shown.grid.GetColumnWidth(17), 0);
  EXPECT_EQ(shown.grid.GetColumnWidth(-1), 0);
  shown.grid.SetRowCount(-4);
  shown.grid.SetColumnCount(-4);
  EXPECT_EQ(shown.grid.GetRowCount(), 0);
  EXPECT_EQ(shown.grid.GetColumnCount(), 0);
  shown.Paint();
  EXPECT_TRUE(shown.owner.asked.empty());
  shown.grid.SetNotifyTarget(nullptr, 0);
  shown.grid.SetRowCount(10);
  shown.grid.SetColumnCount(10);
  shown.Paint();
  shown.Click(1, 1);
}

TEST(Grid, AWindowThatGrowsAtTheEndShowsMoreRowsAbove) {
  ShownGrid shown(1001, 3);
  shown.grid.EnsureVisible(1000, 1);
  const int first = shown.grid.GetTopLeft().row;
  shown.grid.resize(600, 500);
  EXPECT_LT(shown.grid.GetTopLeft().row, first);
  EXPECT_FALSE(shown.grid.GetCellRect(1000, 1).isEmpty());
  EXPECT_EQ(shown.grid.verticalScrollBar()->value(), shown.grid.verticalScrollBar()->maximum());
}

}  // namespace
}  // namespace tallyscope
