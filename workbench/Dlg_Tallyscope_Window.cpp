// SPDX-License-Identifier: MIT
// The workbench's window: its controls, their layout, what is remembered of it.

#include <algorithm>

#include <QApplication>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QShowEvent>
#include <QSplitter>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include "platform/core/StringTable.h"
#include "platform/ui/Icon.h"
#include "platform/ui/PlainText.h"
#include "platform/ui/WinApp.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_Tallyscope.h"
#include "workbench/FieldBox.h"
#include "workbench/GraphControls.h"
#include "workbench/PS_BaseTS.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {

namespace {

constexpr const char kSection[] = "Workbench";
constexpr QSize kFirstSize{1200, 860};

QLabel* AddLabelled(QHBoxLayout* row, const char* text, QComboBox* box) {
  auto* label = new QLabel(text);
  label->setBuddy(box);
  row->addWidget(label);
  row->addWidget(box);
  return label;
}

QToolButton* MakeTool(const char* icon, const QKeySequence& shortcut) {
  auto* button = new QToolButton;
  button->setIcon(MakeIcon(icon));
  button->setShortcut(shortcut);
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

QString TipWithShortcut(const QString& tip, const QAbstractButton* button) {
  const QString keys = button->shortcut().toString(QKeySequence::NativeText);
  return keys.isEmpty() ? tip : tip + " (" + keys + ")";
}

}  // namespace

void CDlg_Tallyscope::CreateControls() {
  grid_ = new CTSSelectGridCtrl;
  grid_->parent = this;
  grid_->SetNotifyTarget(this, kControlGrid);
  grid_->SetAutoSizeMode(3);
  grid_->viewport()->setMouseTracking(true);
  grid_->viewport()->installEventFilter(this);
  AddControl(kControlGrid, grid_, "Spreadsheet");

  sheetArea_ = new QWidget;
  auto* sheetLayout = new QVBoxLayout(sheetArea_);
  sheetLayout->setContentsMargins(0, 0, 0, 0);

  splitter_ = new QSplitter(Qt::Vertical);
  splitter_->addWidget(grid_);
  splitter_->addWidget(sheetArea_);
  splitter_->setChildrenCollapsible(false);
  splitter_->setStretchFactor(0, 2);
  splitter_->setStretchFactor(1, 3);

  auto* header = MakeHeader();
  auto* footer = MakeFooter();
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(header);
  layout->addWidget(splitter_, 1);
  layout->addWidget(footer);
  MakeTips();
}

QWidget* CDlg_Tallyscope::MakeHeader() {
  auto* mode = MakeFieldBox();
  auto* key = MakeFieldBox();
  auto* anc = MakeFieldBox();
  auto* push = MakeTool("push", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Down));
  auto* pop = MakeTool("pop", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Up));
  auto* show = MakeTool("hide", QKeySequence(Qt::Key_F9));
  auto* help = new QPushButton(MakeIcon("help"), ToQString(LoadString(kStringHelp)));
  help->setAutoDefault(false);

  auto* header = new QWidget;
  auto* row = new QHBoxLayout(header);
  row->setContentsMargins(0, 0, 0, 0);
  AddLabelled(row, "&Mode", mode);
  AddLabelled(row, "&Key field", key);
  ancLabel_ = AddLabelled(row, "&Ancillary", anc);
  row->addStretch(1);
  for (QWidget* tool : {static_cast<QWidget*>(push), static_cast<QWidget*>(pop), static_cast<QWidget*>(show),
                        static_cast<QWidget*>(help)}) {
    row->addWidget(tool);
  }

  AddControl(kControlMode, mode, "Mode");
  AddControl(kControlKeyField, key, "Key field");
  AddControl(kControlAncField, anc, "Ancillary field");
  AddControl(kControlPush, push, "Push");
  AddControl(kControlPop, pop, "Pop");
  AddControl(kControlShowSpreadsheet, show, "Show or hide the spreadsheet");
  AddControl(kControlHelp, help, "Help");

  QObject::connect(mode, &QComboBox::activated, this, [this] { OnSelchangeMode(); });
  QObject::connect(key, &QComboBox::activated, this, [this] { OnSelchangeKeyField(); });
  QObject::connect(anc, &QComboBox::activated, this, [this] { OnSelchangeAncField(); });
  QObject::connect(push, &QToolButton::clicked, this, [this] { OnPushData(); });
  QObject::connect(pop, &QToolButton::clicked, this, [this] { OnPopData(); });
  QObject::connect(show, &QToolButton::clicked, this, [this] { OnBnClickedButtonCeSpreadsheet(); });
  QObject::connect(help, &QPushButton::clicked, this, [this] { OnHelp(); });
  return header;
}

QWidget* CDlg_Tallyscope::MakeFooter() {
  auto* status = new QLabel;
  status->setTextInteractionFlags(Qt::TextSelectableByMouse);
  status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  auto* selected = new QLabel;
  auto* footer = new QWidget;
  auto* row = new QHBoxLayout(footer);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(status, 1);
  row->addWidget(selected);
  row->addWidget(CreateButtons(/*cancel=*/true));
  AddControl(kControlStatus, status, "Status");
  AddControl(kControlSelected, selected, "Stations");
  return footer;
}

