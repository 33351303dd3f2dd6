// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <QWidget>

#include "platform/ui/PropertyPage.h"
#include "platform/ui/Wnd.h"

class QStackedWidget;
class QTabBar;

namespace tallyscope {

class CDialog;

// Style bits.
inline constexpr unsigned kPropertySheetWizard = 0x20;  // pages one after the other, with back, next, finish
inline constexpr unsigned kPropertySheetHelp = 0x200;   // a Help button; it calls the active page's OnHelp

inline constexpr unsigned kWizardBack = 1;  // SetWizardButtons
inline constexpr unsigned kWizardNext = 2;
inline constexpr unsigned kWizardFinish = 4;

inline constexpr int kIdApply = 0x3021;  // control ids of a sheet's own buttons, beside kIdOk and kIdCancel
inline constexpr int kIdHelp = 9;
inline constexpr int kIdBack = 0x3023;
inline constexpr int kIdNext = 0x3024;
inline constexpr int kIdFinish = 0x3025;

// A stack of pages behind tabs, or one after the other as a wizard. The sheet does not own its pages. A page's window
// is made when it is first shown, and at each showing its OnSetActive runs.
class CPropertySheet : public QWidget, public CWnd {
 public:
  explicit CPropertySheet(const CString& caption, CWnd* parent = nullptr, int selectedPage = 0);
  ~CPropertySheet() override;

  QWidget* GetWidget() override { return this; }

  unsigned style = 0;

  // Makes the sheet's window: tabs or wizard buttons, then OnInitDialog and the first page, unless OnInitDialog has
  // activated one. A child of `parent`, or a window of its own.
  void Create(CWnd* parent);
  // A modal window round the sheet, with its buttons: kIdOk or kIdCancel.
  int DoModal();

  void AddPage(CPropertyPage* page);
  void RemovePage(CPropertyPage* page);  // before the page is deleted; does not activate another
  int GetPageCount() const { return static_cast<int>(pages_.size()); }
  CPropertyPage* GetPage(int index) const;
  int GetActiveIndex() const { return active_; }  // -1 before the first
  CPropertyPage* GetActivePage() const;           // null before the first
  bool SetActivePage(int index);                  // false when out of range, or when the active page refuses to go

  void SetTitle(const CString& title);
  CString GetTitle() const { return title_; }
  // In a wizard: which of back and next are on, and whether next is finish (kWizard... bits). A page that becomes
  // active finds them set by its place, and may set others.
  void SetWizardButtons(unsigned buttons);

  // What the sheet's buttons do: OK and Apply send each page kNotifyApply (OK with close set), first to last, stopping
  // at a refusal; Cancel calls the active page's OnCancel, Help its OnHelp; Finish its OnWizardFinish, which may
  // refuse.
  void PressButton(int id);

 protected:
  virtual bool OnInitDialog() { return true; }

 private:
  QWidget* MakeButtons();
  void Attach(CPropertyPage* page);
  void SettleTab();
  void AddTabKeys();
  void CreatePage(CPropertyPage* page);
  void SetDefaultButton(int id);
  bool SendApply(bool close);
  void End(int result);

  CString title_;
  int selectedPage_;
  int active_ = -1;
  std::vector<CPropertyPage*> pages_;
  QTabBar* tabs_ = nullptr;
  QStackedWidget* stack_ = nullptr;
  CDialog* window_ = nullptr;  // while it runs modally
  bool created_ = false;
  bool settling_ = false;  // the tab bar follows us, not the user
};

}  // namespace tallyscope
