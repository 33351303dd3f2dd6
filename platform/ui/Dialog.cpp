// SPDX-License-Identifier: MIT
#include "platform/ui/Dialog.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QThread>

#include "platform/ui/Modal.h"

namespace tallyscope {

CDialog::CDialog(CWnd* parent) : QDialog(parent != nullptr ? parent->GetWidget() : nullptr) {}

void CDialog::Create() {
  if (created_) return;
  created_ = true;
  modalDepth_ = GetModalDepth();
  CreateControls();
  OnInitDialog();
}

int CDialog::DoModal() {
  Create();
  modalDepth_ = GetModalDepth() + 1;  // the dialog itself
  const int result = GetModal().RunDialog(*this);
  modalDepth_ = GetModalDepth();
  OnDestroy();
  return result;
}

int CDialog::RunModalLoop() {
  loopLevel_ = QThread::currentThread()->loopLevel() + 1;  // the loop of exec
  const int result = exec();
  loopLevel_ = kAnyLevel;
  return result;
}

bool CDialog::IsCovered() const {
  return GetModalDepth() > modalDepth_ || QThread::currentThread()->loopLevel() > loopLevel_;
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
