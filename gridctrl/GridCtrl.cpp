// SPDX-License-Identifier: MIT
#include "gridctrl/GridCtrl.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>

#include "gridctrl/GridPainter.h"
#include "platform/core/Messages.h"
#include "platform/ui/PlainText.h"

namespace tallyscope {

namespace {

constexpr double kUsualDigitWidth = 7;  // pixels, of the font in which a unit is a pixel
constexpr int kLeastWidth = 12;
constexpr int kMostWidth = 4000;
constexpr int kHintRows = 12, kHintColumns = 8;

// What a scroll bar can hold of a distance in pixels.
int Held(std::int64_t pixels) {
  return static_cast<int>(std::min<std::int64_t>(pixels, INT_MAX));
}

}  // namespace

CGridCtrl::CGridCtrl(QWidget* parent) : QAbstractScrollArea(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setLayoutDirection(Qt::LeftToRight);
  viewport()->setMouseTracking(true);
  viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
  UseFont();
}

CGridCtrl::~CGridCtrl() = default;

void CGridCtrl::SetNotifyTarget(CWnd* target, int id) {
  target_ = target;
  id_ = id;
}

void CGridCtrl::UseFont() {
  text_ = std::make_unique<GridText>(font());
  scale_ = std::max(text_->NumberWidth(1) / kUsualDigitWidth, 1.0);
  padding_ = std::max(style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this), 1) * 3;
  const int margin = std::max(style()->pixelMetric(QStyle::PM_FocusFrameVMargin, nullptr, this), 1);
  geometry_.SetHeights(text_->LineHeight() + 6 * margin, text_->LineHeight() + 4 * margin);
  Arrange();
}

int CGridCtrl::ToPixels(int units) const {
  return static_cast<int>(std::ceil(units * scale_));
}

int CGridCtrl::ToUnits(int pixels) const {
  return static_cast<int>(std::ceil(pixels / scale_));
}

void CGridCtrl::SetRowCount(int rows) {
  rows = std::max(rows, 0);
  if (rows == GetRowCount()) return;
  geometry_.SetRows(rows);
  if (current_.row >= rows) current_ = {};
  FitRowNumbers();
  Arrange();
}

void CGridCtrl::SetColumnCount(int columns) {
  columns = std::max(columns, 0);
  if (columns == GetColumnCount()) return;
  const bool first = widths_.empty();
  widths_.resize(static_cast<std::size_t>(columns), kDefaultWidth);
  if (current_.col >= columns) current_ = {};
  if (first) FitRowNumbers();
  Arrange();
}

void CGridCtrl::SetSortColumn(int column) {
  sortColumn_ = column;
  Invalidate();
}

void CGridCtrl::SetSortAscending(bool ascending) {
  sortAscending_ = ascending;
  Invalidate();
}

void CGridCtrl::SetColumnWidth(int column, int width) {
  if (column < 0 || column >= GetColumnCount()) return;
  widths_[static_cast<std::size_t>(column)] = std::clamp(width, kLeastWidth, kMostWidth);
  Arrange();
}

void CGridCtrl::SetColumnWidths(const std::vector<int>& widths) {
  const auto count = std::min(widths.size(), widths_.size());
  std::transform(widths.begin(), widths.begin() + static_cast<std::ptrdiff_t>(count), widths_.begin(),
                 [](int width) { return std::clamp(width, kLeastWidth, kMostWidth); });
  Arrange();
}

int CGridCtrl::GetColumnWidth(int column) const {
  return column >= 0 && column < GetColumnCount() ? widths_[static_cast<std::size_t>(column)] : 0;
}

void CGridCtrl::Arrange() {
  std::vector<int> pixels(widths_.size());
  std::transform(widths_.begin(), widths_.end(), pixels.begin(), [this](int units) { return ToPixels(units); });
  geometry_.SetWidths(pixels);
  geometry_.SetView(viewport()->size());
  const int row = geometry_.FirstRow();
  const int left = Held(geometry_.Left());
  verticalScrollBar()->setPageStep(geometry_.FullRows());
  verticalScrollBar()->setRange(0, geometry_.LastFirstRow() - 1);
  verticalScrollBar()->setValue(row - 1);
  horizontalScrollBar()->setPageStep(std::max(geometry_.View().width() - geometry_.FixedWidth(), 1));
  horizontalScrollBar()->setSingleStep(ToPixels(kDefaultWidth) / 3);
  horizontalScrollBar()->setRange(0, Held(geometry_.LastLeft()));
  horizontalScrollBar()->setValue(left);
  Invalidate();
}

