// SPDX-License-Identifier: MIT
#include "gridctrl/GridGeometry.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>

namespace tallyscope {
namespace {

GridGeometry Made(int rows, const std::vector<int>& widths, QSize view = QSize(300, 130)) {
  GridGeometry geometry;
  geometry.SetHeights(30, 20);
  geometry.SetRows(rows);
  geometry.SetWidths(widths);
  geometry.SetView(view);
  return geometry;
}

TEST(GridGeometry, TheLastRowIsReachedExactlyHoweverManyThereAre) {
  for (const int rows : {7, 1000, 50'000'001, 2'000'000'001, INT_MAX}) {
    auto geometry = Made(rows, {50, 100});
    EXPECT_EQ(geometry.FullRows(), 5);
    geometry.ScrollTo(std::int64_t{rows} * 2, 0);
    EXPECT_EQ(geometry.FirstRow(), rows - 5);
    EXPECT_EQ(geometry.LastRow(), rows - 1);
    EXPECT_EQ(geometry.Top(rows - 1), 110);
    EXPECT_EQ(geometry.RowAt(129), rows - 1);
    geometry.SetView(QSize(300, 141));
    EXPECT_EQ(geometry.LastRow(), rows - 1) << "the view grew at the end";
    EXPECT_EQ(geometry.RowAt(140), -1) << "below the last row";
  }
}

TEST(GridGeometry, FewRowsAndTinyViewsStayInRange) {
  auto few = Made(3, {50, 100});
  EXPECT_EQ(few.LastFirstRow(), 1);
  EXPECT_EQ(few.LastRow(), 2);
  EXPECT_EQ(few.RowAt(75), -1);
  EXPECT_EQ(few.ColumnAt(150), -1);
  auto none = Made(0, {});
  EXPECT_EQ(none.RowAt(5), -1);
  EXPECT_EQ(none.ColumnAt(5), -1);
  EXPECT_EQ(none.LastRow(), 0);
  EXPECT_TRUE(none.Visible(0, 0).isEmpty());
  auto flat = Made(100, {50, 100}, QSize(40, 25));
  EXPECT_EQ(flat.LastRow(), 0) << "the heading fills the view";
  EXPECT_EQ(flat.LastColumn(), 0) << "so do the row numbers";
  EXPECT_EQ(flat.FullRows(), 1);
  flat.ScrollTo(1000, 1000);
  EXPECT_EQ(flat.FirstRow(), 99) << "each row can still be reached";
}

TEST(GridGeometry, ColumnsScrollUnderTheFixedOne) {
  auto geometry = Made(10, {50, 100, 100, 100, 100});
  EXPECT_EQ(geometry.LastLeft(), 150);
  geometry.ScrollTo(1, 120);
  EXPECT_EQ(geometry.FirstColumn(), 2);
  EXPECT_EQ(geometry.ColumnLeft(2), 30);
  EXPECT_EQ(geometry.ColumnAt(40), 0);
  EXPECT_EQ(geometry.ColumnAt(50), 2);
  EXPECT_EQ(geometry.Visible(1, 2), QRect(50, 30, 80, 20)) << "the part that the fixed column leaves";
  EXPECT_EQ(geometry.Visible(0, 0), QRect(0, 0, 50, 30));
  EXPECT_TRUE(geometry.Visible(1, 1).isEmpty());
  EXPECT_TRUE(geometry.Visible(7, 2).isEmpty());
  geometry.ScrollTo(1, 100);
  EXPECT_EQ(geometry.FirstColumn(), 2) << "a column that ends at the fixed one is out";
  geometry.SetWidths({50, 10});
  EXPECT_EQ(geometry.Left(), 0) << "nothing left to scroll";
}

TEST(GridGeometry, BordersAreTakenFromBothSides) {
  auto geometry = Made(10, {50, 100, 100, 100});
  EXPECT_EQ(geometry.BorderAt(147, 4), 1);
  EXPECT_EQ(geometry.BorderAt(153, 4), 1);
  EXPECT_EQ(geometry.BorderAt(100, 4), -1);
  EXPECT_EQ(geometry.BorderAt(48, 4), 0);
  geometry.ScrollTo(1, 50);
  EXPECT_EQ(geometry.BorderAt(300, 4), 3);
  geometry.SetWidths({50, 100, 0, 100});
  geometry.ScrollTo(1, 0);
  EXPECT_EQ(geometry.BorderAt(150, 4), 2) << "a closed column can be opened again";
}

// Whatever shows lies where its row and column are found, and scrolling to show brings it into view.
TEST(GridGeometry, PlacesAndFindingAgree) {
  std::mt19937 random(7);
  const auto pick = [&](int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); };
  for (int round = 0; round < 300; ++round) {
    std::vector<int> widths(static_cast<std::size_t>(pick(1, 30)));
    for (int& width : widths) width = pick(1, 120);
    auto geometry = Made(pick(2, 1 << 20), widths, QSize(pick(1, 500), pick(1, 400)));
    geometry.ScrollTo(pick(1, geometry.Rows()), pick(0, 3000));
    for (int i = 0; i < 20; ++i) {
      const int row = pick(0, std::min(geometry.Rows() - 1, geometry.LastRow() + 2));
      const int column = pick(0, geometry.Columns() - 1);
      const QRect seen = geometry.Visible(row, column);
      if (seen.isEmpty()) continue;
      for (const QPoint corner : {seen.topLeft(), seen.bottomRight()}) {
        ASSERT_EQ(geometry.RowAt(corner.y()), row);
        ASSERT_EQ(geometry.ColumnAt(corner.x()), column);
      }
    }
    const int row = pick(1, geometry.Rows() - 1);
    const int column = pick(0, geometry.Columns() - 1);
    const auto before = geometry;
    geometry.ScrollTo(geometry.FirstRowToShow(row), geometry.LeftToShow(column));
    ASSERT_LE(geometry.FirstRow(), row);
    ASSERT_GT(geometry.FirstRow() + geometry.FullRows(), row);
    const bool wide = column == 0 || geometry.View().width() > geometry.FixedWidth();
    const bool tall = geometry.View().height() > geometry.HeadingHeight();
    ASSERT_EQ(geometry.Visible(row, column).isEmpty(), !wide || !tall) << round;
    if (before.Visible(row, column) == before.Cell(row, column)) {
      ASSERT_EQ(geometry.FirstRow(), before.FirstRow()) << "no move for what shows";
      ASSERT_EQ(geometry.Left(), before.Left());
    }
  }
}

}  // namespace
}  // namespace tallyscope
