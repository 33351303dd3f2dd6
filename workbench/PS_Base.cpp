// SPDX-License-Identifier: MIT
#include "workbench/PS_Base.h"

#include "platform/core/StringTable.h"
#include "platform/ui/Icon.h"
#include "platform/ui/WinApp.h"

namespace tallyscope {

CPS_Base::CPS_Base(CWnd* parent, int selectedPage)
    : CPropertySheet(LoadString(kStringPropertySheet), parent, selectedPage), icon(MakeIcon("app")) {}

CProfile& CPS_Base::GetApp() const {
  return GetProfile();
}

bool CPS_Base::IsWizardMode() {
  return (style & kPropertySheetWizard) != 0;
}

int CPS_Base::Process(int apply) {
  if (processed) return 0;
  processed = true;
  for (int i = 0; i < GetPageCount(); ++i) GetPage(i)->UpdateData(true);
  Write2Registry();
  SignalProcess(apply != 0 ? 1 : 0);
  return 1;
}

void CPS_Base::Cancel() {
  SignalCancel(0);
}

CString CPS_Base::GetAppTitle() {
  return "Application - ";
}

bool CPS_Base::OnInitDialog() {
  SetActivePage(startPage_);
  return true;
}

}  // namespace tallyscope
