// SPDX-License-Identifier: MIT
// Mouse, wheel and keyboard of the grid.

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>

#include "gridctrl/GridCtrl.h"
#include "gridctrl/GridPainter.h"
#include "platform/core/Messages.h"
#include "platform/ui/PlainText.h"

namespace tallyscope {

namespace {

constexpr int kBorderSlack = 4;      // pixels beside a column's border where it can be taken
constexpr double kWheelNotch = 120;  // eighths of a degree

// The whole turns or pixels of what has gathered; a turn back drops the rest of the turn forth.
std::int64_t Take(double& gathered, double more) {
  if (gathered * more < 0) gathered = 0;
  gathered += more;
  const double whole = std::trunc(gathered);
  gathered -= whole;
  return static_cast<std::int64_t>(whole);
}

}  // namespace

void CGridCtrl::OnFixedColumnClick(CCellID&) {}

void CGridCtrl::OnFixedRowClick(CCellID&) {}

void CGridCtrl::Notify(int code, CCellID cell) {
  NM_GRIDVIEW click;
  click.idFrom = id_;
  click.code = code;
  click.row = cell.row;
  click.col = cell.col;
  if (target_ != nullptr) target_->SendNotify(&click);
}

void CGridCtrl::Click(CCellID cell) {
  if (cell.row == 0 && cell.col > 0) OnFixedRowClick(cell);
  if (cell.col == 0 && cell.row > 0) OnFixedColumnClick(cell);
}

// Mouse.

int CGridCtrl::BorderAt(QPoint point) const {
  return geometry_.RowAt(point.y()) == 0 ? geometry_.BorderAt(point.x(), kBorderSlack) : -1;
}

void CGridCtrl::mousePressEvent(QMouseEvent* event) {
  const QPoint at = event->position().toPoint();
  pressed_ = {};
  if (event->button() == Qt::LeftButton) {
    if (const int border = BorderAt(at); border >= 0) {
      drag_ = Drag{border, at.x(), geometry_.Width(border)};
      return;
    }
  }
  pressed_ = GetCellFromPoint(at);
  if (pressed_.row >= 1 && pressed_.col >= 1) SetCurrentCell(pressed_.row, pressed_.col);
}

void CGridCtrl::mouseMoveEvent(QMouseEvent* event) {
  const QPoint at = event->position().toPoint();
  if (drag_) {
    ResizeTo(drag_->width + at.x() - drag_->from);
    return;
  }
  if (event->buttons() != Qt::NoButton) return;
  if (BorderAt(at) >= 0) {
    viewport()->setCursor(Qt::SplitHCursor);
  } else {
    viewport()->unsetCursor();
  }
}

void CGridCtrl::ResizeTo(int pixels) {
  SetColumnWidth(drag_->column, static_cast<int>(std::max(pixels, 0) / scale_ + 1e-9));
}

void CGridCtrl::mouseReleaseEvent(QMouseEvent* event) {
  const bool dragged = drag_.has_value();
  drag_.reset();
  const CCellID cell = GetCellFromPoint(event->position().toPoint());
  const CCellID pressed = std::exchange(pressed_, {});
  if (dragged || cell != pressed) return;
  if (event->button() == Qt::RightButton) {
    Notify(kNotifyRClick, cell);
  } else if (event->button() == Qt::LeftButton && cell.row >= 0) {
    Notify(kNotifyClick, cell);
    Click(cell);
  }
}

// The second press of a double click. Two quick clicks on a row number are two clicks: the second may come with another
// modifier key.
void CGridCtrl::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return mousePressEvent(event);
  const QPoint at = event->position().toPoint();
  pressed_ = {};
  if (const int border = BorderAt(at); border >= 0) return AutoSizeColumn(border);
  CCellID cell = GetCellFromPoint(at);
  if (cell.row < 0) return;
  Notify(kNotifyDblClick, cell);
  if (cell.col == 0 && cell.row > 0) OnFixedColumnClick(cell);
}

void CGridCtrl::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();  // with the mouse, the button's release is the click
  if (event->reason() == QContextMenuEvent::Keyboard) Notify(kNotifyRClick, current_);
}

