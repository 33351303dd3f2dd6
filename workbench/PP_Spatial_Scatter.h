// SPDX-License-Identifier: MIT
#pragma once

#include "plots/UPlotX_St_Scatter.h"
#include "workbench/PP_Base_Graph.h"

namespace tallyscope {

// The "Graph" page of a spatial analysis: the map of the stations.
class CPP_Spatial_Scatter : public CPP_Base_Graph {
 public:
  CPP_Spatial_Scatter();
  ~CPP_Spatial_Scatter() override;

  CUPlotX_Tallyscope* GetPlot() override { return &plot_; }
  CString GetRegistryID() override { return "Spatial_"; }
  void Initialise() override;

 protected:
  CString GetNullNote() const override { return "Stations without a value are not shown."; }

 private:
  CUPlotX_St_Scatter plot_;
};

}  // namespace tallyscope
