// SPDX-License-Identifier: MIT
#pragma once

#include "statistics/Stats_Univariate.h"
#include "workbench/PP_BaseTS.h"

namespace tallyscope {

class FigurePanel;

// The "Statistics" page of a univariate analysis: copies of the field's figures, renewed each time the page is shown.
class CPP_Univariate_Stats : public CPP_BaseTS, public UnivariateFigures {
 public:
  CPP_Univariate_Stats();

  CString direction;  // of the skewness

  void UploadData() override;
  void DoDataExchange(unsigned control, CDataExchange* exchange) override;
  bool OnSetActive() override;  // brings the working table back to the spreadsheet

 protected:
  void CreateControls() override;

 private:
  FigurePanel* figures_ = nullptr;
};

}  // namespace tallyscope