void CGridCtrl::wheelEvent(QWheelEvent* event) {
  event->accept();
  QPointF rows(0, 0);  // x in pixels, y in rows, towards the beginning
  const bool pixels =
      !event->pixelDelta().isNull() && (event->phase() != Qt::NoScrollPhase || event->angleDelta().isNull());
  const QPoint turned = pixels ? event->pixelDelta() : event->angleDelta();
  const bool sideways = event->modifiers().testFlag(Qt::ShiftModifier) && turned.x() == 0;
  const double lines = QApplication::wheelScrollLines();
  const double across = sideways ? turned.y() : turned.x();
  const double along = sideways ? 0 : turned.y();
  if (pixels) {
    rows = QPointF(across, along / geometry_.RowHeight());
  } else {
    rows = QPointF(across / kWheelNotch * lines * horizontalScrollBar()->singleStep(), along / kWheelNotch * lines);
  }
  ScrollTo(geometry_.FirstRow() - Take(wheelRows_, rows.y()), geometry_.Left() - Take(wheelPixels_, rows.x()));
}

bool CGridCtrl::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    if (!ShowTip(help->pos(), help->globalPos())) QToolTip::hideText();
    return true;
  }
  return QAbstractScrollArea::viewportEvent(event);
}

// The whole text of a cell that had to be cut.
bool CGridCtrl::ShowTip(QPoint point, QPoint global) {
  const CCellID cell = GetCellFromPoint(point);
  if (cell.row < 0) return false;
  const CString text = Request(cell.row, cell.col).text;
  if (text_->Width(OneLine(text)) <= TextRoom(MakeScene(), cell.row, cell.col).width()) return false;
  QToolTip::showText(global, TipText(text), viewport(), geometry_.Visible(cell.row, cell.col));
  return true;
}

// Keyboard.

void CGridCtrl::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  const bool byKey = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
                     event->reason() == Qt::ShortcutFocusReason;
  if (byKey && current_.row < 0) SetCurrentCell(geometry_.FirstRow(), geometry_.FirstColumn());
  Invalidate();
}

void CGridCtrl::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  Invalidate();
}

void CGridCtrl::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && drag_) {
    ResizeTo(drag_->width);
    drag_.reset();
    return;
  }
  if (event->matches(QKeySequence::Copy)) {
    if (current_.row > 0) QApplication::clipboard()->setText(ToQString(Request(current_.row, current_.col).text));
    return;
  }
  if (event->key() == Qt::Key_Space && current_.row > 0) return Click({current_.row, 0});
  if (!MoveCurrent(*event)) event->ignore();
}

bool CGridCtrl::MoveCurrent(const QKeyEvent& event) {
  const bool far = event.modifiers().testFlag(Qt::ControlModifier);
  const std::int64_t lastRow = GetRowCount() - 1;
  const int lastColumn = GetColumnCount() - 1;
  const std::int64_t page = std::max(geometry_.FullRows() - 1, 1);
  const CCellID from = current_.row > 0 ? current_ : GetTopLeft();
  std::int64_t row = from.row;
  int column = from.col;
  switch (event.key()) {
    case Qt::Key_Up:
      row = far ? 1 : row - 1;
      break;
    case Qt::Key_Down:
      row = far ? lastRow : row + 1;
      break;
    case Qt::Key_Left:
      column = far ? 1 : column - 1;
      break;
    case Qt::Key_Right:
      column = far ? lastColumn : column + 1;
      break;
    case Qt::Key_PageUp:
      row -= page;
      break;
    case Qt::Key_PageDown:
      row += page;
      break;
    case Qt::Key_Home:
      column = 1;
      if (far) row = 1;
      break;
    case Qt::Key_End:
      column = lastColumn;
      if (far) row = lastRow;
      break;
    default:
      return false;
  }
  if (lastRow < 1 || lastColumn < 1) return true;
  if (current_.row < 0) {  // the first key only shows where one is, unless it goes to an end
    if (!far && event.key() != Qt::Key_Home && event.key() != Qt::Key_End) row = from.row, column = from.col;
  }
  SetCurrentCell(static_cast<int>(std::clamp<std::int64_t>(row, 1, lastRow)), std::clamp(column, 1, lastColumn));
  return true;
}

}  // namespace tallyscope
