// SPDX-License-Identifier: MIT
// Acts of the window at random against whatever is open on top of it: menus, dialogs, prompts, lists of boxes, a drag.
// Nothing may die while something of it is on the stack, so the walk is at its best under the address sanitizer.
// TALLYSCOPE_WALK_STEPS and TALLYSCOPE_WALK_SEED make it longer and another one; a longer one tells its steps.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <random>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include "platform/ui/Modal.h"
#include "platform/ui/WinApp.h"
#include "tests/workbench/WorkbenchTesting.h"
#include "workbench/ControlIds.h"
#include "workbench/GraphControls.h"
#include "workbench/PS_BaseTS.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {
namespace {

constexpr int kShortWalk = 250;
constexpr int kMostOpen = 3;  // one on top of the other

int FromEnvironment(const char* name, int missing) {
  const char* text = std::getenv(name);
  return text != nullptr ? std::atoi(text) : missing;
}

// Two axes and 23 fields: more columns than the table of a histogram's bins.
WrittenTable WideTable() {
  std::vector<WrittenTable::Column> columns;
  for (int c = 0; c < 25; ++c) {
    std::vector<double> values;
    for (int i = 0; i < 120; ++i) {
      values.push_back(c == 5 ? 7 : (c + i) % 11 == 3 && c > 1 ? WrittenTable::kNull : (i * (2 * c + 37)) % 101);
    }
    columns.push_back({c == 3 ? "<b>Pb & Zn</b>" : "c" + std::to_string(c), values});
  }
  return WrittenTable(2, columns);
}

class Walk : public QObject {
 public:
  Walk(int seed, int steps, bool tells) : random_(static_cast<unsigned>(seed)), left_(steps), tells_(tells) {
    GetProfile().WriteProfileString("PATH", "Picture", scratch_.path().toStdString());
  }

  // One window after the other: a walk may close its own.
  void Run() {
    while (left_ > 0 && !testing::Test::HasFailure()) {
      OpenWorkbench window(table_);
      window_ = &window;
      QTimer::singleShot(0, this, [this] { Step(); });
      window.DoModal();
      window_ = nullptr;
    }
  }
  int Opened() const { return opened_; }

 private:
  struct Act {
    const char* name;
    void (Walk::*run)();
  };

  int Any(int count) { return count > 0 ? static_cast<int>(random_() % static_cast<unsigned>(count)) : 0; }
  bool Maybe(int outOf) { return Any(outOf) == 0; }

  static QWidget* OnTop() {
    if (auto* popup = QApplication::activePopupWidget()) return popup;
    return QApplication::activeModalWidget();
  }

  void Step() {
    if (window_ == nullptr) return;
    QTimer::singleShot(0, this, [this] { Step(); });  // what this step opens goes on with the next
    auto* top = OnTop();
    const bool open = top != nullptr && top != window_;
    if (left_ <= 0) return open ? Close(*top) : static_cast<void>(window_->close());
    if (!open) Check();
    --left_;
    const int depth = GetModalDepth() - 1 + (QApplication::activePopupWidget() != nullptr ? 1 : 0);
    if (open && (depth > kMostOpen || Maybe(2))) return Close(*top);
    const auto& act = kActs[Any(std::size(kActs))];
    if (tells_) std::cerr << left_ << ' ' << depth << ' ' << act.name << std::endl;
    (this->*act.run)();
  }

  // What holds whenever nothing is open.
  void Check() {
    for (const int id : {kIdOk, kIdCancel}) {
      EXPECT_FALSE(window_->GetDlgItem(id)->hasFocus()) << "the next Space would end the window";
    }
    EXPECT_NE(window_->GetSheet(), nullptr);
    for (int i = 0; i < 4; ++i) window_->Cell(Any(130), Any(30));
  }

  // Closing, in the ways there are.

  void Close(QWidget& top) {
    ++opened_;
    if (auto* menu = qobject_cast<QMenu*>(&top)) return CloseMenu(*menu);
    if (QApplication::activePopupWidget() == &top) return CloseList(top);
    if (auto* prompt = qobject_cast<QFileDialog*>(&top)) return ClosePrompt(*prompt);
    const auto edits = top.findChildren<QLineEdit*>();
    if (!edits.isEmpty()) edits[Any(static_cast<int>(edits.size()))]->setText(Maybe(3) ? "no number" : "3");
    const auto buttons = top.findChildren<QPushButton*>();
    if (buttons.isEmpty() || Maybe(3)) return static_cast<void>(QTest::keyClick(&top, Qt::Key_Escape));
    buttons[Any(static_cast<int>(buttons.size()))]->click();
  }
  void CloseMenu(QMenu& menu) {
    const auto actions = menu.actions();
    if (actions.isEmpty() || Maybe(3)) return static_cast<void>(menu.close());
    menu.setActiveAction(actions[Any(static_cast<int>(actions.size()))]);
    QTest::keyClick(&menu, Maybe(4) ? Qt::Key_Escape : Qt::Key_Return);
  }
  void CloseList(QWidget& top) {
    auto* list = top.findChild<QAbstractItemView*>();
    if (list == nullptr || Maybe(3)) return static_cast<void>(top.close());
    list->setCurrentIndex(list->model()->index(Any(list->model()->rowCount()), 0));
    QTest::keyClick(list, Qt::Key_Return);
  }
  void ClosePrompt(QFileDialog& prompt) {
    if (Maybe(2)) return prompt.reject();
    prompt.findChild<QLineEdit*>()->setText(Maybe(2) ? "one.png" : "two.svg");
    QMetaObject::invokeMethod(&prompt, "accept");
  }

