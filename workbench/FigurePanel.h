// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <QWidget>

#include "platform/core/String.h"
#include "platform/ui/Wnd.h"

class QGridLayout;
class QGroupBox;

namespace tallyscope {

// One read-only figure: the control id it is exchanged by, and its caption.
struct FigureRow {
  int id;
  const char* caption;
};

struct FigureGroup {
  const char* title;
  std::vector<FigureRow> rows;
};

// Groups of read-only figures in a grid that reflows with the width: captions left, figures right-aligned. Figures can
// be selected and copied one by one, and all together as tab-separated text.
class FigurePanel : public QWidget {
 public:
  // Registers each figure as a control of `owner`.
  FigurePanel(CWnd& owner, const std::vector<FigureGroup>& groups);

  CString GetText() const;  // group, caption, figure: a line each
  void CopyText() const;    // to the clipboard

  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QGroupBox* MakeGroup(CWnd& owner, const FigureGroup& group);
  int GetWidest() const;
  void Arrange(int columns);

  QGridLayout* grid_;
  std::vector<QGroupBox*> boxes_;
  int columns_ = 0;
};

// The figures that the basic groups of every statistics page and dialog share.
FigureGroup SampleCountGroup();
FigureGroup DataRangeGroup();
FigureGroup VarianceGroup();

}  // namespace tallyscope
