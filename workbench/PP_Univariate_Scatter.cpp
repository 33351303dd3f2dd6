// SPDX-License-Identifier: MIT
#include "workbench/PP_Univariate_Scatter.h"

#include "workbench/Dlg_Tallyscope.h"
#include "workbench/GraphControls.h"

namespace tallyscope {

CPP_Univariate_Scatter::CPP_Univariate_Scatter() : CPP_Base_Graph(kPageUnivariateScatter, "Graph") {}

void CPP_Univariate_Scatter::Initialise() {
  CPP_Base_Graph::Initialise();
  HideSize();
  GetContainer().SetZoomAxes(1);
  SetTip(kGraphSelectPoly, "Polygon selection: not on a trace; a rectangle selects stations here");
  plot_.TakeExtents();
  FinishInitialise();
}

bool CPP_Univariate_Scatter::OnSetActive() {
  GetDlg()->ConnectSpreadsheet(GetDlg()->GetData(), true);
  return CPP_Base_Graph::OnSetActive();
}

}  // namespace tallyscope