  // Acts.

  CPropertyPage* Page() { return window_->GetSheet() != nullptr ? window_->GetSheet()->GetActivePage() : nullptr; }
  QWidget* Canvas() { return Page() != nullptr ? Page()->GetDlgItem(kGraphFrame) : nullptr; }
  static void Send(QWidget* to, QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons held,
                   Qt::KeyboardModifiers keys = {}) {
    QMouseEvent event(type, at, to->mapToGlobal(at), button, held, keys);
    QApplication::sendEvent(to, &event);
  }
  QPoint AnyPlace(const QWidget& on) { return {Any(on.width()), Any(on.height())}; }

  void Click(int id) {
    if (auto* button = window_->GetControl<QToolButton>(id)) Maybe(2) ? button->click() : button->animateClick();
  }
  void Push() { Click(kControlPush); }
  void Pop() { Click(kControlPop); }
  void PushByKeys() { QTest::keyClick(window_, Qt::Key_Down, Qt::ControlModifier | Qt::ShiftModifier); }
  void PopByKeys() { QTest::keyClick(window_, Qt::Key_Up, Qt::ControlModifier | Qt::ShiftModifier); }
  void TurnPage() { QTest::keyClick(window_, Qt::Key_Tab, Qt::ControlModifier); }
  void HideSpreadsheet() { QTest::keyClick(window_, Qt::Key_F9); }
  void Choose(int id) {
    auto* box = window_->GetControl<QComboBox>(id);
    const int index = Any(box->count());
    box->setCurrentIndex(index);
    emit box->activated(index);
  }
  void ChooseMode() { Choose(kControlMode); }
  void ChooseKey() { Choose(kControlKeyField); }
  void ChooseAncillary() { Choose(kControlAncField); }
  void SetPage() {
    if (auto* sheet = window_->GetSheet()) sheet->SetActivePage(Any(sheet->GetPageCount()));
  }
  void Refresh() { window_->RefreshDialog(Maybe(2)); }
  void PopAsAHost() { window_->PopData(); }
  void Sort() { window_->SortGridByCol(Any(2), 1 + Any(25), 0, 0); }
  void SelectRow() { window_->SelectRow(Any(125), Any(2), Any(2)); }
  void Connect() {
    CStats_Data* tables[] = {nullptr, &bins_, window_->GetData()};
    window_->ConnectSpreadsheet(tables[Any(3)], Maybe(2));
  }
  void End() { Maybe(2) ? static_cast<void>(window_->close()) : window_->GetControl<QPushButton>(kIdOk)->click(); }
  void EndRarely() {
    if (Maybe(10)) End();
  }
  void OpenList() {
    std::vector<QComboBox*> boxes;
    for (auto* box : window_->findChildren<QComboBox*>()) {
      if (box->isVisible() && box->isEnabled()) boxes.push_back(box);
    }
    if (!boxes.empty()) boxes[static_cast<std::size_t>(Any(static_cast<int>(boxes.size())))]->showPopup();
  }
  void SheetMenu() {
    auto* view = window_->GetGrid()->viewport();
    const QPoint at = AnyPlace(*view);
    Send(view, QEvent::MouseButtonPress, at, Qt::RightButton, Qt::RightButton);
    Send(view, QEvent::MouseButtonRelease, at, Qt::RightButton, Qt::NoButton);
  }
  void SheetDoubleClick() {
    Send(window_->GetGrid()->viewport(), QEvent::MouseButtonDblClick, {Any(900), 5}, Qt::LeftButton, Qt::LeftButton);
  }
  void SheetItem() { window_->ProcessMenu(Any(120), Any(26), 100 + Any(8)); }
  void PlotMenu() {
    if (auto* canvas = Canvas())
      Send(canvas, QEvent::MouseButtonPress, AnyPlace(*canvas), Qt::RightButton, Qt::RightButton);
  }
  void PlotDoubleClick() {  // often on an axis, which opens its dialog
    auto* canvas = Canvas();
    if (canvas == nullptr) return;
    const QPoint at = Maybe(2) ? QPoint(canvas->width() / 2, canvas->height() - 12) : QPoint(12, canvas->height() / 2);
    Send(canvas, QEvent::MouseButtonDblClick, at, Qt::LeftButton, Qt::LeftButton);
  }
  void PlotPress() {
    if (auto* canvas = Canvas())
      Send(canvas, QEvent::MouseButtonPress, AnyPlace(*canvas), Qt::LeftButton, Qt::LeftButton);
  }
  void PlotMove() {
    if (auto* canvas = Canvas())
      Send(canvas, QEvent::MouseMove, AnyPlace(*canvas), Qt::NoButton, Maybe(3) ? Qt::NoButton : Qt::LeftButton);
  }
  void PlotRelease() {
    if (auto* canvas = Canvas())
      Send(canvas, QEvent::MouseButtonRelease, AnyPlace(*canvas), Qt::LeftButton, Qt::NoButton);
  }
  void PlotKey() {
    constexpr Qt::Key kKeys[] = {Qt::Key_Right, Qt::Key_Up,     Qt::Key_Space, Qt::Key_Return, Qt::Key_Escape,
                                 Qt::Key_Menu,  Qt::Key_Delete, Qt::Key_Plus,  Qt::Key_Home,   Qt::Key_Tab};
    if (auto* canvas = Canvas()) {
      canvas->setFocus();
      QTest::keyClick(canvas, kKeys[Any(std::size(kKeys))]);
    }
  }
  void PlotTool() {
    if (Page() == nullptr) return;
    const auto tools = Page()->findChildren<QToolButton*>();
    if (!tools.isEmpty()) tools[Any(static_cast<int>(tools.size()))]->click();
  }
  void PlotColour() {
    auto* box = Page() != nullptr ? Page()->GetControl<QComboBox>(Maybe(2) ? kGraphColour : kGraphSize) : nullptr;
    if (box == nullptr) return;
    const int index = Any(box->count());
    box->setCurrentIndex(index);
    emit box->activated(index);
  }
  void Paint() { window_->grab(); }

