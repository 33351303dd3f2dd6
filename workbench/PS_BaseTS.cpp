// SPDX-License-Identifier: MIT
#include "workbench/PS_BaseTS.h"

#include "workbench/Dlg_Tallyscope.h"
#include "workbench/PP_Base.h"

namespace tallyscope {

CDlg_Tallyscope* CPS_BaseTS::GetDlg() const {
  return dynamic_cast<CDlg_Tallyscope*>(CPS_Base::GetDlg());
}

void CPS_BaseTS::Initialise() {
  CPS_Base::Initialise();
  for (int i = 0; i < GetPageCount(); ++i) {
    if (auto* page = dynamic_cast<CPP_Base*>(GetPage(i))) page->PrePSFinalise();
  }
}

void CPS_BaseTS::Write2Registry() {
  for (int i = 0; i < GetPageCount(); ++i) {
    if (auto* page = dynamic_cast<CPP_Base*>(GetPage(i))) page->Write2Registry();
  }
}

CString CPS_BaseTS::GetAppTitle() {
  return "Tallyscope - ";
}

}  // namespace tallyscope
