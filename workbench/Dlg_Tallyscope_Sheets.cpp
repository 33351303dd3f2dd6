// SPDX-License-Identifier: MIT
// The sheet of the current analysis: its calculators, its pages, building and taking down.

#include <algorithm>
#include <memory>

#include "platform/core/StringTable.h"
#include "platform/ui/Icon.h"
#include "platform/ui/WaitCursor.h"
#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Data.h"
#include "workbench/Dlg_Tallyscope.h"
#include "workbench/PS_Bivariate.h"
#include "workbench/PS_Spatial.h"
#include "workbench/PS_Univariate.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {

void CDlg_Tallyscope::RefreshDialog(bool save) {
  acts_.Run([this, save] {
    if (save && sheet_) sheet_->Process(0);
    const int page = sheet_ ? sheet_->GetActiveIndex() : 0;
    ResetDialog();
    CreatePS(page);
  });
}

void CDlg_Tallyscope::ResetDialog() {
  DestroyPSheet();
  setWindowIcon(MakeIcon("app"));
  SetWindowText(LoadString(kStringTallyscope));
  SetWindowText(savedTitle_);
  update();
}

// A focus that dies goes to the next control in turn, which may be OK, and the next Space then ends the window. So it
// is taken off the sheet before.
void CDlg_Tallyscope::DestroyPSheet() {
  if (sheet_ && (sheet_.get() == focusWidget() || sheet_->isAncestorOf(focusWidget()))) {
    parkedFocus_ = GetFocusPlace();
    parkedFocus_->setFocus(Qt::OtherFocusReason);
  }
  sheet_.reset();
}

bool CDlg_Tallyscope::HasSheet(CTallyscope::eAnalysisMode mode) const {
  return mode == CTallyscope::eUnivariate || mode == CTallyscope::eBivariate || mode == CTallyscope::eSpatial;
}

void CDlg_Tallyscope::CreatePS(int startPage) {
  if (std::find(modes_.begin(), modes_.end(), GetMode()) == modes_.end()) return;
  const CWaitCursor wait;
  update();
  grid_->Invalidate();
  switch (GetMode()) {
    case CTallyscope::eUnivariate:
      return Start_Univariate(startPage);
    case CTallyscope::eBivariate:
      return Start_Bivariate(startPage);
    case CTallyscope::eSpatial:
      return Start_Spatial(startPage);
    default:
      return;
  }
}

void CDlg_Tallyscope::Start_Univariate(int startPage) {
  SetUniDim(GetTallyscope()->GetUniDim());
  CreateSC_Univariate();
  CreatePS_Univariate(0, startPage);
}

// A table without two fields to compare, or dims that it does not have, get no sheet.
void CDlg_Tallyscope::Start_Bivariate(int startPage) {
  SetBiDim1(GetTallyscope()->GetBiDim1());
  SetBiDim2(GetTallyscope()->GetBiDim2());
  if (!sessions_.HasKeyAndAncillary()) return;
  CreateSC_Bivariate();
  CreatePS_Bivariate(0, startPage);
}

void CDlg_Tallyscope::Start_Spatial(int startPage) {
  SetSPDim(GetTallyscope()->GetSPDim());
  CreateSC_Spatial();
  CreatePS_Spatial(0, startPage);
}

void CDlg_Tallyscope::CreateSC_Univariate() {
  DestroyCalculator();
  CreateSpatialCalculator();
  GetTallyscope()->CreateCalculator();
  auto* calculator = GetCalculator();
  if (!calculator->IsItem(0)) calculator->Add(GetData(), GetKeyDim());
  calculator->Calculate(11, nullptr);
  hoverStation_ = -1;
}

void CDlg_Tallyscope::CreateSC_Bivariate() {
  DestroyCalculator();
  CreateSpatialCalculator();
  SetBiDim1(GetTallyscope()->GetBiDim1());
  SetBiDim2(GetTallyscope()->GetBiDim2());
  GetTallyscope()->CreateCalculator();
  auto* calculator = dynamic_cast<CStats_Bivariate*>(GetCalculator());
  calculator->Add(GetData(), GetKeyDim());
  calculator->Add(GetData(), GetAncDim());
  calculator->xLink = GetUniStats(GetKeyDim());
  calculator->yLink = GetUniStats(GetAncDim());
  calculator->Calculate(15, nullptr);
  SearchBy(calculator->GetItemDim(0), calculator->GetItemDim(1), -3, 2);
  hoverStation_ = -1;
}

void CDlg_Tallyscope::CreateSC_Spatial() {
  DestroyCalculator();
  CreateSpatialCalculator();
  SearchBy(-1, -2, -3, GetDimension());
  GetTallyscope()->CreateCalculator();
  auto* calculator = GetTallyscope()->GetOwnCalculator();
  for (int axis = -1; axis >= -std::max(GetDimension(), 1); --axis) calculator->Add(GetData(), axis);
  calculator->Calculate(1, nullptr);
  hoverStation_ = -1;
}

// Nothing is computed yet: the variogram pages do that when they need it.
void CDlg_Tallyscope::CreateSC_Variogram() {
  DestroyCalculator();
  CreateSpatialCalculator();
  SearchBy(-1, -2, -3, GetDimension());
  GetTallyscope()->CreateCalculator();
  auto* calculator = GetCalculator();
  if (!calculator->IsItem(0)) calculator->Add(GetData(), GetKeyDim());
  hoverStation_ = -1;
}

// Gives the spatial calculator and the table's search the same dims, and builds the search.
void CDlg_Tallyscope::SearchBy(int x, int y, int z, int count) {
  GetSpatialCalculator()->SetSpatialDims(x, y, z, count);
  GetData()->GetPointSearch()->SetFields(x, y, z, count);
  GetData()->PreparePointSearch(nullptr);
}

// Pages in the order of their tabs.

void CDlg_Tallyscope::CreatePS_Univariate(int wizard, int startPage) {
  DestroyPSheet();
  auto sheet = std::make_unique<CPS_Univariate>(this, 0);
  sheet->CreatePPUnivariateScatter();
  sheet->CreatePPUnivariateStats();
  sheet->CreatePPUnivariateHistogram();
  StartSheet(std::move(sheet), wizard, startPage, kStringUnivariate);
}

void CDlg_Tallyscope::CreatePS_Bivariate(int wizard, int startPage) {
  DestroyPSheet();
  auto sheet = std::make_unique<CPS_Bivariate>(this, 0);
  sheet->CreatePPBivariateScatter();
  sheet->CreatePPBivariateStats();
  StartSheet(std::move(sheet), wizard, startPage, kStringBivariate);
}

void CDlg_Tallyscope::CreatePS_Spatial(int wizard, int startPage) {
  DestroyPSheet();
  auto sheet = std::make_unique<CPS_Spatial>(this, 0);
  if (GetDimension() == 2) sheet->CreatePPSpatialScatter();
  sheet->CreatePPSpatialStats();
  StartSheet(std::move(sheet), wizard, startPage, kStringSpatial);
}

void CDlg_Tallyscope::StartSheet(std::unique_ptr<CPS_BaseTS> sheet, int wizard, int startPage, int titleId) {
  sheet_ = std::move(sheet);
  sheet_->SetDlg(this);
  sheet_->SetStartPage(startPage);
  if (wizard != 0) sheet_->style |= kPropertySheetWizard;
  sheet_->icon = MakeIcon("app");
  sheet_->title = LoadString(titleId);
  sheet_->Embed(1);
  EmbedSheet();
}

}  // namespace tallyscope
