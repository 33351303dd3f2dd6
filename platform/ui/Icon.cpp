// SPDX-License-Identifier: MIT
#include "platform/ui/Icon.h"

#include <algorithm>
#include <utility>

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

#include "platform/ui/IconDrawings.h"

namespace tallyscope {

namespace {

const IconDrawing* FindDrawing(std::string_view name) {
  const auto drawings = GetIconDrawings();
  const auto found =
      std::find_if(drawings.begin(), drawings.end(), [&](const auto& each) { return each.name == name; });
  return found != drawings.end() ? &*found : nullptr;
}

QColor LineColour(QIcon::Mode mode) {
  const QPalette palette = QGuiApplication::palette();
  switch (mode) {
    case QIcon::Disabled:
      return palette.color(QPalette::Disabled, QPalette::WindowText);
    case QIcon::Selected:
      return palette.color(QPalette::Active, QPalette::HighlightedText);
    default:
      return palette.color(QPalette::Active, QPalette::WindowText);
  }
}

// Asks for the palette each time it draws, so a change of palette needs no new icon.
class DrawingEngine : public QIconEngine {
 public:
  explicit DrawingEngine(const IconDrawing& drawing) : drawing_(drawing) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    Render(*painter, rect, mode);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
    const QString key = QString("tallyscope-%1-%2x%3-%4")
                            .arg(drawing_.name)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(LineColour(mode).rgba(), 8, 16);
    QPixmap pixmap;
    if (size.isEmpty() || QPixmapCache::find(key, &pixmap)) return pixmap;
    pixmap = QPixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    Render(painter, QRect(QPoint(0, 0), size), mode);
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
  }

  QIconEngine* clone() const override { return new DrawingEngine(drawing_); }
  QString key() const override { return "tallyscope"; }

 private:
  void Render(QPainter& painter, const QRect& rect, QIcon::Mode mode) const {
    QByteArray svg(drawing_.svg);
    svg.replace("currentColor", LineColour(mode).name().toLatin1());
    QSvgRenderer renderer(svg);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    renderer.render(&painter, rect);
  }

  const IconDrawing& drawing_;
};

}  // namespace

QIcon MakeIcon(const CString& name) {
  const auto* drawing = FindDrawing(name);
  return drawing != nullptr ? QIcon(new DrawingEngine(*drawing)) : QIcon();
}

}  // namespace tallyscope
