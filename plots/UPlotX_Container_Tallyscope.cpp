// SPDX-License-Identifier: MIT
#include "plots/UPlotX_Container_Tallyscope.h"

#include <QIcon>
#include <QPixmap>

#include "platform/ui/Icon.h"
#include "plots/UPlotX_Tallyscope.h"

namespace tallyscope {

namespace {

constexpr int kCursorSize = 24;
constexpr int kLensX = 10;  // the middle of the magnifier in its drawing
constexpr int kLensY = 10;

}  // namespace

QCursor CUPlotX_Container_Tallyscope::ShowZoomInCursor() const {
  return QCursor(MakeIcon("zoom-in").pixmap(kCursorSize), kLensX, kLensY);
}

QCursor CUPlotX_Container_Tallyscope::ShowZoomOutCursor() const {
  return QCursor(MakeIcon("zoom-out").pixmap(kCursorSize), kLensX, kLensY);
}

QCursor CUPlotX_Container_Tallyscope::ShowPanCursor() const {
  return QCursor(MakeIcon("pan").pixmap(kCursorSize), kCursorSize / 2, kCursorSize / 2);
}

void CUPlotX_Container_Tallyscope::Write2Registry(const CString& prefix) {
  for (int i = 0; i < GetPlotCount(); ++i) {
    if (auto* plot = dynamic_cast<CUPlotX_Tallyscope*>(GetPlot(i))) plot->Write2Registry(prefix);
  }
}

void CUPlotX_Container_Tallyscope::ReadFromRegistry(const CString& prefix) {
  for (int i = 0; i < GetPlotCount(); ++i) {
    if (auto* plot = dynamic_cast<CUPlotX_Tallyscope*>(GetPlot(i))) plot->ReadFromRegistry(prefix);
  }
}

}  // namespace tallyscope
