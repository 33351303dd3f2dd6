// SPDX-License-Identifier: MIT
#include "platform/ui/PropertySheet.h"

#include <algorithm>

#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

#include "platform/core/Messages.h"
#include "platform/ui/Dialog.h"
#include "platform/ui/Modal.h"
#include "platform/ui/PlainText.h"

namespace tallyscope {

namespace {

// The window round a sheet that runs by itself.
class SheetWindow : public CDialog {
 public:
  explicit SheetWindow(CPropertySheet& sheet) : sheet_(sheet), owner_(sheet.parentWidget()) {
    if (owner_ != nullptr) setParent(owner_->window(), windowFlags());
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(&sheet);
    SetWindowText(sheet.GetTitle());
  }
  ~SheetWindow() override { sheet_.setParent(owner_); }  // the sheet belongs to its maker

  using CDialog::EndDialog;

 protected:
  void OnOK() override { sheet_.PressButton(kIdOk); }
  void OnCancel() override { sheet_.PressButton(kIdCancel); }

 private:
  CPropertySheet& sheet_;
  QWidget* owner_;
};

}  // namespace

CPropertySheet::CPropertySheet(const CString& caption, CWnd* parent, int selectedPage)
    : QWidget(parent != nullptr ? parent->GetWidget() : nullptr), title_(caption), selectedPage_(selectedPage) {}

CPropertySheet::~CPropertySheet() {
  while (!pages_.empty()) RemovePage(pages_.back());
}

void CPropertySheet::Create(CWnd* parent) {
  if (created_) return;
  created_ = true;
  if (parent != nullptr) setParent(parent->GetWidget());
  tabs_ = new QTabBar;
  tabs_->setDocumentMode(true);
  tabs_->setExpanding(false);
  stack_ = new QStackedWidget;
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(tabs_);
  layout->addWidget(stack_, 1);
  layout->addWidget(MakeButtons());
  tabs_->setVisible((style & kPropertySheetWizard) == 0);
  AddTabKeys();
  for (auto* page : pages_) Attach(page);
  QObject::connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
    if (!settling_ && !SetActivePage(index)) SettleTab();
  });
  OnInitDialog();
  if (active_ < 0) SetActivePage(selectedPage_);
}

// Control+Tab and Control+Shift+Tab turn the pages, from anywhere on the sheet.
void CPropertySheet::AddTabKeys() {
  if ((style & kPropertySheetWizard) != 0) return;
  const auto turn = [this](int by) {
    if (GetPageCount() > 1) SetActivePage((active_ + by + GetPageCount()) % GetPageCount());
  };
  for (const auto& [keys, by] : {std::pair{QKeySequence::NextChild, 1}, {QKeySequence::PreviousChild, -1}}) {
    auto* shortcut = new QShortcut(this);
    shortcut->setKeys(keys);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(shortcut, &QShortcut::activated, this, [turn, by = by] { turn(by); });
  }
}

QWidget* CPropertySheet::MakeButtons() {
  const bool wizard = (style & kPropertySheetWizard) != 0;
  const bool window = window_ != nullptr;
  const struct {
    const char* caption;
    int id;
    bool shown;
  } buttons[] = {
      {"< &Back", kIdBack, wizard},
      {"&Next >", kIdNext, wizard},
      {"&Finish", kIdFinish, false},
      {"OK", kIdOk, window && !wizard},
      {"Cancel", kIdCancel, window || wizard},
      {"&Apply", kIdApply, window && !wizard},
      {"&Help", kIdHelp, (style & kPropertySheetHelp) != 0},
  };
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addStretch(1);
  for (const auto& button : buttons) {
    auto* push = new QPushButton(button.caption, row);
    push->setAutoDefault(false);
    push->setVisible(button.shown);
    layout->addWidget(push);
    AddControl(button.id, push, QString(button.caption).remove('&').toStdString());
    QObject::connect(push, &QPushButton::clicked, this, [this, id = button.id] { PressButton(id); });
  }
  return row;
}

// What Enter presses, in a window of the sheet's own.
void CPropertySheet::SetDefaultButton(int id) {
  if (window_ == nullptr) return;
  if (auto* button = GetControl<QPushButton>(id)) button->setDefault(true);
}

void CPropertySheet::Attach(CPropertyPage* page) {
  stack_->addWidget(page);
  settling_ = true;
  tabs_->addTab(ItemText(page->GetCaption()));
  settling_ = false;
}