void CDlg_Tallyscope::MakeTips() {
  const auto tip = [this](int id, const QString& text) {
    auto* control = GetDlgItem(id);
    const auto* button = dynamic_cast<QAbstractButton*>(control);
    control->setToolTip(button != nullptr ? TipWithShortcut(text, button) : text);
  };
  tip(kControlMode, "Statistics mode");
  tip(kControlKeyField, "Key field");
  tip(kControlAncField, "Ancillary field");
  tip(kControlPop, ToQString(LoadString(kStringExpandSelection)));
  tip(kControlPush, ToQString(LoadString(kStringCollapseSelection)));
  tip(kControlShowSpreadsheet, "Show/Hide the spreadsheet");
}

void CDlg_Tallyscope::EmbedSheet() {
  sheet_->Create(this);
  sheetArea_->layout()->addWidget(sheet_.get());
  SetTabOrderAfter(grid_, sheet_.get());
  sheet_->Initialise();
  sheet_->show();
  if (parkedFocus_ != nullptr && parkedFocus_ == focusWidget()) FocusPage();
  parkedFocus_ = nullptr;
}

// Where the focus is while no page has it.
QWidget* CDlg_Tallyscope::GetFocusPlace() const {
  return spreadsheetShown_ ? grid_ : GetDlgItem(kControlMode);
}

// To the page's plot, where the keyboard goes on; a page without one leaves it to the spreadsheet.
void CDlg_Tallyscope::FocusPage() {
  const auto* page = sheet_ ? sheet_->GetActivePage() : nullptr;
  auto* plot = page != nullptr ? page->GetDlgItem(kGraphFrame) : nullptr;
  (plot != nullptr ? plot : GetFocusPlace())->setFocus(Qt::OtherFocusReason);
}

void CDlg_Tallyscope::HandleSpreadsheetCE(bool show) {
  const bool was = spreadsheetShown_;
  spreadsheetShown_ = show;
  auto* button = GetControl<QToolButton>(kControlShowSpreadsheet);
  button->setIcon(MakeIcon(show ? "hide" : "show"));
  if (was == show) return;
  if (!show) hiddenHeight_ = grid_->height() + splitter_->handleWidth();
  grid_->setVisible(show);
  grid_->setEnabled(show);
  if (!isMaximized() && !isFullScreen()) resize(width(), height() + (show ? hiddenHeight_ : -hiddenHeight_));
}

void CDlg_Tallyscope::OnBnClickedButtonCeSpreadsheet() {
  UpdateData(true);
  HandleSpreadsheetCE(!spreadsheetShown_);
}

void CDlg_Tallyscope::RestoreLayout() {
  const auto& profile = GetProfile();
  const QSize room = screen()->availableSize();
  const QSize first(std::min(kFirstSize.width(), room.width() * 85 / 100),
                    std::min(kFirstSize.height(), room.height() * 85 / 100));
  const int width = profile.GetProfileInt(kSection, "Width", first.width());
  const int height = profile.GetProfileInt(kSection, "Height", first.height());
  resize(std::min(width, room.width()), std::min(height, room.height()));
  const int top = profile.GetProfileInt(kSection, "SpreadsheetHeight", 0);
  const int bottom = profile.GetProfileInt(kSection, "SheetHeight", 0);
  splitter_->setSizes(top > 0 && bottom > 0 ? QList<int>{top, bottom}
                                            : QList<int>{first.height() * 2 / 5, first.height() * 3 / 5});
  if (profile.GetProfileBool(kSection, "Maximised", false)) setWindowState(windowState() | Qt::WindowMaximized);
}

void CDlg_Tallyscope::SaveLayout() const {
  auto& profile = GetProfile();
  profile.WriteProfileBool(kSection, "Maximised", isMaximized());
  const QSize size = isMaximized() ? normalGeometry().size() : this->size();
  const int hidden = spreadsheetShown_ ? 0 : hiddenHeight_;
  profile.WriteProfileInt(kSection, "Width", size.width());
  profile.WriteProfileInt(kSection, "Height", size.height() + hidden);
  if (!spreadsheetShown_) return;
  profile.WriteProfileInt(kSection, "SpreadsheetHeight", splitter_->sizes().value(0));
  profile.WriteProfileInt(kSection, "SheetHeight", splitter_->sizes().value(1));
}

void CDlg_Tallyscope::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter) {
    event->accept();
    return;
  }
  CDialog::keyPressEvent(event);
}

void CDlg_Tallyscope::showEvent(QShowEvent* event) {
  CDialog::showEvent(event);
  if (!event->spontaneous() && grid_ != nullptr) ShowKeyColumn();
}

void CDlg_Tallyscope::SetIdleStatus(const CString& text) {
  idleStatus_ = text;
  ShowStatus("");
}

void CDlg_Tallyscope::ShowStatus(const CString& text) {
  auto* status = GetControl<QLabel>(kControlStatus);
  if (status != nullptr) SetPlainText(*status, OneLine(text.empty() ? idleStatus_ : text));
}

}  // namespace tallyscope
