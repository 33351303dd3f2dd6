// SPDX-License-Identifier: MIT
#pragma once

#include "statistics/Stats_Univariate.h"
#include "workbench/PP_Stats.h"

namespace tallyscope {

// The "Statistics" page of a univariate analysis.
class CPP_Univariate_Stats : public CPP_Stats, public UnivariateFigures {
 public:
  CPP_Univariate_Stats();

  CString direction;  // of the skewness

  void UploadData() override;
  void DoDataExchange(unsigned control, CDataExchange* exchange) override;
  bool OnSetActive() override;  // brings the working table back to the spreadsheet

 protected:
  std::vector<FigureGroup> GetGroups() const override;
};

}  // namespace tallyscope
