// SPDX-License-Identifier: MIT
#include "platform/ui/Wnd.h"

#include <QMetaObject>

#include "platform/ui/DataExchange.h"
#include "platform/ui/PlainText.h"

namespace tallyscope {

void SetTabOrderAfter(QWidget* before, QWidget* part) {
  QList<QWidget*> controls;
  QWidget* each = part;
  do {
    if (each->focusPolicy() != Qt::NoFocus && each->focusProxy() == nullptr &&
        (each == part || part->isAncestorOf(each))) {
      controls.append(each);
    }
    each = each->nextInFocusChain();
  } while (each != part);
  for (auto* control : controls) {
    QWidget::setTabOrder(before, control);
    before = control;
  }
}

void CWnd::AddControl(int id, QWidget* control, const CString& caption) {
  controls_[id] = control;
  control->setAccessibleName(ToQString(caption));
  if (control->objectName().isEmpty()) control->setObjectName(ToQString(caption));
}

QWidget* CWnd::GetDlgItem(int id) const {
  const auto found = controls_.find(id);
  return found == controls_.end() ? nullptr : found->second.data();
}

void CWnd::EnableDlgItem(int id, bool enable) {
  if (auto* control = GetDlgItem(id)) control->setEnabled(enable);
}

void CWnd::ShowDlgItem(int id, bool show) {
  if (auto* control = GetDlgItem(id)) control->setVisible(show);
}

std::intptr_t CWnd::SendMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) {
  return OnMessage(message, wParam, lParam);
}

void CWnd::PostMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) {
  // The widget is the context: a message to a window that has gone by then is dropped.
  QMetaObject::invokeMethod(
      GetWidget(), [this, message, wParam, lParam] { OnMessage(message, wParam, lParam); }, Qt::QueuedConnection);
}

bool CWnd::UpdateData(bool save) {
  CDataExchange exchange(this, save);
  try {
    DoDataExchange(&exchange);
  } catch (const CDataExchange::Failure&) {
    return false;
  }
  return true;
}

void CWnd::SetWindowText(const CString& text) {
  GetWidget()->setWindowTitle(TitleText(text));
}

CString CWnd::GetWindowText() {
  return FromTitleText(GetWidget()->windowTitle());
}

std::intptr_t CWnd::OnMessage(unsigned, std::uintptr_t, std::intptr_t) {
  return 0;
}

bool CWnd::OnNotify(NMHDR*) {
  return false;
}

void CWnd::DoDataExchange(CDataExchange*) {}

}  // namespace tallyscope
