// SPDX-License-Identifier: MIT
#pragma once

#include "plots/UPlotX_Uni_Scatter.h"
#include "workbench/PP_Base_Graph.h"

namespace tallyscope {

// The "Graph" page of a univariate analysis: the field over the station's number.
class CPP_Univariate_Scatter : public CPP_Base_Graph {
 public:
  CPP_Univariate_Scatter();

  CUPlotX_Tallyscope* GetPlot() override { return &plot_; }
  CString GetRegistryID() override { return "UniScatter_"; }
  void Initialise() override;
  bool OnSetActive() override;  // brings the working table back to the spreadsheet

 private:
  CUPlotX_Uni_Scatter plot_;
};

}  // namespace tallyscope
