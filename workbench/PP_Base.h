// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/Profile.h"
#include "platform/ui/PropertyPage.h"

namespace tallyscope {

class CPS_Base;

// Base of every property page. A page implements
//   CreateControls    its widgets and layout, registered by AddControl
//   Initialise        once, when first shown: settings from the profile
//   UploadData        at each showing: from the calculators into its members
//   DoDataExchange    control `control`, or all of them for kAllControls, by DDX_... operations
//   DownloadData      after each exchange from control to member: the bits of what has changed
//   EnableControls    at each showing and after each change
//   Write2Registry    from the sheet's Process: settings to the profile
class CPP_Base : public CPropertyPage {
 public:
  static constexpr unsigned kAllControls = 0;

  explicit CPP_Base(int templateId = 1000, const CString& caption = CString());

  CPS_Base* sheet = nullptr;  // set by the sheet that makes the page
  unsigned dataChanged = 0;   // bits of what has changed

  CWnd* GetDlg() const;
  bool IsInitialised() const { return initialised_ != 0; }
  CProfile& GetApp() const;

  virtual void Write2Registry() {}
  virtual void Initialise();
  virtual void UploadData() {}
  virtual int DownloadData() { return 0; }
  virtual void EnableControls() {}
  virtual void SetWizardButtons();
  // Adds bits to dataChanged, or replaces it; non-zero bits make the sheet's next Process run.
  virtual void SetDataChanged(unsigned flags, int add);
  // Exchanges one control. A refused text is swallowed here: the user has been told.
  virtual int UpdateControlData(unsigned control, int save);
  virtual void DoDataExchange(unsigned, CDataExchange*) {}
  virtual void PrePSFinalise() {}
  virtual void PostPSFinalise() {}

  bool OnSetActive() override;
  void OnOK() override;
  void OnCancel() override;
  bool OnApply() override;
  bool OnWizardFinish() override;

 protected:
  bool OnInitDialog() override;
  bool OnNotify(NMHDR* header) override;
  void DoDataExchange(CDataExchange* exchange) override;

 private:
  void ShowTitle();
  void Exchange(unsigned control, CDataExchange* exchange);

  int initialised_ = 0;
};

}  // namespace tallyscope
