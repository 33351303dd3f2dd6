// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "platform/ui/Wnd.h"

namespace tallyscope {

class CPropertySheet;

// The PSN_APPLY notification of a sheet to its pages.
struct PSHNOTIFY : NMHDR {
  bool close = false;  // the sheet is told to close
  int result = 0;      // 0 went well, 2 refused
};

// A page of a property sheet. Its controls are built and OnInitDialog runs when the sheet first shows it.
class CPropertyPage : public QWidget, public CWnd {
 public:
  CPropertyPage(int templateId, const CString& caption);
  ~CPropertyPage() override;  // leaves its sheet

  QWidget* GetWidget() override { return this; }
  int GetTemplateId() const { return templateId_; }
  const CString& GetCaption() const { return caption_; }
  CPropertySheet* GetParentSheet() const { return parentSheet_; }

  // Builds the page window if that has not happened. The sheet calls it.
  void Create();
  bool IsCreated() const { return created_; }

  virtual bool OnSetActive() { return true; }  // the page becomes active
  virtual bool OnKillActive();                 // it no longer is: controls to members; false keeps it active
  virtual void OnOK() {}
  virtual void OnCancel() {}
  virtual bool OnApply() { return true; }
  virtual bool OnWizardFinish() { return true; }
  virtual void OnHelp() {}

 protected:
  virtual void CreateControls() {}
  virtual bool OnInitDialog();  // members to controls

 private:
  friend class CPropertySheet;
  int templateId_;
  CString caption_;
  CPropertySheet* parentSheet_ = nullptr;
  bool created_ = false;
};

}  // namespace tallyscope
