// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include <QRect>
#include <QSize>

namespace tallyscope {

// Where the cells of a grid lie in its view, in pixels. Row 0 and column 0 are fixed at the top and the left. Rows
// scroll by whole rows, so that the last of two thousand million is reached exactly; columns scroll by pixels. Nothing
// is kept per row.
class GridGeometry {
 public:
  void SetRows(int rows);  // fixed row included
  void SetHeights(int heading, int row);
  void SetWidths(const std::vector<int>& widths);  // fixed column included
  void SetView(QSize size);
  // Both are held within their limits, now and when something else changes.
  void ScrollTo(std::int64_t firstRow, std::int64_t left);

  int Rows() const { return rows_; }
  int Columns() const { return static_cast<int>(edges_.size()) - 1; }
  QSize View() const { return view_; }
  int RowHeight() const { return rowHeight_; }
  int HeadingHeight() const { return rows_ > 0 ? headingHeight_ : 0; }
  int FixedWidth() const { return Columns() > 0 ? Width(0) : 0; }
  int Width(int column) const { return static_cast<int>(edges_[column + 1] - edges_[column]); }

  int FirstRow() const { return firstRow_; }   // the first that scrolls, at least 1
  std::int64_t Left() const { return left_; }  // pixels of columns that are scrolled out
  int FullRows() const;                        // whole rows that the view has room for, at least 1
  int LastFirstRow() const;                    // FirstRow() with the last row whole in view
  std::int64_t LastLeft() const;               // Left() with the last column whole in view
  int LastRow() const;                         // the last that shows, in part or whole; 0 when none does
  int FirstColumn() const;                     // the first that scrolls and shows
  int LastColumn() const;                      // 0 when none does

  // Of row 0, and of rows from FirstRow() on.
  int Top(int row) const;
  // The left edge; below FixedWidth() when the column is partly or wholly scrolled out.
  std::int64_t ColumnLeft(int column) const;
  QRect Body() const;                        // the part that scrolls
  QRect Cell(int row, int column) const;     // the whole cell, of rows and columns that show
  QRect Visible(int row, int column) const;  // the part of it in view; empty when there is none
  int RowAt(int y) const;                    // -1 where there is none
  int ColumnAt(int x) const;                 // -1 where there is none
  int BorderAt(int x, int slack) const;      // the column whose right border is within `slack` of x, else -1

  // Where to scroll so that a row or column shows, with the least move.
  std::int64_t FirstRowToShow(int row) const;
  std::int64_t LeftToShow(int column) const;

 private:
  int rows_ = 0;
  int headingHeight_ = 1;
  int rowHeight_ = 1;
  std::vector<std::int64_t> edges_{0};  // left edge of each column and right edge of the last, unscrolled
  QSize view_{0, 0};
  int firstRow_ = 1;
  std::int64_t left_ = 0;
};

}  // namespace tallyscope
