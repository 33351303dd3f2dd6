// SPDX-License-Identifier: MIT
#include "gridctrl/GridPainter.h"

#include <algorithm>
#include <cmath>

#include <QPainter>
#include <QPainterPath>

#include "platform/ui/PlainText.h"

namespace tallyscope {

namespace {

// Cell borders as lines of exactly one pixel of the device, whatever its scale.
class DeviceLines {
 public:
  explicit DeviceLines(const QPainter& painter) : transform_(painter.deviceTransform()) {}

  // The middle of the last device pixel before an edge.
  double BeforeX(std::int64_t edge) const {
    return Before(static_cast<double>(edge), transform_.m11(), transform_.dx());
  }
  double BeforeY(std::int64_t edge) const {
    return Before(static_cast<double>(edge), transform_.m22(), transform_.dy());
  }
  double Pixel() const { return 1 / transform_.m11(); }

 private:
  static double Before(double edge, double scale, double offset) {
    return (std::round(edge * scale + offset) - 0.5 - offset) / scale;
  }
  QTransform transform_;
};

class Painting {
 public:
  Painting(QPainter& painter, const QRect& exposed, const GridScene& scene)
      : painter_(painter), exposed_(exposed), scene_(scene), geometry_(scene.geometry), lines_(painter) {
    firstRow_ = std::max(geometry_.FirstRow(), RowNear(exposed.top()));
    lastRow_ = std::min(geometry_.LastRow(), RowNear(exposed.bottom()));
    firstColumn_ = geometry_.FirstColumn();
    lastColumn_ = geometry_.LastColumn();
    while (firstColumn_ < lastColumn_ && Right(firstColumn_) <= exposed.left()) ++firstColumn_;
    while (lastColumn_ > firstColumn_ && geometry_.ColumnLeft(lastColumn_) > exposed.right()) --lastColumn_;
  }

  void Run() {
    const auto& colours = scene_.colours;
    painter_.fillRect(exposed_, colours.base);
    if (geometry_.Rows() == 0 || geometry_.Columns() == 0) return;
    const QRect body = geometry_.Body();
    const QRect numbers(0, body.top(), body.left(), body.height());
    const QRect headings(body.left(), 0, body.width(), body.top());
    Part(body, firstRow_, lastRow_, firstColumn_, lastColumn_, colours.line);
    Part(numbers, firstRow_, lastRow_, 0, 0, colours.headingLine);
    Part(headings, 0, 0, firstColumn_, lastColumn_, colours.headingLine);
    Part(QRect(QPoint(0, 0), body.topLeft() - QPoint(1, 1)), 0, 0, 0, 0, colours.headingLine);
    Frame(body);
  }

 private:
  int RowNear(int y) const {
    return geometry_.FirstRow() + std::max(y - geometry_.HeadingHeight(), 0) / geometry_.RowHeight();
  }
  std::int64_t Right(int column) const { return geometry_.ColumnLeft(column) + geometry_.Width(column); }

  // A block of cells that scroll alike, and the lines to the right of and below them.
  void Part(const QRect& clip, int firstRow, int lastRow, int firstColumn, int lastColumn, const QColor& line) {
    if (firstRow > lastRow || (firstColumn > 0 && lastColumn == 0) || (clip & exposed_).isEmpty()) return;
    painter_.setClipRect(clip & exposed_);
    for (int row = firstRow; row <= lastRow; ++row) {
      for (int column = firstColumn; column <= lastColumn; ++column) Cell(row, column);
    }
    QList<QLineF> lines;
    const QRect from = geometry_.Cell(firstRow, firstColumn);
    const QRect to = geometry_.Cell(lastRow, lastColumn);
    const double right = lines_.BeforeX(Right(lastColumn));
    const double bottom = lines_.BeforeY(std::int64_t{to.top()} + to.height());
    for (int row = firstRow; row <= lastRow; ++row) {
      const QRect cell = geometry_.Cell(row, firstColumn);
      const double y = lines_.BeforeY(std::int64_t{cell.top()} + cell.height());
      lines.append(QLineF(from.left(), y, right, y));
    }
    for (int column = firstColumn; column <= lastColumn; ++column) {
      const double x = lines_.BeforeX(Right(column));
      lines.append(QLineF(x, from.top(), x, bottom));
    }
    painter_.setPen(QPen(line, 0));
    painter_.drawLines(lines);
  }

