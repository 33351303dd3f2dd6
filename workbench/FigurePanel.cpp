// SPDX-License-Identifier: MIT
#include "workbench/FigurePanel.h"

#include <algorithm>
#include <array>

#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>

#include "platform/ui/PlainText.h"
#include "workbench/ControlIds.h"

namespace tallyscope {

namespace {

constexpr int kMostPlaces = 3;
// Room that figures always have, so that little moves when they change. One that is longer takes what it needs.
constexpr const char kLongFigure[] = "-0.00123456789012345";
constexpr const char kLongFigureOfSeveral[] = "1234567.89012";

class FigureLabel : public QLabel {
 public:
  explicit FigureLabel(const char* room) : room_(room) {
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::IBeamCursor);
  }
  // A layout would take setMinimumWidth for all that is needed, and cut longer figures off.
  QSize minimumSizeHint() const override { return Widen(QLabel::minimumSizeHint()); }
  QSize sizeHint() const override { return Widen(QLabel::sizeHint()); }

 private:
  QSize Widen(QSize hint) const { return hint.expandedTo({fontMetrics().horizontalAdvance(room_), 0}); }
  const char* room_;
};

}  // namespace

FigurePanel::FigurePanel(CWnd& owner, const std::vector<FigureGroup>& groups) : grid_(new QGridLayout(this)) {
  grid_->setContentsMargins(0, 0, 0, 0);
  for (const auto& group : groups) groups_.push_back(MakeGroup(owner, group));
  Arrange(kMostPlaces, GetWidest(false));
}

FigurePanel::Group FigurePanel::MakeGroup(CWnd& owner, const FigureGroup& group) {
  Group made{new QGroupBox(group.title, this), {}, {}};
  auto* layout = new QGridLayout(made.box);
  for (const char* column : group.columns) {
    auto* heading = new QLabel(column);
    heading->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    made.headings.push_back(heading);
    layout->addWidget(heading, 0, static_cast<int>(made.headings.size()));
  }
  for (const auto& row : group.rows) {
    made.rows.push_back(MakeRow(owner, group, row));
    const auto& [id, caption, figures] = made.rows.back();
    const int line = layout->rowCount();
    layout->addWidget(caption, line, 0);
    for (int i = 0; i < static_cast<int>(figures.size()); ++i) {
      layout->addWidget(figures[static_cast<std::size_t>(i)], line, i + 1);
      layout->setColumnStretch(i + 1, 1);
    }
  }
  layout->setRowStretch(layout->rowCount(), 1);  // rows keep together in a box that is higher than they need
  return made;
}

FigurePanel::Row FigurePanel::MakeRow(CWnd& owner, const FigureGroup& group, const FigureGroup::Row& row) {
  Row made{row.id, new QLabel(row.caption), {}};
  const CString name = CString(group.title) + ", " + row.caption;
  const auto add = [&](const CString& accessibleName) {
    auto* figure = new FigureLabel(group.columns.empty() ? kLongFigure : kLongFigureOfSeveral);
    owner.AddControl(row.id + static_cast<int>(made.figures.size()), figure, accessibleName);
    made.figures.push_back(figure);
  };
  for (const char* column : group.columns) add(name + ", " + column);
  if (group.columns.empty()) add(name);
  return made;
}

const FigurePanel::Row* FigurePanel::FindRow(int id) const {
  for (const auto& group : groups_) {
    for (const auto& row : group.rows) {
      if (row.id == id) return &row;
    }
  }
  return nullptr;
}

void FigurePanel::ShowRow(int id, bool show) {
  const auto* row = FindRow(id);
  if (row == nullptr) return;
  row->caption->setVisible(show);
  row->caption->setEnabled(show);
  for (auto* figure : row->figures) {
    figure->setVisible(show);
    figure->setEnabled(show);
  }
}

