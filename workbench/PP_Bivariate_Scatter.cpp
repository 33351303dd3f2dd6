// SPDX-License-Identifier: MIT
#include "workbench/PP_Bivariate_Scatter.h"

#include "workbench/Dlg_Tallyscope.h"
#include "workbench/GraphControls.h"

namespace tallyscope {

CPP_Bivariate_Scatter::CPP_Bivariate_Scatter() : CPP_Base_Graph(kPageBivariateScatter, "Graph") {}

CPP_Bivariate_Scatter::~CPP_Bivariate_Scatter() = default;

void CPP_Bivariate_Scatter::Initialise() {
  CPP_Base_Graph::Initialise();
  GetContainer().SetZoomAxes(3);
  plot_.TakeExtents();
  FinishInitialise();
}

bool CPP_Bivariate_Scatter::OnSetActive() {
  GetDlg()->ConnectSpreadsheet(GetDlg()->GetData(), true);
  return CPP_Base_Graph::OnSetActive();
}

}  // namespace tallyscope
