// SPDX-License-Identifier: MIT
#include "gridctrl/GridGeometry.h"

#include <algorithm>
#include <cstdlib>

namespace tallyscope {

void GridGeometry::SetRows(int rows) {
  rows_ = std::max(rows, 0);
  ScrollTo(firstRow_, left_);
}

void GridGeometry::SetHeights(int heading, int row) {
  headingHeight_ = std::max(heading, 1);
  rowHeight_ = std::max(row, 1);
  ScrollTo(firstRow_, left_);
}

void GridGeometry::SetWidths(const std::vector<int>& widths) {
  edges_.assign(1, 0);
  for (const int width : widths) edges_.push_back(edges_.back() + std::max(width, 0));
  ScrollTo(firstRow_, left_);
}

void GridGeometry::SetView(QSize size) {
  view_ = size;
  ScrollTo(firstRow_, left_);
}

void GridGeometry::ScrollTo(std::int64_t firstRow, std::int64_t left) {
  firstRow_ = static_cast<int>(std::clamp<std::int64_t>(firstRow, 1, LastFirstRow()));
  left_ = std::clamp<std::int64_t>(left, 0, LastLeft());
}

int GridGeometry::FullRows() const {
  return std::max((view_.height() - HeadingHeight()) / rowHeight_, 1);
}

int GridGeometry::LastFirstRow() const {
  return std::max(rows_ - FullRows(), 1);
}

std::int64_t GridGeometry::LastLeft() const {
  return std::max<std::int64_t>(edges_.back() - view_.width(), 0);
}

int GridGeometry::LastRow() const {
  const int room = view_.height() - HeadingHeight();
  if (room <= 0 || rows_ < 2) return 0;
  const std::int64_t shown = (room + rowHeight_ - 1) / rowHeight_;
  return static_cast<int>(std::min<std::int64_t>(firstRow_ + shown - 1, rows_ - 1));
}

int GridGeometry::FirstColumn() const {
  const auto past = std::upper_bound(edges_.begin(), edges_.end(), left_ + FixedWidth());
  return std::max(static_cast<int>(past - edges_.begin()) - 1, 1);
}

int GridGeometry::LastColumn() const {
  if (Columns() < 2 || view_.width() <= FixedWidth()) return 0;
  const auto end = std::lower_bound(edges_.begin(), edges_.end(), left_ + view_.width());
  return std::min(static_cast<int>(end - edges_.begin()) - 1, Columns() - 1);
}

int GridGeometry::Top(int row) const {
  return row == 0 ? 0 : static_cast<int>(HeadingHeight() + std::int64_t{row - firstRow_} * rowHeight_);
}

std::int64_t GridGeometry::ColumnLeft(int column) const {
  return column == 0 ? 0 : edges_[column] - left_;
}

QRect GridGeometry::Body() const {
  return QRect(QPoint(FixedWidth(), HeadingHeight()), QPoint(view_.width() - 1, view_.height() - 1));
}

QRect GridGeometry::Cell(int row, int column) const {
  const int height = row == 0 ? headingHeight_ : rowHeight_;
  return QRect(static_cast<int>(ColumnLeft(column)), Top(row), Width(column), height);
}

QRect GridGeometry::Visible(int row, int column) const {
  if (row < 0 || row >= rows_ || column < 0 || column >= Columns()) return {};
  if (row > 0 && (row < firstRow_ || row > LastRow())) return {};
  if (column > 0 && (column < FirstColumn() || column > LastColumn())) return {};
  QRect part(QPoint(0, 0), view_);
  if (row > 0) part.setTop(HeadingHeight());
  if (column > 0) part.setLeft(FixedWidth());
  return Cell(row, column) & part;
}

int GridGeometry::RowAt(int y) const {
  if (y < 0 || y >= view_.height() || rows_ == 0) return -1;
  if (y < headingHeight_) return 0;
  const std::int64_t row = std::int64_t{firstRow_} + (y - headingHeight_) / rowHeight_;
  return row < rows_ ? static_cast<int>(row) : -1;
}

int GridGeometry::ColumnAt(int x) const {
  if (x < 0 || x >= view_.width() || Columns() == 0) return -1;
  if (x < FixedWidth()) return 0;
  const auto past = std::upper_bound(edges_.begin(), edges_.end(), x + left_);
  return past != edges_.end() ? static_cast<int>(past - edges_.begin()) - 1 : -1;
}

int GridGeometry::BorderAt(int x, int slack) const {
  for (int column = LastColumn(); column >= FirstColumn(); --column) {
    const std::int64_t border = ColumnLeft(column) + Width(column);
    if (border > FixedWidth() && std::abs(border - x) <= slack) return column;
  }
  return Columns() > 0 && std::abs(FixedWidth() - x) <= slack ? 0 : -1;
}

std::int64_t GridGeometry::FirstRowToShow(int row) const {
  if (row < 1) return firstRow_;
  return std::clamp<std::int64_t>(firstRow_, std::int64_t{row} - FullRows() + 1, row);
}

std::int64_t GridGeometry::LeftToShow(int column) const {
  if (column < 1 || column >= Columns()) return left_;
  const std::int64_t most = edges_[column] - FixedWidth();
  const std::int64_t least = edges_[column + 1] - view_.width();
  return least < most ? std::clamp(left_, least, most) : most;
}

}  // namespace tallyscope
