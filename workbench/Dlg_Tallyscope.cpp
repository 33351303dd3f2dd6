// SPDX-License-Identifier: MIT
#include "workbench/Dlg_Tallyscope.h"

#include <algorithm>

#include <QAbstractButton>
#include <QComboBox>
#include <QDesktopServices>
#include <QUrl>

#include "gridctrl/GridCtrl.h"
#include "platform/core/StringTable.h"
#include "platform/ui/DataExchange.h"
#include "platform/ui/Icon.h"
#include "platform/ui/WinApp.h"
#include "statistics/AnalysisKind.h"
#include "statistics/DimIndex.h"
#include "statistics/Stats_Data.h"
#include "workbench/ControlIds.h"
#include "workbench/FieldBox.h"
#include "workbench/PS_BaseTS.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {

CDlg_Tallyscope::CDlg_Tallyscope(CWnd* parent) : CDialog(parent) {
  SetWindowText("Tallyscope");
  setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                 Qt::WindowCloseButtonHint);
}

CDlg_Tallyscope::~CDlg_Tallyscope() {
  DestroyPSheet();
  CDlg_Tallyscope::Destroy();
}

int CDlg_Tallyscope::GetDimension() const {
  return GetData()->GetSpatialSize();
}

void CDlg_Tallyscope::PopData() {
  acts_.Run([this] { Pop(); });
}

void CDlg_Tallyscope::Pop() {
  if (sessions_.GetDepth() < 2) return;
  ResetDialog();
  sessions_.Pop();
  ConnectSpreadsheet(GetSSData(), highlightKey_);
  UpdateData(false);
  CreatePS(0);
}

void CDlg_Tallyscope::Destroy() {
  sessions_.EndAll();
}

// Opening.

bool CDlg_Tallyscope::OnInitDialog() {
  FillModes();
  ConnectSpreadsheet(GetSSData(), true);
  FillBoxes();
  savedTitle_ = GetWindowText();
  ShowStatus("");
  CDialog::OnInitDialog();
  EnableControls();
  CreatePS(0);
  ShowDlgItem(kControlHelp, !helpFile_.empty());
  grid_->AutoSizeColumns();
  RestoreLayout();
  return true;
}

void CDlg_Tallyscope::OnOK() {
  acts_.Run([this] {
    acts_.Forget();
    CDialog::OnOK();
  });
}

void CDlg_Tallyscope::OnCancel() {
  acts_.Run([this] {
    acts_.Forget();
    CDialog::OnCancel();
  });
}

void CDlg_Tallyscope::OnDestroy() {
  SaveLayout();
  DestroyPSheet();
  CDialog::OnDestroy();
}

void CDlg_Tallyscope::FillModes() {
  modes_.clear();
  for (const auto& kind : GetAnalysisKinds()) {
    if (IsModeOffered(kind.mode)) modes_.push_back(kind.mode);
  }
}

void CDlg_Tallyscope::FillBoxes() {
  auto* modeBox = GetControl<QComboBox>(kControlMode);
  for (const auto mode : modes_) modeBox->addItem(ToQString(LoadString(GetAnalysisKind(mode).title)));
  if (GetData() == nullptr) return;
  const QStringList names = GetFieldNames(*GetData());
  for (const int id : {kControlKeyField, kControlAncField}) FillFieldBox(*GetControl<QComboBox>(id), names);
}

void CDlg_Tallyscope::DoDataExchange(CDataExchange* exchange) {
  const int axes = GetData() != nullptr ? GetDimension() : 0;
  if (!exchange->saveAndValidate) {
    const auto found = std::find(modes_.begin(), modes_.end(), GetMode());
    modeIndex_ = found == modes_.end() ? -1 : static_cast<int>(found - modes_.begin());
    keyIndex_ = IndexFromDim(GetKeyDim(), axes);
    ancIndex_ = IndexFromDim(GetAncDim(), axes);
  }
  DDX_CBIndex(exchange, kControlMode, modeIndex_);
  DDX_CBIndex(exchange, kControlKeyField, keyIndex_);
  DDX_CBIndex(exchange, kControlAncField, ancIndex_);
  if (!exchange->saveAndValidate || modeIndex_ < 0 || keyIndex_ < 0) return;
  const int key = DimFromIndex(keyIndex_, axes);
  const AnalysisKind& kind = GetAnalysisKind(GetMode());
  (GetTallyscope()->*kind.setKey)(key);
  if (kind.fields > 1) SetBiDim2(DimFromIndex(std::max(ancIndex_, 0), axes));
  SetMode(modes_[static_cast<std::size_t>(modeIndex_)]);
}

void CDlg_Tallyscope::EnableControls() {
  if (pageEnablesControls_) return;
  const bool two = GetAnalysisKind(GetMode()).fields > 1;
  EnableDlgItem(kControlKeyField, true);
  ShowDlgItem(kControlKeyField, true);
  EnableDlgItem(kControlAncField, two);
  ShowDlgItem(kControlAncField, two);
  ancLabel_->setVisible(two);
  EnableDlgItem(kControlPop, sessions_.GetDepth() > 1);
  EnableDlgItem(kControlPush, sessions_.CanPushSelection());
  ShowSelectedCount();
}

// The user's choices.

void CDlg_Tallyscope::OnSelchangeMode() {
  acts_.Run([this] {
    if (sheet_) sheet_->Process(0);
    const auto before = GetMode();
    UpdateData(true);
    EnableControls();
    if (GetMode() == before) return;
    ResetDialog();
    sessions_.RepairFields();
    UpdateData(false);
    CreatePS(0);
  });
}

void CDlg_Tallyscope::OnSelchangeKeyField() {
  acts_.Run([this] {
    if (sheet_) sheet_->Process(0);
    const int before = GetKeyDim();
    UpdateData(true);
    if (GetKeyDim() == before) return;
    RefreshDialog(false);
    ShowKeyColumn();
  });
}

// Brings the key field's column into view, at the rows that are there.
void CDlg_Tallyscope::ShowKeyColumn() {
  if (GetSSData() == GetData() && GetData() != nullptr) {
    grid_->EnsureVisible(grid_->GetTopLeft().row, IndexFromDim(GetKeyDim(), GetDimension()) + 1);
  }
}

void CDlg_Tallyscope::OnSelchangeAncField() {
  acts_.Run([this] {
    if (sheet_) sheet_->Process(0);
    const int before = GetAncDim();
    UpdateData(true);
    if (GetAncDim() != before) RefreshDialog(false);
  });
}

void CDlg_Tallyscope::OnPopData() {
  acts_.Run([this] {
    Pop();
    EnableControls();
    FocusPage();
  });
}

// Opens the help page of the mode shown. The help file lies beside the product's program, whose path the profile keeps.
void CDlg_Tallyscope::OnHelp() {
  if (helpFile_.empty() || helpProduct_.empty()) return;
  const CString section = "Software\\Qorvane\\" + helpProduct_ + "\\Settings";
  const CString program = GetProfile().GetProfileString(section, "ProgramPath", "");
  const CString folder = program.substr(0, program.find_last_of("\\/") + 1);
  static constexpr int kFirstContext = 160058;  // in the order of the mode box's strings
  const int context = kFirstContext + GetAnalysisKind(GetMode()).title - kStringUnivariate;
  QUrl page = QUrl::fromLocalFile(ToQString(folder + helpFile_));
  page.setFragment(QString::number(context));
  QDesktopServices::openUrl(page);
}

}  // namespace tallyscope
