// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <QWidget>

class QAbstractButton;

namespace tallyscope {

// Buttons below each other in groups with a gap between them; in as many columns as the height asks for.
class ToolColumn : public QWidget {
 public:
  using QWidget::QWidget;

  void StartGroup() { gap_ = true; }
  void AddTool(QAbstractButton* tool);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Place {
    QAbstractButton* tool;
    bool startsGroup;
  };
  QSize GetToolSize() const;
  int GetGap() const;
  int Arrange(int height, bool move);  // columns

  std::vector<Place> tools_;
  bool gap_ = false;
};

}  // namespace tallyscope
