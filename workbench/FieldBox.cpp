// SPDX-License-Identifier: MIT
#include "workbench/FieldBox.h"

#include <QAbstractItemView>
#include <QComboBox>

namespace tallyscope {

namespace {

constexpr int kMostCharacters = 28;
constexpr int kShownItems = 24;

}  // namespace

QComboBox* MakeFieldBox() {
  auto* box = new QComboBox;
  box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  box->setMaximumWidth(box->fontMetrics().averageCharWidth() * kMostCharacters);
  box->setMaxVisibleItems(kShownItems);
  box->view()->setTextElideMode(Qt::ElideMiddle);
  return box;
}

}  // namespace tallyscope
