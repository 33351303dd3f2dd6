// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/PS_Base.h"

namespace tallyscope {

class CDlg_Tallyscope;

// Base of the analysis sheets, bound to the workbench's dialog.
class CPS_BaseTS : public CPS_Base {
 public:
  using CPS_Base::CPS_Base;

  CDlg_Tallyscope* GetDlg() const;
  void Initialise() override;  // asks each page for PrePSFinalise
  CString GetAppTitle() override;
};

}  // namespace tallyscope