  static constexpr Act kActs[] = {
      {"push", &Walk::Push},
      {"push", &Walk::Push},
      {"push by keys", &Walk::PushByKeys},
      {"pop", &Walk::Pop},
      {"pop by keys", &Walk::PopByKeys},
      {"pop as a host", &Walk::PopAsAHost},
      {"mode", &Walk::ChooseMode},
      {"key field", &Walk::ChooseKey},
      {"ancillary field", &Walk::ChooseAncillary},
      {"turn page", &Walk::TurnPage},
      {"set page", &Walk::SetPage},
      {"hide spreadsheet", &Walk::HideSpreadsheet},
      {"refresh", &Walk::Refresh},
      {"sort", &Walk::Sort},
      {"select row", &Walk::SelectRow},
      {"select row", &Walk::SelectRow},
      {"connect", &Walk::Connect},
      {"end", &Walk::EndRarely},
      {"open list", &Walk::OpenList},
      {"sheet menu", &Walk::SheetMenu},
      {"sheet double click", &Walk::SheetDoubleClick},
      {"sheet item", &Walk::SheetItem},
      {"plot menu", &Walk::PlotMenu},
      {"plot menu", &Walk::PlotMenu},
      {"plot double click", &Walk::PlotDoubleClick},
      {"plot press", &Walk::PlotPress},
      {"plot move", &Walk::PlotMove},
      {"plot release", &Walk::PlotRelease},
      {"plot key", &Walk::PlotKey},
      {"plot tool", &Walk::PlotTool},
      {"plot colour", &Walk::PlotColour},
      {"paint", &Walk::Paint},
  };

  std::mt19937 random_;
  int left_;
  bool tells_;
  int opened_ = 0;
  QTemporaryDir scratch_;
  WrittenTable table_ = WideTable();
  WrittenTable bins_{0, {{"bin", {1, 2, 3}}, {"count", {4, 5, 6}}}};
  OpenWorkbench* window_ = nullptr;
};

TEST(RandomWalk, NothingDiesUnderAnythingOpen) {
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  SetProfile(std::make_unique<CMemoryProfile>());
  SetModal(nullptr);
  const int steps = FromEnvironment("TALLYSCOPE_WALK_STEPS", kShortWalk);
  const int seed = FromEnvironment("TALLYSCOPE_WALK_SEED", 1);
  RecordProperty("seed", seed);
  Walk walk(seed, steps, steps > kShortWalk);
  walk.Run();
  EXPECT_GT(walk.Opened(), steps / 20) << "something was open";
  SetProfile(std::make_unique<CMemoryProfile>());
}

}  // namespace
}  // namespace tallyscope
