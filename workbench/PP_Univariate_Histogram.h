// SPDX-License-Identifier: MIT
#pragma once

#include "plots/UPlotX_Uni_Histogram.h"
#include "statistics/Stats_HistData.h"
#include "workbench/PP_Base_Graph.h"

namespace tallyscope {

// The "Histogram" page of a univariate analysis. While it shows, the spreadsheet's rows are its bins, which are no
// stations: none of them is ever selected or coloured.
class CPP_Univariate_Histogram : public CPP_Base_Graph {
 public:
  CPP_Univariate_Histogram();
  ~CPP_Univariate_Histogram() override;

  CUPlotX_Tallyscope* GetPlot() override { return &plot_; }
  int GetSSCol() override { return 1; }  // the key field has no column there
  CString GetRegistryID() override { return "UniHistogram"; }
  void Initialise() override;
  bool OnSetActive() override;

 private:
  CUPlotX_Uni_Histogram plot_;
  CStats_HistData bins_;
};

}  // namespace tallyscope
