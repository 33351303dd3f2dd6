// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "workbench/Dlg_Tallyscope.h"

namespace tallyscope {

// What a host opens the workbench with, on its user-interface thread:
//   CDlg_Tallyscope_Ext workbench;
//   workbench.GetDlg()->PushData(&table, /*owns=*/false);   // once, before DoModal; mode and fields as the host likes
//   const bool accepted = workbench.DoModal();
class CDlg_Tallyscope_Ext {
 public:
  CDlg_Tallyscope_Ext();
  CDlg_Tallyscope* GetDlg() const { return dialog_.get(); }
  bool DoModal();  // true when the dialog ended with OK; false at once when no table was pushed
  // Icons and texts are compiled in, so there is no resource handle to give back; the call keeps its place in a host's
  // order of calls.
  void ReleaseRC() {}

 private:
  std::unique_ptr<CDlg_Tallyscope> dialog_;
};

}  // namespace tallyscope
