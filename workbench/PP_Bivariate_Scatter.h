// SPDX-License-Identifier: MIT
#pragma once

#include "plots/UPlotX_Bi_Scatter.h"
#include "workbench/PP_Base_Graph.h"

namespace tallyscope {

// The "Graph" page of a bivariate analysis.
class CPP_Bivariate_Scatter : public CPP_Base_Graph {
 public:
  CPP_Bivariate_Scatter();
  ~CPP_Bivariate_Scatter() override;

  CUPlotX_Tallyscope* GetPlot() override { return &plot_; }
  CString GetRegistryID() override { return "BiScatter_"; }
  void Initialise() override;
  bool OnSetActive() override;  // brings the working table back to the spreadsheet

 protected:
  CString GetNullNote() const override { return "Stations without a value are black, and of the usual size."; }

 private:
  CUPlotX_Bi_Scatter plot_;
};

}  // namespace tallyscope
