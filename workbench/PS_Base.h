// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

#include "platform/core/Profile.h"
#include "platform/ui/PropertySheet.h"

namespace tallyscope {

// Base of every property sheet, embedded in a dialog or run by itself; a host may derive its own sheets from it. The
// life of a sheet: the creator sets dialog, title and start page, makes the pages, Embed(1), Create. Whatever leaves
// the sheet calls Process(0) first, so that the pages' controls reach their members and the settings the profile.
class CPS_Base : public CPropertySheet {
 public:
  explicit CPS_Base(CWnd* parent = nullptr, int selectedPage = 0);

  void SetDlg(CWnd* dialog) { dialog_ = dialog; }
  CWnd* GetDlg() const { return dialog_; }
  bool IsInitialised() const { return initialised_ != 0; }
  bool IsFinalised() const { return finalised_ != 0; }
  CProfile& GetApp() const;

  QIcon icon;              // shown by the dialog while a page of this sheet is active
  CString title;           // "Univariate" and so on
  bool processed = false;  // Process has run since the last change

  virtual bool IsWizardMode();
  virtual void Embed(int embedded) { embedded_ = embedded; }
  virtual int IsEmbedded() { return embedded_; }
  virtual void Initialise() { initialised_ = 1; }
  virtual void Finalise() { finalised_ = 1; }
  // Controls to members on every page, settings to the profile, SignalProcess. 0 when nothing has changed since the
  // last time (nothing is done then), 1 otherwise.
  virtual int Process(int apply);
  virtual void Cancel();
  virtual void SignalProcess(unsigned long) {}  // 1: applied, the sheet stays
  virtual void SignalCancel(unsigned long) {}
  virtual void SetStartPage(int page) { startPage_ = page; }
  virtual void Write2Registry() {}
  virtual void DestroyPPages() {}
  virtual CString GetAppTitle();

 protected:
  bool OnInitDialog() override;  // activates the start page

 private:
  CWnd* dialog_ = nullptr;
  int startPage_ = 0;
  int initialised_ = 0;
  int finalised_ = 0;
  int embedded_ = 0;
};

}  // namespace tallyscope
