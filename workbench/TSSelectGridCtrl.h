// SPDX-License-Identifier: MIT
#pragma once

#include "gridctrl/GridCtrl.h"

namespace tallyscope {

// The spreadsheet's grid: clicks on row numbers and headings become messages to the dialog.
class CTSSelectGridCtrl : public CGridCtrl {
 public:
  enum eSelection : int {
    eNone = 0,      // can't be selected
    eSingle = 1,    // one by one; any other non-zero value means the same
    eExtended = 2,  // the Shift key extends
  };

  using CGridCtrl::CGridCtrl;

  void SetSelectRowMode(eSelection mode) { rowMode_ = mode; }
  eSelection GetSelectRowMode() const { return rowMode_; }
  void SetSelectColMode(eSelection mode) { colMode_ = mode; }
  eSelection GetSelectColMode() const { return colMode_; }

  CWnd* parent = nullptr;  // who is told

 protected:
  void OnFixedColumnClick(CCellID& cell) override;
  void OnFixedRowClick(CCellID& cell) override;

 private:
  eSelection rowMode_ = eExtended;
  eSelection colMode_ = eNone;
};

}  // namespace tallyscope
