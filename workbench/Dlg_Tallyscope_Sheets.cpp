// SPDX-License-Identifier: MIT
// The sheet of the current analysis: its calculators, its pages, building and taking down.

#include <algorithm>
#include <cassert>
#include <iterator>
#include <memory>

#include "platform/core/StringTable.h"
#include "platform/ui/Icon.h"
#include "platform/ui/WaitCursor.h"
#include "statistics/Analysis.h"
#include "statistics/AnalysisKind.h"
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

// What the window adds to an analysis: the bits of EnableShow that offer it, and its sheet; null for none yet.
struct CDlg_Tallyscope::SheetRow {
  CTallyscope::eAnalysisMode mode;
  unsigned long show;
  void (CDlg_Tallyscope::*start)(int startPage);
};

const CDlg_Tallyscope::SheetRow& CDlg_Tallyscope::GetSheetRow(CTallyscope::eAnalysisMode mode) {
  static constexpr SheetRow kRows[] = {{CTallyscope::eUnivariate, kShowUnivariate, &CDlg_Tallyscope::Start_Univariate},
                                       {CTallyscope::eBivariate, kShowBivariate, &CDlg_Tallyscope::Start_Bivariate},
                                       {CTallyscope::eSpatial, kShowSpatial, &CDlg_Tallyscope::Start_Spatial},
                                       {CTallyscope::eVariogram, kShowVariogram | kShowVariogramModel, nullptr},
                                       {CTallyscope::eMultivariate, 0, nullptr}};
  const auto* found =
      std::find_if(std::begin(kRows), std::end(kRows), [&](const SheetRow& row) { return row.mode == mode; });
  assert(found != std::end(kRows));
  return *found;
}

bool CDlg_Tallyscope::HasSheet(CTallyscope::eAnalysisMode mode) const {
  return GetAnalysisKind(mode).hasPages;
}

bool CDlg_Tallyscope::IsModeOffered(CTallyscope::eAnalysisMode mode) const {
  return GetData() != nullptr && HasSheet(mode) && GetAnalysisKind(mode).IsPossible(*GetData()) &&
         IsEnabledShow(GetSheetRow(mode).show);
}

void CDlg_Tallyscope::CreatePS(int startPage) {
  if (std::find(modes_.begin(), modes_.end(), GetMode()) == modes_.end()) return;
  const CWaitCursor wait;
  update();
  grid_->Invalidate();
  if (const auto start = GetSheetRow(GetMode()).start) (this->*start)(startPage);
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

// The steps are virtual for subclasses; all of them start the session's mode.

void CDlg_Tallyscope::CreateSC_Univariate() {
  StartSession();
}

void CDlg_Tallyscope::CreateSC_Bivariate() {
  StartSession();
}

void CDlg_Tallyscope::CreateSC_Spatial() {
  StartSession();
}

void CDlg_Tallyscope::CreateSC_Variogram() {
  StartSession();
}

void CDlg_Tallyscope::StartSession() {
  [[maybe_unused]] const bool started = CAnalysis(*GetTallyscope()).Start(nullptr);
  assert(started);  // modes that the table can't have aren't offered, and fields are repaired before
  hoverStation_ = -1;
}

// Pages in the order of their tabs.

void CDlg_Tallyscope::CreatePS_Univariate(int wizard, int startPage) {
  DestroyPSheet();
  auto sheet = std::make_unique<CPS_Univariate>(this, 0);
  sheet->CreatePPUnivariateScatter();
  sheet->CreatePPUnivariateStats();
  sheet->CreatePPUnivariateHistogram();
  StartSheet(std::move(sheet), wizard, startPage);
}

void CDlg_Tallyscope::CreatePS_Bivariate(int wizard, int startPage) {
  DestroyPSheet();
  auto sheet = std::make_unique<CPS_Bivariate>(this, 0);
  sheet->CreatePPBivariateScatter();
  sheet->CreatePPBivariateStats();
  StartSheet(std::move(sheet), wizard, startPage);
}

void CDlg_Tallyscope::CreatePS_Spatial(int wizard, int startPage) {
  DestroyPSheet();
  auto sheet = std::make_unique<CPS_Spatial>(this, 0);
  if (GetDimension() == 2) sheet->CreatePPSpatialScatter();
  sheet->CreatePPSpatialStats();
  StartSheet(std::move(sheet), wizard, startPage);
}

void CDlg_Tallyscope::StartSheet(std::unique_ptr<CPS_BaseTS> sheet, int wizard, int startPage) {
  sheet_ = std::move(sheet);
  sheet_->SetDlg(this);
  sheet_->SetStartPage(startPage);
  if (wizard != 0) sheet_->style |= kPropertySheetWizard;
  sheet_->icon = MakeIcon("app");
  sheet_->title = LoadString(GetAnalysisKind(GetMode()).title);
  sheet_->Embed(1);
  EmbedSheet();
}

}  // namespace tallyscope
