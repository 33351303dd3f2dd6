// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include <QFont>
#include <QFontMetricsF>
#include <QString>

#include "gridctrl/GridCell.h"

class QPainter;

namespace tallyscope {

// One line of text in a font: its width, what fits a room, and its drawing. All digits take the same room, whatever the
// font, so that numbers stand in columns. A number's width is summed from a table, for a spreadsheet measures
// thousands.
class GridText {
 public:
  explicit GridText(const QFont& font);

  int LineHeight() const;
  int Width(const QString& text) const;
  int NumberWidth(int digits) const;                    // of the widest number of that many digits
  QString Fitted(const QString& text, int room) const;  // with an ellipsis where it had to be cut
  // `text` has to fit `room`; it is centred vertically.
  void Draw(QPainter& painter, const QRect& room, const QString& text, CellAlignment alignment) const;

 private:
  bool IsNumber(const QString& text) const;
  double Advance(const QString& text) const;

  QFont font_;
  QFontMetricsF metrics_;
  std::array<double, 128> advances_{};  // of characters of numbers; 0 for all others
  bool tabular_ = true;                 // the font's own digits are alike
};

}  // namespace tallyscope
