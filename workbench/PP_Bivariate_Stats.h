// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/PP_Stats.h"

namespace tallyscope {

class CGridCtrl;
class CStats_Bivariate;
struct GV_DISPINFO;

// The "Statistics" page of a bivariate analysis: the figures of the pairs, and the curve of E[Y given X] as a table,
// whose cells are read from the session's calculator as they are painted.
class CPP_Bivariate_Stats : public CPP_Stats {
 public:
  CPP_Bivariate_Stats();

  int total = 0;
  int valid = 0;
  int invalid = 0;
  Range x, y;
  double covariance = 0;
  double correlation = 0;
  double inertia = 0;
  double rankCorrelation = 0;
  double intercept = 0;  // of the display line
  double slope = 0;

  void Initialise() override;
  void UploadData() override;
  void DoDataExchange(unsigned control, CDataExchange* exchange) override;
  bool OnSetActive() override;  // brings the working table back to the spreadsheet
  CString GetText() const override;

 protected:
  std::vector<FigureGroup> GetGroups() const override;
  QWidget* CreateBeside() override;
  bool OnNotify(NMHDR* header) override;

 private:
  const CStats_Bivariate* GetPairs() const;
  void SizeGrid();
  void SupplyCell(GV_DISPINFO& info) const;

  CGridCtrl* grid_ = nullptr;
};

}  // namespace tallyscope
