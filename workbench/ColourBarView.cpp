// SPDX-License-Identifier: MIT
#include "workbench/ColourBarView.h"

#include <QPainter>

#include "platform/core/ShownText.h"
#include "platform/ui/Contrast.h"
#include "platform/ui/PainterDC.h"
#include "platform/ui/PlainText.h"
#include "platform/ui/Wnd.h"
#include "plots/StationText.h"

namespace tallyscope {

namespace {

constexpr int kHeight = 22;

CString Tell(const char* what, const CString& field, double low, double high) {
  return CString(what) + " shows " + ShownText(field) + " from " + ShownNumber(low) + " to " + ShownNumber(high) + ". ";
}

}  // namespace

void ColourBarView::SetLegend(const ModulationLegend& legend, const CString& nulls) {
  legend_ = legend;
  CString text;
  if (!legend.colourField.empty()) text += Tell("Colour", legend.colourField, legend.colourLow, legend.colourHigh);
  if (!legend.sizeField.empty()) text += Tell("Size", legend.sizeField, legend.sizeLow, legend.sizeHigh);
  if (!text.empty()) text += nulls;
  setToolTip(TipText(text));
  setAccessibleDescription(ToQString(text));
  update();
}

QSize ColourBarView::sizeHint() const {
  return {200, kHeight};
}

void ColourBarView::paintEvent(QPaintEvent*) {
  if (legend_.IsEmpty()) return;
  QPainter painter(this);
  CPainterDC dc(painter, {width(), height()});
  DrawLyingLegend(dc, legend_, {0, 0, width(), height()}, FromQColor(palette().color(QPalette::WindowText)));
}

}  // namespace tallyscope
