// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>

#include <QPointer>
#include <QString>
#include <QWidget>

#include "platform/core/String.h"

namespace tallyscope {

class CDataExchange;

inline QString ToQString(const CString& text) {
  return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}
inline CString FromQString(const QString& text) {
  return text.toStdString();
}

// Puts the controls inside `part` right after `before` in the order of the Tab key, as they were made among themselves.
void SetTabOrderAfter(QWidget* before, QWidget* part);

// What a control tells its parent window (kNotify... codes in platform/core/Messages.h). Controls send their own
// records that begin with this one.
struct NMHDR {
  int idFrom = 0;  // control id of the sender
  int code = 0;
};

// What every window of ours has beside being a Qt widget: controls by id, messages, notifications, data exchange. A
// class derives from its Qt widget and from CWnd, and answers GetWidget with itself.
class CWnd {
 public:
  CWnd() = default;
  CWnd(const CWnd&) = delete;
  CWnd& operator=(const CWnd&) = delete;
  virtual ~CWnd() = default;

  virtual QWidget* GetWidget() = 0;

  // Registers a control under its id. `caption` becomes its accessible name and the base of its object name.
  void AddControl(int id, QWidget* control, const CString& caption);
  QWidget* GetDlgItem(int id) const;  // null if there is none
  template <class Widget>
  Widget* GetControl(int id) const {
    return dynamic_cast<Widget*>(GetDlgItem(id));
  }
  void EnableDlgItem(int id, bool enable);  // a missing control is left alone
  void ShowDlgItem(int id, bool show);

  // Calls OnMessage at once, or from the event loop. A posted message dies with its target.
  std::intptr_t SendMessage(unsigned message, std::uintptr_t wParam = 0, std::intptr_t lParam = 0);
  void PostMessage(unsigned message, std::uintptr_t wParam = 0, std::intptr_t lParam = 0);
  // Sends a control's notification; false when this window did not answer it.
  bool SendNotify(NMHDR* header) { return OnNotify(header); }

  // Moves data between all controls and members: save is control to member. False when a control's text was refused;
  // the user has been told, and the control has the focus.
  bool UpdateData(bool save);

  void SetWindowText(const CString& text);
  CString GetWindowText();

 protected:
  virtual std::intptr_t OnMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam);
  virtual bool OnNotify(NMHDR* header);
  virtual void DoDataExchange(CDataExchange* exchange);

 private:
  std::map<int, QPointer<QWidget>> controls_;
};

}  // namespace tallyscope
