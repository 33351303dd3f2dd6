// SPDX-License-Identifier: MIT
#include "outside/plot/PlotCanvas.h"

#include <cmath>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

#include "outside/plot/UPlotX_Container.h"
#include "platform/ui/PainterDC.h"

namespace tallyscope {

namespace {

constexpr double kWheelStep = 120;  // eighths of a degree that make a notch

CPoint ToCPoint(const QPointF& place) {
  return {static_cast<int>(std::floor(place.x())), static_cast<int>(std::floor(place.y()))};
}

}  // namespace

CPlotCanvas::CPlotCanvas(CUPlotX_Container& container, CPlotInput& input, QWidget* parent)
    : QWidget(parent), container_(container), input_(input) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void CPlotCanvas::InvalidateKept() {
  keptStands_ = false;
  update();
}

void CPlotCanvas::PaintKept() {
  const qreal ratio = devicePixelRatioF();
  const QSize pixels(static_cast<int>(std::ceil(width() * ratio)), static_cast<int>(std::ceil(height() * ratio)));
  if (kept_.size() != pixels) kept_ = QImage(pixels, QImage::Format_RGB32);
  kept_.setDevicePixelRatio(ratio);
  container_.colours = GetPaletteColours();
  CPainterDC dc(kept_);
  container_.RenderKept(dc);
  keptStands_ = true;
  ++keptPaints_;
}

void CPlotCanvas::paintEvent(QPaintEvent*) {
  if (width() < 1 || height() < 1) return;
  if (!keptStands_ || kept_.devicePixelRatio() != devicePixelRatioF()) PaintKept();
  QPainter painter(this);
  painter.drawImage(QPointF(0, 0), kept_);
  {
    CPainterDC dc(painter, {width(), height()});
    container_.RenderOver(dc);
  }
  if (!hasFocus()) return;
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(palette().color(QPalette::Highlight));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void CPlotCanvas::resizeEvent(QResizeEvent*) {
  container_.SetClientSize({width(), height()});
  InvalidateKept();
}

void CPlotCanvas::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) InvalidateKept();
  QWidget::changeEvent(event);
}

void CPlotCanvas::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) input_.OnLButtonDown(ToCPoint(event->position()));
  if (event->button() == Qt::RightButton) input_.OnRButtonDown(ToCPoint(event->position()));
}

void CPlotCanvas::mouseMoveEvent(QMouseEvent* event) {
  input_.OnMouseMove(ToCPoint(event->position()), (event->buttons() & Qt::LeftButton) != 0);
  setCursor(container_.GetCursor(ToCPoint(event->position())));
}

void CPlotCanvas::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) input_.OnLButtonUp(ToCPoint(event->position()));
}

void CPlotCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) input_.OnLButtonDblClk(ToCPoint(event->position()));
}

void CPlotCanvas::wheelEvent(QWheelEvent* event) {
  const double steps = event->angleDelta().y() / kWheelStep;
  if (steps != 0) input_.OnWheel(ToCPoint(event->position()), steps);
  event->accept();
}

void CPlotCanvas::leaveEvent(QEvent*) {
  input_.OnLeave();
}

void CPlotCanvas::keyPressEvent(QKeyEvent* event) {
  if (!input_.OnKey(event)) QWidget::keyPressEvent(event);
}

void CPlotCanvas::focusInEvent(QFocusEvent*) {
  update();
}

void CPlotCanvas::focusOutEvent(QFocusEvent*) {
  update();
}

// The keys of a plot are its own while it has the focus, also where the window has shortcuts on them.
bool CPlotCanvas::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    const auto* key = static_cast<QKeyEvent*>(event);
    switch (key->key()) {
      case Qt::Key_Left:
      case Qt::Key_Right:
      case Qt::Key_Up:
      case Qt::Key_Down:
      case Qt::Key_Home:
      case Qt::Key_End:
      case Qt::Key_Space:
        if (key->modifiers() == Qt::NoModifier) event->accept();
        return true;
      default:
        break;
    }
  }
  return QWidget::event(event);
}

}  // namespace tallyscope
