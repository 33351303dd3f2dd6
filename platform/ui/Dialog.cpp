// SPDX-License-Identifier: MIT
#include "platform/ui/Dialog.h"

#include <QDialogButtonBox>
#include <QPushButton>

#include "platform/ui/Modal.h"

namespace tallyscope {

CDialog::CDialog(CWnd* parent) : QDialog(parent != nullptr ? parent->GetWidget() : nullptr) {}

void CDialog::Create() {
  if (created_) return;
  created_ = true;
  CreateControls();
  OnInitDialog();
}

int CDialog::DoModal() {
  Create();
  const int result = GetModal().RunDialog(*this);
  OnDestroy();
  return result;
}

int CDialog::RunModalLoop() {
  return exec();
}

bool CDialog::OnInitDialog() {
  return UpdateData(false);
}

void CDialog::OnOK() {
  if (UpdateData(true)) EndDialog(kIdOk);
}

void CDialog::OnCancel() {
  EndDialog(kIdCancel);
}

void CDialog::EndDialog(int result) {
  done(result);
}

QWidget* CDialog::CreateButtons(bool cancel) {
  auto* buttons = new QDialogButtonBox(cancel ? QDialogButtonBox::Ok | QDialogButtonBox::Cancel : QDialogButtonBox::Ok);
  AddControl(kIdOk, buttons->button(QDialogButtonBox::Ok), "OK");
  if (cancel) AddControl(kIdCancel, buttons->button(QDialogButtonBox::Cancel), "Cancel");
  QObject::connect(buttons, &QDialogButtonBox::accepted, this, [this] { OnOK(); });
  QObject::connect(buttons, &QDialogButtonBox::rejected, this, [this] { OnCancel(); });
  return buttons;
}

}  // namespace tallyscope