  void Cell(int row, int column) {
    info_.row = row;
    info_.col = column;
    info_.text.clear();
    info_.alignment = CellAlignment::kLeft;
    info_.background = kNormalBackground;
    info_.hasBackground = false;
    scene_.request(info_);
    Ground(row, column);
    if (column == scene_.sortColumn && row == 0) Arrow(geometry_.Cell(row, column));
    const QRect room = TextRoom(scene_, row, column);
    if (info_.text.empty() || room.width() <= 0) return;
    painter_.setPen(ink_);
    scene_.text.Draw(painter_, room, scene_.text.Fitted(OneLine(info_.text), room.width()), info_.alignment);
  }

  // Fills the cell and finds the ink for its text.
  void Ground(int row, int column) {
    const auto& colours = scene_.colours;
    const bool fixed = row == 0 || column == 0;
    QColor ground = colours.base;
    QColor wanted = colours.text;
    if (info_.hasBackground && (!fixed || info_.background != kNormalBackground)) {
      ground = colours.Background(info_.background);
    } else if (fixed) {
      const bool current = row == 0 ? column == scene_.current.col : row == scene_.current.row;
      ground = current ? colours.currentHeading : colours.heading;
      wanted = colours.headingText;
    }
    if (ground != colours.base) painter_.fillRect(geometry_.Cell(row, column), ground);
    if (ground == lastGround_ && wanted == lastWanted_) return;
    lastGround_ = ground;
    lastWanted_ = wanted;
    ink_ = ReadableOn(ground, wanted);
  }

  void Arrow(const QRect& cell) {
    const double width = std::max(scene_.arrowWidth - scene_.padding, 4);
    const double height = width * 0.55;
    const double right = cell.right() + 1 - scene_.padding;
    const double middle = cell.top() + cell.height() / 2.0;
    const double base = middle + (scene_.sortAscending ? height : -height) / 2;
    QPainterPath triangle;
    triangle.moveTo(right - width, base);
    triangle.lineTo(right, base);
    triangle.lineTo(right - width / 2, base + (scene_.sortAscending ? -height : height));
    triangle.closeSubpath();
    painter_.save();
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.fillPath(triangle, ink_);
    painter_.restore();
  }

  void Frame(const QRect& body) {
    const QRect seen = geometry_.Visible(scene_.current.row, scene_.current.col);
    if (seen.isEmpty() || scene_.current.row < 1 || scene_.current.col < 1) return;
    painter_.setClipRect(body & exposed_);
    const QRect cell = geometry_.Cell(scene_.current.row, scene_.current.col);
    const double width = scene_.focused ? 2 : 1;
    const QColor colour = scene_.focused ? scene_.colours.frame : Mixed(scene_.colours.line, scene_.colours.text, 0.4);
    painter_.setPen(QPen(colour, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter_.setBrush(Qt::NoBrush);
    const double inset = width / 2;
    painter_.drawRect(QRectF(cell).adjusted(inset, inset, -inset - lines_.Pixel(), -inset - lines_.Pixel()));
  }

  QPainter& painter_;
  const QRect exposed_;
  const GridScene& scene_;
  const GridGeometry& geometry_;
  const DeviceLines lines_;
  int firstRow_ = 1, lastRow_ = 0, firstColumn_ = 1, lastColumn_ = 0;
  GV_DISPINFO info_;
  QColor ink_, lastGround_, lastWanted_;
};

}  // namespace

QRect TextRoom(const GridScene& scene, int row, int column) {
  QRect room = scene.geometry.Cell(row, column).adjusted(scene.padding, 0, -scene.padding, 0);
  if (row == 0 && column == scene.sortColumn) room.setRight(room.right() - scene.arrowWidth);
  return room;
}

void PaintGrid(QPainter& painter, const QRect& exposed, const GridScene& scene) {
  Painting(painter, exposed, scene).Run();
}

}  // namespace tallyscope
