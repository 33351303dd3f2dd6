// SPDX-License-Identifier: MIT
#include "platform/ui/WaitCursor.h"

#include <QCursor>
#include <QGuiApplication>

namespace tallyscope {

CWaitCursor::CWaitCursor() {
  if (qGuiApp != nullptr) QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
}

CWaitCursor::~CWaitCursor() {
  if (qGuiApp != nullptr) QGuiApplication::restoreOverrideCursor();
}

}  // namespace tallyscope
