// SPDX-License-Identifier: MIT
#include "platform/ui/PropertyPage.h"

#include "platform/ui/PropertySheet.h"

namespace tallyscope {

CPropertyPage::CPropertyPage(int templateId, const CString& caption) : templateId_(templateId), caption_(caption) {}

CPropertyPage::~CPropertyPage() {
  if (parentSheet_ != nullptr) parentSheet_->RemovePage(this);
}

void CPropertyPage::Create() {
  if (created_) return;
  created_ = true;
  CreateControls();
  OnInitDialog();
}

bool CPropertyPage::OnKillActive() {
  return UpdateData(true);
}

bool CPropertyPage::OnInitDialog() {
  return UpdateData(false);
}

}  // namespace tallyscope
