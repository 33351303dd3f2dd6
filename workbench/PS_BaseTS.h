// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "workbench/PS_Base.h"

namespace tallyscope {

class CDlg_Tallyscope;

// Base of the analysis sheets, bound to the workbench's dialog.
class CPS_BaseTS : public CPS_Base {
 public:
  using CPS_Base::CPS_Base;

  CDlg_Tallyscope* GetDlg() const;
  void Initialise() override;      // asks each page for PrePSFinalise
  void Write2Registry() override;  // asks each page to store its settings
  CString GetAppTitle() override;

 protected:
  // Makes a page of the sheet's own in place of the one there was, as its last page.
  template <class Page>
  void MakePage(std::unique_ptr<Page>& page) {
    DestroyPage(page);
    page = std::make_unique<Page>();
    page->sheet = this;
    AddPage(page.get());
  }
  template <class Page>
  void DestroyPage(std::unique_ptr<Page>& page) {
    if (page) RemovePage(page.get());
    page.reset();
  }
};

}  // namespace tallyscope
