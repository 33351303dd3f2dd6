// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/PP_Base.h"

namespace tallyscope {

class CDlg_Tallyscope;

// Base of the analysis pages, bound to the workbench's dialog. They have no buttons of their own.
class CPP_BaseTS : public CPP_Base {
 public:
  using CPP_Base::CPP_Base;

  CDlg_Tallyscope* GetDlg() const;
  void SetWizardButtons() override {}

 protected:
  // Brings the working table back to the spreadsheet, open to selection, whatever another page has connected.
  void ConnectWorkingTable();
};

}  // namespace tallyscope
