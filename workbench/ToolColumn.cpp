// SPDX-License-Identifier: MIT
#include "workbench/ToolColumn.h"

#include <algorithm>

#include <QAbstractButton>
#include <QStyle>

namespace tallyscope {

void ToolColumn::AddTool(QAbstractButton* tool) {
  tool->setParent(this);
  tools_.push_back({tool, gap_ && !tools_.empty()});
  gap_ = false;
  updateGeometry();
}

QSize ToolColumn::GetToolSize() const {
  QSize largest(1, 1);
  for (const auto& place : tools_) largest = largest.expandedTo(place.tool->sizeHint());
  return largest;
}

int ToolColumn::GetGap() const {
  return std::max(style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing, nullptr, this), 6);
}

int ToolColumn::Arrange(int height, bool move) {
  const QSize size = GetToolSize();
  int column = 0;
  int y = 0;
  for (const auto& place : tools_) {
    if (y > 0 && place.startsGroup) y += GetGap();
    if (y > 0 && y + size.height() > height) {
      ++column;
      y = 0;
    }
    if (move) place.tool->setGeometry(column * size.width(), y, size.width(), size.height());
    y += size.height();
  }
  return column + 1;
}

QSize ToolColumn::sizeHint() const {
  int height = 0;
  for (const auto& place : tools_) height += GetToolSize().height() + (place.startsGroup ? GetGap() : 0);
  return {GetToolSize().width(), height};
}

QSize ToolColumn::minimumSizeHint() const {
  return {GetToolSize().width(), 4 * GetToolSize().height()};
}

void ToolColumn::resizeEvent(QResizeEvent*) {
  const int columns = Arrange(height(), false);
  setFixedWidth(columns * GetToolSize().width());
  Arrange(height(), true);
}

}  // namespace tallyscope