void CPropertySheet::AddPage(CPropertyPage* page) {
  page->parentSheet_ = this;
  pages_.push_back(page);
  if (created_) Attach(page);
}

void CPropertySheet::RemovePage(CPropertyPage* page) {
  const auto found = std::find(pages_.begin(), pages_.end(), page);
  if (found == pages_.end()) return;
  const int index = static_cast<int>(found - pages_.begin());
  pages_.erase(found);
  page->parentSheet_ = nullptr;
  if (active_ == index) active_ = -1;
  if (active_ > index) --active_;
  if (!created_) return;
  settling_ = true;
  tabs_->removeTab(index);
  settling_ = false;
  stack_->removeWidget(page);
  page->setParent(nullptr);
}

CPropertyPage* CPropertySheet::GetPage(int index) const {
  return index >= 0 && index < GetPageCount() ? pages_[static_cast<std::size_t>(index)] : nullptr;
}

CPropertyPage* CPropertySheet::GetActivePage() const {
  return GetPage(active_);
}

bool CPropertySheet::SetActivePage(int index) {
  auto* page = GetPage(index);
  if (page == nullptr) return false;
  if (index != active_ && GetActivePage() != nullptr && !GetActivePage()->OnKillActive()) return false;
  active_ = index;
  SettleTab();
  CreatePage(page);
  stack_->setCurrentWidget(page);
  if ((style & kPropertySheetWizard) != 0) {
    const bool last = index == GetPageCount() - 1;
    SetWizardButtons((index > 0 ? kWizardBack : 0) | (last ? kWizardFinish : kWizardNext));
  }
  page->OnSetActive();
  return true;
}

void CPropertySheet::CreatePage(CPropertyPage* page) {
  if (page->IsCreated()) return;
  page->Create();
  SetTabOrderAfter(tabs_, page);  // and before the buttons, which were there earlier
}

// Brings the tab bar in line with the active page.
void CPropertySheet::SettleTab() {
  settling_ = true;
  tabs_->setCurrentIndex(active_);
  settling_ = false;
}

void CPropertySheet::SetTitle(const CString& title) {
  title_ = title;
  SetWindowText(title);
  if (window_ != nullptr) window_->SetWindowText(title);
}

void CPropertySheet::SetWizardButtons(unsigned buttons) {
  EnableDlgItem(kIdBack, (buttons & kWizardBack) != 0);
  EnableDlgItem(kIdNext, (buttons & kWizardNext) != 0);
  ShowDlgItem(kIdNext, (buttons & kWizardFinish) == 0);
  ShowDlgItem(kIdFinish, (buttons & kWizardFinish) != 0);
  SetDefaultButton((buttons & kWizardFinish) != 0 ? kIdFinish : kIdNext);
}

int CPropertySheet::DoModal() {
  SheetWindow window(*this);
  window_ = &window;
  Create(nullptr);
  show();
  if ((style & kPropertySheetWizard) == 0) SetDefaultButton(kIdOk);
  const int result = GetModal().RunDialog(window);
  window_ = nullptr;
  return result;
}

void CPropertySheet::PressButton(int id) {
  switch (id) {
    case kIdBack:
      SetActivePage(active_ - 1);
      return;
    case kIdNext:
      SetActivePage(active_ + 1);
      return;
    case kIdFinish:
      if (GetActivePage() != nullptr && GetActivePage()->OnWizardFinish()) End(kIdOk);
      return;
    case kIdOk:
      if (SendApply(true)) End(kIdOk);
      return;
    case kIdApply:
      SendApply(false);
      return;
    case kIdCancel:
      if (GetActivePage() != nullptr) GetActivePage()->OnCancel();
      End(kIdCancel);
      return;
    case kIdHelp:
      if (GetActivePage() != nullptr) GetActivePage()->OnHelp();
      return;
    default:
      return;
  }
}

bool CPropertySheet::SendApply(bool close) {
  if (GetActivePage() != nullptr && !GetActivePage()->OnKillActive()) return false;
  for (auto* page : std::vector<CPropertyPage*>(pages_)) {
    PSHNOTIFY notify;
    notify.code = kNotifyApply;
    notify.close = close;
    page->SendNotify(&notify);
    if (notify.result != 0) return false;
  }
  return true;
}

void CPropertySheet::End(int result) {
  if (window_ != nullptr) static_cast<SheetWindow*>(window_)->EndDialog(result);
}

}  // namespace tallyscope
