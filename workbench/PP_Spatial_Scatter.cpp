// SPDX-License-Identifier: MIT
#include "workbench/PP_Spatial_Scatter.h"

#include "workbench/GraphControls.h"

namespace tallyscope {

CPP_Spatial_Scatter::CPP_Spatial_Scatter() : CPP_Base_Graph(kPageSpatialScatter, "Graph") {}

CPP_Spatial_Scatter::~CPP_Spatial_Scatter() = default;

void CPP_Spatial_Scatter::Initialise() {
  CPP_Base_Graph::Initialise();
  GetContainer().SetZoomAxes(3);
  plot_.TakeExtents();
  FinishInitialise();
}

}  // namespace tallyscope
