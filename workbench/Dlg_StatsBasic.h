// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ui/Dialog.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

// A small summary of one field, opened from the spreadsheet's menu.
class CDlg_StatsBasic : public CDialog, public UnivariateFigures {
 public:
  explicit CDlg_StatsBasic(CWnd* parent = nullptr);

  CString title;

  void SetFigures(const UnivariateFigures& figures) { static_cast<UnivariateFigures&>(*this) = figures; }

 protected:
  void CreateControls() override;
  bool OnInitDialog() override;
  void DoDataExchange(CDataExchange* exchange) override;
};

}  // namespace tallyscope
