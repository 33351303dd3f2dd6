// SPDX-License-Identifier: MIT
#include "workbench/FigurePanel.h"

#include <algorithm>

#include <QApplication>
#include <QClipboard>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>

#include "workbench/ControlIds.h"

namespace tallyscope {

namespace {

constexpr int kMostColumns = 3;

QLabel* MakeFigure() {
  auto* figure = new QLabel;
  figure->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  figure->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  figure->setFocusPolicy(Qt::StrongFocus);
  figure->setCursor(Qt::IBeamCursor);
  figure->setMinimumWidth(figure->fontMetrics().horizontalAdvance("-0.123456789012345e-300"));
  return figure;
}

}  // namespace

FigurePanel::FigurePanel(CWnd& owner, const std::vector<FigureGroup>& groups) : grid_(new QGridLayout(this)) {
  for (const auto& group : groups) boxes_.push_back(MakeGroup(owner, group));
  Arrange(kMostColumns);
}

QGroupBox* FigurePanel::MakeGroup(CWnd& owner, const FigureGroup& group) {
  auto* box = new QGroupBox(group.title, this);
  auto* form = new QFormLayout(box);
  form->setLabelAlignment(Qt::AlignLeft);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  for (const auto& row : group.rows) {
    auto* figure = MakeFigure();
    auto* caption = new QLabel(row.caption);
    form->addRow(caption, figure);
    owner.AddControl(row.id, figure, CString(group.title) + ", " + row.caption);
  }
  return box;
}

void FigurePanel::Arrange(int columns) {
  if (columns == columns_) return;
  columns_ = columns;
  for (auto* box : boxes_) grid_->removeWidget(box);
  for (int i = 0; i < static_cast<int>(boxes_.size()); ++i) {
    grid_->addWidget(boxes_[static_cast<std::size_t>(i)], i / columns, i % columns);
  }
  for (int column = 0; column < kMostColumns; ++column) grid_->setColumnStretch(column, column < columns ? 1 : 0);
  const int rows = (static_cast<int>(boxes_.size()) + columns - 1) / columns;
  for (int row = 0; row <= static_cast<int>(boxes_.size()); ++row) grid_->setRowStretch(row, row == rows ? 1 : 0);
}

int FigurePanel::GetWidest() const {
  int widest = 1;
  for (const auto* box : boxes_) widest = std::max(widest, box->minimumSizeHint().width());
  return widest;
}

// One column is the least, so that a scroll area round the panel lets it reflow before it scrolls sideways.
QSize FigurePanel::minimumSizeHint() const {
  const QMargins margins = grid_->contentsMargins();
  return {GetWidest() + margins.left() + margins.right(), grid_->totalSizeHint().height()};
}

void FigurePanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  const int gap = std::max(grid_->horizontalSpacing(), 0);
  Arrange(std::clamp((grid_->contentsRect().width() + gap) / (GetWidest() + gap), 1, kMostColumns));
}

CString FigurePanel::GetText() const {
  QString text;
  for (const auto* box : boxes_) {
    const auto* form = static_cast<const QFormLayout*>(box->layout());
    for (int row = 0; row < form->rowCount(); ++row) {
      const auto* caption = static_cast<const QLabel*>(form->itemAt(row, QFormLayout::LabelRole)->widget());
      const auto* figure = static_cast<const QLabel*>(form->itemAt(row, QFormLayout::FieldRole)->widget());
      text += box->title() + '\t' + caption->text() + '\t' + figure->text() + '\n';
    }
  }
  return FromQString(text);
}

void FigurePanel::CopyText() const {
  QApplication::clipboard()->setText(ToQString(GetText()));
}

FigureGroup SampleCountGroup() {
  return {"Sample Count", {{kControlTotal, "Total"}, {kControlValid, "Valid"}, {kControlInvalid, "Invalid"}}};
}

FigureGroup DataRangeGroup() {
  return {"Valid data range", {{kControlMinimum, "Minimum"}, {kControlMaximum, "Maximum"}, {kControlMean, "Mean"}}};
}

FigureGroup VarianceGroup() {
  return {"Variance",
          {{kControlVariance, "Variance"}, {kControlStdDeviation, "Std Deviation"}, {kControlRatio, "S/N Ratio"}}};
}

}  // namespace tallyscope
