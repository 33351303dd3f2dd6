// SPDX-License-Identifier: MIT
#include "workbench/Dlg_Tallyscope_Ext.h"

namespace tallyscope {

CDlg_Tallyscope_Ext::CDlg_Tallyscope_Ext() : dialog_(std::make_unique<CDlg_Tallyscope>()) {}

bool CDlg_Tallyscope_Ext::DoModal() {
  if (dialog_->GetTallyscope() == nullptr) return false;
  return dialog_->DoModal() == kIdOk;
}

}  // namespace tallyscope
