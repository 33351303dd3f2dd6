// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QWidget>

#include "platform/core/Geometry.h"
#include "platform/core/String.h"

class QKeyEvent;

namespace tallyscope {

class CUPlotX_Container;

// Who answers the mouse and the keyboard of a canvas.
class CPlotInput {
 public:
  virtual ~CPlotInput() = default;
  virtual void OnLButtonDown(CPoint point) = 0;
  virtual void OnMouseMove(CPoint point, bool pressed) = 0;
  virtual void OnLButtonUp(CPoint point) = 0;
  virtual void OnLButtonDblClk(CPoint point) = 0;
  virtual void OnRButtonDown(CPoint point) = 0;
  virtual void OnWheel(CPoint point, double steps) = 0;
  virtual void OnLeave() = 0;
  virtual bool OnKey(QKeyEvent* event) = 0;  // false: not for us
};

// The widget that a container draws on. What doesn't change while the pointer moves is kept in an image of the screen's
// own pixels, so hover marks and rubber bands cost a copy of it.
class CPlotCanvas : public QWidget {
 public:
  explicit CPlotCanvas(CUPlotX_Container& container, CPlotInput& input, QWidget* parent = nullptr);

  void InvalidateKept();

  QSize sizeHint() const override { return {600, 400}; }
  QSize minimumSizeHint() const override { return {160, 120}; }

  int GetKeptPaints() const { return keptPaints_; }  // how often the layer was drawn

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void PaintKept();

  CUPlotX_Container& container_;
  CPlotInput& input_;
  QImage kept_;
  bool keptStands_ = false;
  int keptPaints_ = 0;
};

}  // namespace tallyscope
