// SPDX-License-Identifier: MIT
#include "workbench/FieldBox.h"

#include <algorithm>
#include <cmath>

#include <QComboBox>
#include <QListView>
#include <QStringListModel>

#include "platform/ui/PlainText.h"
#include "statistics/DimIndex.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr int kMostCharacters = 28;
constexpr int kShownItems = 24;
constexpr int kMostMeasured = 32;

// In pixels, judged by the names of the most characters: to measure each takes seconds in a very wide table.
int WidestName(const QStringList& names, const QFontMetrics& metrics) {
  std::vector<QString> longest(static_cast<std::size_t>(std::min<qsizetype>(names.size(), kMostMeasured)));
  std::partial_sort_copy(names.begin(), names.end(), longest.begin(), longest.end(),
                         [](const QString& one, const QString& other) { return one.size() > other.size(); });
  int widest = 0;
  for (const auto& name : longest) widest = std::max(widest, metrics.horizontalAdvance(name.left(kMostCharacters)));
  return widest;
}

}  // namespace

QComboBox* MakeFieldBox() {
  auto* box = new QComboBox;
  box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  box->setMaximumWidth(box->fontMetrics().averageCharWidth() * kMostCharacters);
  box->setMaxVisibleItems(kShownItems);
  box->view()->setTextElideMode(Qt::ElideMiddle);
  if (auto* list = qobject_cast<QListView*>(box->view())) list->setUniformItemSizes(true);
  return box;
}

QStringList GetFieldNames(CStats_Data& data) {
  const int axes = data.GetSpatialSize();
  const int columns = axes + data.GetValueSize();
  QStringList names;
  names.reserve(columns);
  for (int i = 0; i < columns; ++i) names << OneLine(data.GetValueName(DimFromIndex(i, axes)));
  return names;
}

void FillFieldBox(QComboBox& box, const QStringList& names) {
  const QFontMetrics metrics = box.fontMetrics();
  const double wanted = WidestName(names, metrics);
  box.setModel(new QStringListModel(names, &box));
  box.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box.setMinimumContentsLength(static_cast<int>(std::ceil(wanted / metrics.horizontalAdvance('X'))));
  box.setCurrentIndex(names.isEmpty() ? -1 : 0);
}

}  // namespace tallyscope
