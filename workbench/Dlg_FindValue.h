// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ui/Dialog.h"

namespace tallyscope {

// Asks what to find in the sorted column of the spreadsheet.
class CDlg_FindValue : public CDialog {
 public:
  explicit CDlg_FindValue(CWnd* parent = nullptr);

  int occurrence = 0;   // 0 first, 1 last
  int comparison = 3;   // 0 "<", 1 "<=", 2 "==", 3 ">=", 4 ">"
  CString value = "0";  // in the user's number characters

 protected:
  void CreateControls() override;
  void DoDataExchange(CDataExchange* exchange) override;
};

}  // namespace tallyscope