void CGridCtrl::ScrollTo(std::int64_t firstRow, std::int64_t left) {
  geometry_.ScrollTo(firstRow, left);
  const int row = geometry_.FirstRow();
  horizontalScrollBar()->setValue(Held(geometry_.Left()));
  verticalScrollBar()->setValue(row - 1);
}

void CGridCtrl::scrollContentsBy(int, int) {
  geometry_.ScrollTo(std::int64_t{verticalScrollBar()->value()} + 1, horizontalScrollBar()->value());
  Invalidate();
}

void CGridCtrl::resizeEvent(QResizeEvent*) {
  Arrange();
}

void CGridCtrl::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) UseFont();
  Invalidate();
}

QSize CGridCtrl::sizeHint() const {
  const int edge = 2 * frameWidth();
  int wanted = verticalScrollBar()->sizeHint().width();
  for (const int width : widths_) wanted += ToPixels(width);
  const int most = ToPixels(kDefaultWidth) * kHintColumns;
  return QSize((widths_.empty() ? most : std::min(wanted, most)) + edge,
               geometry_.HeadingHeight() + geometry_.RowHeight() * kHintRows + edge);
}

void CGridCtrl::EnsureVisible(int row, int col) {
  ScrollTo(geometry_.FirstRowToShow(std::min(row, GetRowCount() - 1)), geometry_.LeftToShow(col));
}

QRect CGridCtrl::GetCellRect(int row, int col) const {
  return geometry_.Visible(row, col);
}

CCellID CGridCtrl::GetCellFromPoint(QPoint point) const {
  const CCellID cell{geometry_.RowAt(point.y()), geometry_.ColumnAt(point.x())};
  return cell.row >= 0 && cell.col >= 0 ? cell : CCellID();
}

CCellID CGridCtrl::GetTopLeft() const {
  return {geometry_.FirstRow(), geometry_.FirstColumn()};
}

int CGridCtrl::GetVisibleRowCount() const {
  return std::clamp(GetRowCount() - geometry_.FirstRow(), 0, geometry_.FullRows());
}

void CGridCtrl::SetCurrentCell(int row, int col) {
  const bool there = row >= 1 && row < GetRowCount() && col >= 1 && col < GetColumnCount();
  current_ = there ? CCellID{row, col} : CCellID();
  if (there) EnsureVisible(row, col);
  DescribeCurrent();
  Invalidate();
}

void CGridCtrl::DescribeCurrent() {
  if (current_.row < 0) return setAccessibleDescription({});
  const QString heading = OneLine(Request(0, current_.col).text);
  const QString text = OneLine(Request(current_.row, current_.col).text);
  setAccessibleDescription(QString("row %1, %2: %3").arg(QString::number(current_.row), heading, text));
}

// Cells.

GV_DISPINFO CGridCtrl::Request(int row, int col) const {
  GV_DISPINFO info;
  info.idFrom = id_;
  info.code = kNotifyCellRequest;
  info.row = row;
  info.col = col;
  if (target_ != nullptr) target_->SendNotify(&info);
  return info;
}

int CGridCtrl::GetArrowWidth() const {
  return text_->NumberWidth(1) + padding_;
}

GridScene CGridCtrl::MakeScene() const {
  GridScene scene{geometry_, *text_, GridColours(palette(), palette().currentColorGroup())};
  scene.padding = padding_;
  scene.arrowWidth = GetArrowWidth();
  scene.sortColumn = sortColumn_;
  scene.sortAscending = sortAscending_;
  scene.current = current_;
  scene.focused = hasFocus();
  scene.request = [this](GV_DISPINFO& info) {
    info.idFrom = id_;
    info.code = kNotifyCellRequest;
    if (target_ != nullptr) target_->SendNotify(&info);
  };
  return scene;
}

void CGridCtrl::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  painter.setFont(font());
  PaintGrid(painter, event->rect(), MakeScene());
}

}  // namespace tallyscope
