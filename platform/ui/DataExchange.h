// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/String.h"
#include "platform/ui/Wnd.h"

namespace tallyscope {

// One run of data exchange between the controls of a window and its members. A control that is not there is skipped.
class CDataExchange {
 public:
  // Thrown by Fail and caught by CWnd::UpdateData and CPP_Base::UpdateControlData: it never leaves the toolkit.
  struct Failure {};

  CDataExchange(CWnd* window, bool saveAndValidate) : window(window), saveAndValidate(saveAndValidate) {}

  // Shows `sentence` through the modal seam, gives the control the focus and ends the run.
  [[noreturn]] void Fail(int id, const CString& sentence);

  CWnd* const window;
  const bool saveAndValidate;  // true: control to member
};

// Text of a QLabel, QLineEdit or read-only figure.
void DDX_Text(CDataExchange* exchange, int id, CString& value);
void DDX_Text(CDataExchange* exchange, int id, int& value);
// "%.*g" in the user's number characters; typed text is read by ParseStrict (platform/core/NumberText.h).
void DDX_Number(CDataExchange* exchange, int id, double& value, int precision = 15);
void DDX_Number(CDataExchange* exchange, int id, float& value, int precision = 6);
void DDX_Check(CDataExchange* exchange, int id, bool& value);   // QAbstractButton
void DDX_CBIndex(CDataExchange* exchange, int id, int& value);  // current index of a QComboBox, -1 none

}  // namespace tallyscope