void FigurePanel::SetRowTip(int id, const CString& tip) {
  const auto* row = FindRow(id);
  if (row == nullptr) return;
  row->caption->setToolTip(TipText(tip));
  for (auto* figure : row->figures) figure->setToolTip(TipText(tip));
}

// The arrangement.

int FigurePanel::GetWidest(bool withColumns) const {
  int widest = 1;
  for (const auto& group : groups_) {
    if (group.headings.empty() || withColumns) widest = std::max(widest, group.box->minimumSizeHint().width());
  }
  return widest;
}

void FigurePanel::Reflow() {
  const int gap = std::max(grid_->horizontalSpacing(), 0);
  const int place = GetWidest(false);
  Arrange(std::clamp((grid_->contentsRect().width() + gap) / (place + gap), 1, kMostPlaces), place);
}

// Group after group from left to right; one that the rest of a line is too short for starts the next.
void FigurePanel::Arrange(int places, int placeWidth) {
  if (places == places_ && placeWidth == placeWidth_) return;
  places_ = places;
  placeWidth_ = placeWidth;
  for (const auto& group : groups_) grid_->removeWidget(group.box);
  const int gap = std::max(grid_->horizontalSpacing(), 0);
  int line = 0;
  int used = 0;
  for (const auto& group : groups_) {
    const int wanted = (group.box->minimumSizeHint().width() + 2 * gap + placeWidth - 1) / (placeWidth + gap);
    const int taken = group.headings.empty() ? 1 : std::clamp(wanted, 1, places);
    if (used + taken > places) {
      ++line;
      used = 0;
    }
    grid_->addWidget(group.box, line, used, 1, taken);
    used += taken;
  }
  for (int place = 0; place < kMostPlaces; ++place) grid_->setColumnStretch(place, place < places ? 1 : 0);
  for (int row = 0; row <= static_cast<int>(groups_.size()); ++row) grid_->setRowStretch(row, row == line + 1 ? 1 : 0);
}

// One place is the least, so that a scroll area round the panel lets it reflow before it scrolls sideways.
QSize FigurePanel::minimumSizeHint() const {
  return {GetWidest(true), grid_->totalSizeHint().height()};
}

bool FigurePanel::event(QEvent* event) {
  const bool done = QWidget::event(event);
  if (event->type() == QEvent::LayoutRequest) Reflow();
  return done;
}

void FigurePanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Reflow();
}

CString FigurePanel::GetText() const {
  QString text;
  for (const auto& group : groups_) {
    const auto add = [&](const QString& caption, const std::vector<QLabel*>& figures) {
      text += group.box->title() + '\t' + caption;
      for (const auto* figure : figures) text += '\t' + figure->text();
      text += '\n';
    };
    if (!group.headings.empty()) add(QString(), group.headings);
    for (const auto& row : group.rows) {
      if (!row.caption->isHidden()) add(row.caption->text(), row.figures);
    }
  }
  return FromQString(text);
}

FigureGroup SampleCountGroup() {
  return {"Sample Count", {{kControlTotal, "Total"}, {kControlValid, "Valid"}, {kControlInvalid, "Invalid"}}};
}

FigureGroup DataRangeGroup() {
  return {"Valid data range", {{kControlMinimum, "Minimum"}, {kControlMaximum, "Maximum"}, {kControlMean, "Mean"}}};
}

FigureGroup AxisRangeGroup(int rows) {
  constexpr std::array<FigureGroup::Row, 3> kAxes{
      {{kControlXMinimum, "X"}, {kControlYMinimum, "Y"}, {kControlZMinimum, "Z"}}};
  return {"Valid data range", {kAxes.begin(), kAxes.begin() + rows}, {"Minimum", "Maximum", "Mean"}};
}

FigureGroup VarianceGroup() {
  return {"Variance",
          {{kControlVariance, "Variance"}, {kControlStdDeviation, "Std Deviation"}, {kControlRatio, "S/N Ratio"}}};
}

}  // namespace tallyscope
