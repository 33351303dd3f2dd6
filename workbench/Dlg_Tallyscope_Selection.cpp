// SPDX-License-Identifier: MIT
// Selecting rows of the spreadsheet, and pushing a selection as the new working table.

#include <QLabel>

#include "platform/core/Messages.h"
#include "statistics/Stats_Data.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_Tallyscope.h"
#include "workbench/PP_Base.h"
#include "workbench/PS_BaseTS.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {

void CDlg_Tallyscope::SelectRow(int position, int shift, int control) {
  const auto mode = grid_->GetSelectRowMode();
  if (mode == CTSSelectGridCtrl::eNone) return;
  const bool extends = shift != 0 && mode == CTSSelectGridCtrl::eExtended;
  if (!sessions_.SelectRow(position, {.extends = extends, .removes = control != 0})) return;
  OnSelectionChanged();
  sessions_.ForgetChanges();
}

// After a change of the selection by rows. A page that enables its controls may have the window's enabled too; once is
// enough.
void CDlg_Tallyscope::OnSelectionChanged() {
  grid_->Invalidate();
  pageEnablesControls_ = true;
  RefreshPage();
  pageEnablesControls_ = false;
  EnableControls();
}

void CDlg_Tallyscope::RefreshPage() {
  auto* page = sheet_ ? sheet_->GetActivePage() : nullptr;
  if (page == nullptr) return;
  if (auto* ours = dynamic_cast<CPP_Base*>(page)) ours->EnableControls();
  page->SendMessage(kMessageSelectionChanged);
}

void CDlg_Tallyscope::ShowSelectedCount() {
  auto* label = GetControl<QLabel>(kControlSelected);
  if (label == nullptr || GetData() == nullptr) return;
  const int size = GetData()->GetSize();  // of the stations, also while the spreadsheet shows another table
  const int selected = sessions_.CountSelected();
  label->setText(selected > 0 ? QString("%1 of %2 selected").arg(selected).arg(size)
                              : QString(size == 1 ? "%1 station" : "%1 stations").arg(size));
}

void CDlg_Tallyscope::OnPushData() {
  acts_.Run([this] { Push(); });
}

void CDlg_Tallyscope::Push() {
  if (!sessions_.CanPushSelection()) return;
  if (sheet_) sheet_->Process(0);
  ResetDialog();
  sessions_.PushSelection();
  ConnectSpreadsheet(GetSSData(), highlightKey_);
  UpdateData(false);
  CreatePS(0);
  EnableControls();
  FocusPage();
}

}  // namespace tallyscope
