// SPDX-License-Identifier: MIT
#include "workbench/PP_Univariate_Histogram.h"

#include "statistics/Stats_Univariate.h"
#include "workbench/Dlg_Tallyscope.h"
#include "workbench/GraphControls.h"

namespace tallyscope {

CPP_Univariate_Histogram::CPP_Univariate_Histogram() : CPP_Base_Graph(kPageUnivariateHistogram, "Histogram") {}

// The spreadsheet lets go of the bins before they end: a push or pop comes back to the session later.
CPP_Univariate_Histogram::~CPP_Univariate_Histogram() {
  auto* dialog = GetDlg();
  if (dialog == nullptr || dialog->GetTallyscope() == nullptr || dialog->GetSSData() != &bins_) return;
  dialog->SetAllowSSSelection(true);  // not every page sees to that when it shows
  dialog->ConnectSpreadsheet(dialog->GetData(), true);
}

void CPP_Univariate_Histogram::Initialise() {
  CPP_Base_Graph::Initialise();
  HideSize();
  HideColour();
  GetContainer().SetZoomAxes(1);
  SetTip(kGraphSelectPoly, "Polygon selection: not on a histogram; a rectangle selects a range of values here");
  plot_.TakeExtents();
  if (auto* figures = dynamic_cast<CStats_Univariate*>(plot_.calculator)) bins_.histogram = &figures->binnedHistogram;
  FinishInitialise();
}

bool CPP_Univariate_Histogram::OnSetActive() {
  const bool active = CPP_Base_Graph::OnSetActive();
  GetDlg()->SetAllowSSSelection(false);
  plot_.ResetSelCount();
  GetDlg()->ConnectSpreadsheet(&bins_, false);
  return active;
}

}  // namespace tallyscope
