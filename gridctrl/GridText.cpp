// SPDX-License-Identifier: MIT
#include "gridctrl/GridText.h"

#include <algorithm>
#include <cmath>

#include <QPainter>

namespace tallyscope {

namespace {

constexpr char kNumberCharacters[] = "0123456789+-.,eE ";
constexpr QChar kEllipsis(0x2026);

bool IsDigit(QChar character) {
  return character >= u'0' && character <= u'9';
}

}  // namespace

GridText::GridText(const QFont& font) : font_(font), metrics_(font) {
  for (const char* each = kNumberCharacters; *each != 0; ++each) {
    advances_[static_cast<unsigned char>(*each)] = metrics_.horizontalAdvance(QLatin1Char(*each));
  }
  const auto digits = advances_.begin() + '0';
  const auto [narrow, wide] = std::minmax_element(digits, digits + 10);
  tabular_ = *narrow == *wide;
  std::fill(digits, digits + 10, double{*wide});
}

int GridText::LineHeight() const {
  return static_cast<int>(std::ceil(metrics_.height()));
}

bool GridText::IsNumber(const QString& text) const {
  return std::all_of(text.begin(), text.end(),
                     [&](QChar each) { return each.unicode() < advances_.size() && advances_[each.unicode()] > 0; });
}

double GridText::Advance(const QString& text) const {
  if (!IsNumber(text)) return metrics_.horizontalAdvance(text);
  double width = 0;
  for (const QChar each : text) width += advances_[each.unicode()];
  return width;
}

int GridText::Width(const QString& text) const {
  return static_cast<int>(std::ceil(Advance(text)));
}

int GridText::NumberWidth(int digits) const {
  return static_cast<int>(std::ceil(digits * advances_['0']));
}

QString GridText::Fitted(const QString& text, int room) const {
  if (Advance(text) <= room) return text;
  if (!IsNumber(text)) return metrics_.elidedText(text, Qt::ElideRight, room);
  double width = metrics_.horizontalAdvance(kEllipsis);
  qsizetype kept = 0;
  while (kept < text.size() && (width += advances_[text[kept].unicode()]) <= room) ++kept;
  return text.left(kept) + kEllipsis;
}

void GridText::Draw(QPainter& painter, const QRect& room, const QString& text, CellAlignment alignment) const {
  const double y = room.top() + std::floor((room.height() - metrics_.height()) / 2) + std::ceil(metrics_.ascent());
  double x = room.left();
  if (alignment != CellAlignment::kLeft) {
    const double over = room.width() - Advance(text);
    x += alignment == CellAlignment::kRight ? over : over / 2;
  }
  if (tabular_ || !IsNumber(text)) {
    painter.drawText(QPointF(x, y), text);
    return;
  }
  for (const QChar each : text) {
    const double advance = advances_[each.unicode()];
    const double inset = IsDigit(each) ? (advance - metrics_.horizontalAdvance(each)) / 2 : 0;
    painter.drawText(QPointF(x + inset, y), each);
    x += advance;
  }
}

}  // namespace tallyscope
