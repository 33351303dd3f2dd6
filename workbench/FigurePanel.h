// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <QWidget>

#include "platform/core/String.h"
#include "platform/ui/Wnd.h"

class QGridLayout;
class QGroupBox;
class QLabel;

namespace tallyscope {

struct FigureGroup {
  // A caption, and the control id that its figure is exchanged by. In a group with columns it is the id of the first
  // figure; those of the further columns follow it by one each.
  struct Row {
    int id;
    const char* caption;
  };
  const char* title;
  std::vector<Row> rows;
  std::vector<const char*> columns = {};  // headings; without, a row has one figure
};

// Groups of read-only figures in a grid that reflows with the width: captions left, figures right-aligned. A group with
// columns takes as many places side by side as it needs. Figures can be selected and copied one by one, and all
// together as tab-separated text.
class FigurePanel : public QWidget {
 public:
  // Registers each figure as a control of `owner`.
  FigurePanel(CWnd& owner, const std::vector<FigureGroup>& groups);

  // Shows or hides a row whose first figure is `id`, with its caption.
  void ShowRow(int id, bool show);
  void SetRowTip(int id, const CString& tip);

  // A line for each row that shows: group, caption, figures. A group with columns begins with a line of its headings.
  CString GetText() const;

  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;  // longer figures may need another arrangement
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Row {
    int id;
    QLabel* caption;
    std::vector<QLabel*> figures;
  };
  struct Group {
    QGroupBox* box;
    std::vector<QLabel*> headings;
    std::vector<Row> rows;
  };

  Group MakeGroup(CWnd& owner, const FigureGroup& group);
  Row MakeRow(CWnd& owner, const FigureGroup& group, const FigureGroup::Row& row);
  const Row* FindRow(int id) const;
  int GetWidest(bool withColumns) const;
  void Reflow();
  void Arrange(int places, int placeWidth);

  QGridLayout* grid_;
  std::vector<Group> groups_;
  int places_ = 0;
  int placeWidth_ = 0;
};

// The figures that the basic groups of every statistics page and dialog share.
FigureGroup SampleCountGroup();
FigureGroup DataRangeGroup();
FigureGroup AxisRangeGroup(int rows);  // of X, Y and, with three, Z
FigureGroup VarianceGroup();

}  // namespace tallyscope
