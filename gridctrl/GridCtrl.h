// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QAbstractScrollArea>

#include "gridctrl/GridCell.h"
#include "gridctrl/GridGeometry.h"

namespace tallyscope {

class GridText;
struct GridScene;

// A grid that holds no cell: it asks its parent window (SetNotifyTarget) for each cell that it paints. Row 0 and column
// 0 are fixed: they stay while the rest scrolls. It costs the same for ten rows and for two thousand million.
//
// The user drags the border of a heading to set a column's width, and double clicks it to fit the column. Keys: arrows,
// with Control to the ends; Page Up and Down; Home and End for the row, with Control for the grid; Space for a click on
// the row's number; Control+C copies the current cell's text; the menu key stands for a right click.
class CGridCtrl : public QAbstractScrollArea, public CWnd {
 public:
  // Column widths are told in units of a pixel at the usual size of the font; they grow with it.
  static constexpr int kDefaultWidth = 64;

  explicit CGridCtrl(QWidget* parent = nullptr);
  ~CGridCtrl() override;

  QWidget* GetWidget() override { return this; }

  // Who is asked and told, and the control id it is told as sender. The target outlives the grid, or is taken off by
  // null.
  void SetNotifyTarget(CWnd* target, int id);

  // A new row count fits column 0 to the largest row number.
  void SetRowCount(int rows);  // fixed row included
  void SetColumnCount(int columns);
  int GetRowCount() const { return geometry_.Rows(); }
  int GetColumnCount() const { return static_cast<int>(widths_.size()); }

  void SetSortColumn(int column);  // -1: no arrow
  int GetSortColumn() const { return sortColumn_; }
  void SetSortAscending(bool ascending);
  bool GetSortAscending() const { return sortAscending_; }

  // What AutoSizeColumns fits to: 1 headings, 2 data, 3 both. Data is judged by rows in view and a sample of the
  // others, at most some hundred cells of a column and some ten thousand in all.
  void SetAutoSizeMode(int mode) { autoSizeMode_ = mode; }
  int GetAutoSizeMode() const { return autoSizeMode_; }
  void AutoSizeColumns();
  void AutoSizeColumn(int column);
  void SetColumnWidth(int column, int width);
  int GetColumnWidth(int column) const;  // 0 for a column that is not there
  // All at once, from column 0 on: a hundred thousand one by one take minutes. Columns beyond the list stay.
  void SetColumnWidths(const std::vector<int>& widths);
  const std::vector<int>& GetColumnWidths() const { return widths_; }

  void EnsureVisible(int row, int col);
  QRect GetCellRect(int row, int col) const;     // the part of the cell in the viewport; empty when it is out of view
  CCellID GetCellFromPoint(QPoint point) const;  // in the viewport
  CCellID GetTopLeft() const;                    // first cell of the scrolled part
  int GetVisibleRowCount() const;                // whole rows
  void Invalidate() { viewport()->update(); }

  // The cell that the keyboard works on, never of row 0 or column 0; -1 and -1 where there is none.
  CCellID GetCurrentCell() const { return current_; }
  void SetCurrentCell(int row, int col);  // scrolls it into view, and tells it to a screen reader

  QSize sizeHint() const override;  // all columns and the scroll bar, within limits

 protected:
  virtual void OnFixedColumnClick(CCellID& cell);  // a row number was clicked
  virtual void OnFixedRowClick(CCellID& cell);     // a heading was clicked

  bool viewportEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  // A column border that is being dragged.
  struct Drag {
    int column;
    int from;   // where it was pressed
    int width;  // in pixels, then
  };

  int ToPixels(int units) const;
  int ToUnits(int pixels) const;  // at least as wide
  void UseFont();                 // measures, after a new font or style
  void Arrange();                 // geometry and scroll bars, after anything that moves cells
  void ScrollTo(std::int64_t firstRow, std::int64_t left);
  GridScene MakeScene() const;
  GV_DISPINFO Request(int row, int col) const;

  int GetArrowWidth() const;                                         // of the sort arrow, its gap included
  int FittingWidth(int column, const std::vector<int>& rows) const;  // units
  std::vector<int> SampleRows(int most) const;
  void FitRowNumbers();
  void DescribeCurrent();

  void Notify(int code, CCellID cell);
  void Click(CCellID cell);
  int BorderAt(QPoint point) const;  // the column whose border can be dragged there, or -1
  bool MoveCurrent(const QKeyEvent& event);
  bool ShowTip(QPoint point, QPoint global);
  void ResizeTo(int pixels);

  CWnd* target_ = nullptr;
  int id_ = 0;
  GridGeometry geometry_;
  std::vector<int> widths_;  // units
  std::unique_ptr<GridText> text_;
  double scale_ = 1;  // pixels in a unit
  int padding_ = 4;
  int sortColumn_ = -1;
  bool sortAscending_ = true;
  int autoSizeMode_ = 3;
  CCellID current_;
  CCellID pressed_;
  std::optional<Drag> drag_;
  double wheelRows_ = 0, wheelPixels_ = 0;  // turned by the wheel and not yet scrolled
};

}  // namespace tallyscope
