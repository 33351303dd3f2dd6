// SPDX-License-Identifier: MIT
#include "outside/plot/PlotColours.h"

#include <QGuiApplication>
#include <QPalette>

#include "platform/ui/Contrast.h"

namespace tallyscope {

namespace {

constexpr double kSeen = 3;  // least contrast of a mark
constexpr int kSteps = 20;   // to white

}  // namespace

bool PlotColours::IsDark() const {
  return Contrast(ToQColor(paper), Qt::white) > Contrast(ToQColor(paper), Qt::black);
}

COLORREF PlotColours::ForPaper(COLORREF colour) const {
  if (!IsDark()) return colour;
  if (colour == 0) return text;
  const QColor ground = ToQColor(paper);
  for (int step = 0; step < kSteps; ++step) {
    const QColor lighter = Mixed(ToQColor(colour), Qt::white, double(step) / kSteps);
    if (Contrast(ground, lighter) >= kSeen) return FromQColor(lighter);
  }
  return text;
}

PlotColours GetPaletteColours() {
  PlotColours colours;
  if (qGuiApp == nullptr) return colours;
  const QPalette palette = QGuiApplication::palette();
  const QColor paper = palette.color(QPalette::Active, QPalette::Base);
  const QColor text = palette.color(QPalette::Active, QPalette::Text);
  colours.paper = FromQColor(paper);
  colours.text = FromQColor(text);
  colours.frame = FromQColor(Mixed(paper, text, 0.62));
  colours.grid = FromQColor(Mixed(paper, text, 0.09));
  colours.faint = FromQColor(Mixed(paper, text, 0.6));
  return colours;
}

}  // namespace tallyscope
