// SPDX-License-Identifier: MIT
#include "workbench/PP_BaseTS.h"

#include "workbench/Dlg_Tallyscope.h"

namespace tallyscope {

CDlg_Tallyscope* CPP_BaseTS::GetDlg() const {
  return dynamic_cast<CDlg_Tallyscope*>(CPP_Base::GetDlg());
}

void CPP_BaseTS::ConnectWorkingTable() {
  GetDlg()->ConnectSpreadsheet(GetDlg()->GetData(), true);
  GetDlg()->SetAllowSSSelection(true);
  GetDlg()->UpdateSortFlag();
}

}  // namespace tallyscope
