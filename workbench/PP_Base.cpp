// SPDX-License-Identifier: MIT
#include "workbench/PP_Base.h"

#include <QAbstractButton>

#include "platform/core/Messages.h"
#include "platform/core/StringTable.h"
#include "platform/ui/DataExchange.h"
#include "platform/ui/Dialog.h"
#include "platform/ui/Icon.h"
#include "platform/ui/WinApp.h"
#include "workbench/PS_Base.h"

namespace tallyscope {

CPP_Base::CPP_Base(int templateId, const CString& caption) : CPropertyPage(templateId, caption) {}

CWnd* CPP_Base::GetDlg() const {
  return sheet != nullptr ? sheet->GetDlg() : nullptr;
}

CProfile& CPP_Base::GetApp() const {
  return GetProfile();
}

void CPP_Base::Initialise() {
  initialised_ = 1;
  UpdateData(false);
}

bool CPP_Base::OnInitDialog() {
  Initialise();
  return true;
}

void CPP_Base::SetDataChanged(unsigned flags, int add) {
  dataChanged = add != 0 ? dataChanged | flags : flags;
  if (flags != 0 && sheet != nullptr) sheet->processed = false;
}

int CPP_Base::UpdateControlData(unsigned control, int save) {
  CDataExchange exchange(this, save != 0);
  try {
    Exchange(control, &exchange);
  } catch (const CDataExchange::Failure&) {
  }
  return 1;
}

void CPP_Base::DoDataExchange(CDataExchange* exchange) {
  Exchange(kAllControls, exchange);
}

void CPP_Base::Exchange(unsigned control, CDataExchange* exchange) {
  DoDataExchange(control, exchange);
  if (!exchange->saveAndValidate) return;
  SetDataChanged(static_cast<unsigned>(DownloadData()), 1);
  EnableControls();
}

bool CPP_Base::OnSetActive() {
  UploadData();
  UpdateData(false);
  EnableControls();
  ShowTitle();
  if (sheet != nullptr && sheet->IsInitialised()) SetWizardButtons();
  return CPropertyPage::OnSetActive();
}

void CPP_Base::ShowTitle() {
  if (sheet == nullptr) return;
  CWnd* dialog = sheet->GetDlg();
  if (dialog != nullptr) dialog->GetWidget()->setWindowIcon(sheet->icon.isNull() ? MakeIcon("app") : sheet->icon);
  const CString page = sheet->IsWizardMode() ? " - " + GetCaption() : CString();
  if (sheet->IsEmbedded() == 0) {
    sheet->SetTitle(sheet->title + page);
  } else if (dialog != nullptr) {
    dialog->SetWindowText(sheet->GetAppTitle() + sheet->title + page);
  }
}

void CPP_Base::SetWizardButtons() {
  if (sheet->IsWizardMode()) {
    const int active = sheet->GetActiveIndex();
    const bool last = active == sheet->GetPageCount() - 1;
    sheet->CPropertySheet::SetWizardButtons((active > 0 ? kWizardBack : 0) | (last ? kWizardFinish : kWizardNext));
    return;
  }
  if (sheet->IsEmbedded() == 0) return;
  for (const int id : {kIdCancel, kIdOk, kIdHelp}) {
    auto* button = sheet->GetControl<QAbstractButton>(id);
    if (button == nullptr) continue;
    if (id == kIdOk) button->setText(ToQString(LoadString(kStringOk)));
    if (id == kIdHelp) button->setText(ToQString(LoadString(kStringHelp)));
    sheet->ShowDlgItem(id, true);
    sheet->EnableDlgItem(id, true);
  }
  EnableControls();
}

void CPP_Base::OnOK() {
  if (sheet->Process(0) == 0) sheet->Cancel();
}

void CPP_Base::OnCancel() {
  CPropertyPage::OnCancel();
  sheet->Cancel();
}

bool CPP_Base::OnApply() {
  sheet->Process(1);
  return false;
}

bool CPP_Base::OnWizardFinish() {
  sheet->Process(0);
  return CPropertyPage::OnWizardFinish();
}

bool CPP_Base::OnNotify(NMHDR* header) {
  if (header->code != kNotifyApply) return CPropertyPage::OnNotify(header);
  auto* notify = static_cast<PSHNOTIFY*>(header);
  if (notify->close) {
    if (sheet->GetPage(sheet->GetPageCount() - 1) == this) OnOK();
    notify->result = 0;
  } else {
    notify->result = OnApply() ? 0 : 2;
  }
  return true;
}

}  // namespace tallyscope
