// SPDX-License-Identifier: MIT
#include "platform/ui/PropertySheet.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QVBoxLayout>
#include <memory>

#include "platform/core/Messages.h"
#include "platform/ui/DataExchange.h"
#include "tests/support/ScriptedModal.h"

namespace tallyscope {
namespace {

using Log = std::vector<std::string>;
constexpr int kNumber = 1000;

class LoggedPage : public CPropertyPage {
 public:
  LoggedPage(Log* log, const char* name) : CPropertyPage(1, name), log_(log) {}
  double number = 1;
  int answer = 0;  // to the apply notification
  bool mayFinish = true;

  bool OnSetActive() override { return Say("active"); }
  void OnCancel() override { Say("cancel"); }
  void OnHelp() override { Say("help"); }
  bool OnWizardFinish() override {
    Say("finish");
    return mayFinish;
  }
  QLineEdit& Edit() { return *GetControl<QLineEdit>(kNumber); }

 protected:
  void CreateControls() override {
    Say("create");
    auto* layout = new QVBoxLayout(this);
    auto* edit = new QLineEdit;
    layout->addWidget(edit);
    AddControl(kNumber, edit, "Number");
  }
  void DoDataExchange(CDataExchange* exchange) override { DDX_Number(exchange, kNumber, number); }
  bool OnNotify(NMHDR* header) override {
    if (header->code != kNotifyApply) return false;
    auto& apply = *static_cast<PSHNOTIFY*>(header);
    Say(apply.close ? "apply and close" : "apply");
    apply.result = answer;
    return true;
  }

 private:
  bool Say(const std::string& what) {
    log_->push_back(GetCaption() + " " + what);
    return true;
  }
  Log* log_;
};

struct Sheet : testing::Test {
  Log log;
  ScriptedModal& modal = ScriptedModal::Install();
  LoggedPage one{&log, "one"}, two{&log, "two"}, three{&log, "three"};
  CPropertySheet sheet{"Settings"};

  Sheet() {
    for (auto* page : {&one, &two, &three}) sheet.AddPage(page);
  }
  ~Sheet() override { SetModal(nullptr); }
  Log Take() { return std::exchange(log, {}); }
  QTabBar& Tabs() { return *sheet.findChild<QTabBar*>(); }
  bool Shows(int id) { return !sheet.GetDlgItem(id)->isHidden(); }
  void Press(int id) { sheet.GetControl<QAbstractButton>(id)->click(); }
  // Runs the sheet in its own window, and `work` while it is open.
  int Run(std::function<void(CDialog&)> work) {
    modal.onDialog = [work](CDialog& window) {
      window.show();
      QApplication::setActiveWindow(&window);
      (void)QTest::qWaitForWindowActive(&window);
      work(window);
      EXPECT_FALSE(window.isVisible());
      return window.result();
    };
    return sheet.DoModal();
  }
};

TEST_F(Sheet, MakesAPageWhenItIsFirstShown) {
  sheet.Create(nullptr);
  EXPECT_EQ(Take(), (Log{"one create", "one active"}));
  Tabs().setCurrentIndex(2);
  EXPECT_EQ(Take(), (Log{"three create", "three active"}));
  EXPECT_EQ(sheet.GetActivePage(), &three);
  EXPECT_TRUE(sheet.SetActivePage(0));
  EXPECT_EQ(Take(), (Log{"one active"}));
  EXPECT_EQ(Tabs().currentIndex(), 0);
  EXPECT_FALSE(sheet.SetActivePage(3));
  EXPECT_FALSE(sheet.SetActivePage(-1));
  EXPECT_EQ(sheet.GetActiveIndex(), 0);
  EXPECT_FALSE(two.IsCreated());
}

TEST_F(Sheet, APageWithABadNumberIsNotLeft) {
  sheet.Create(nullptr);
  one.Edit().setText("1x");
  Tabs().setCurrentIndex(1);
  EXPECT_EQ(sheet.GetActivePage(), &one);
  EXPECT_EQ(Tabs().currentIndex(), 0) << "the tab springs back";
  EXPECT_EQ(modal.told, std::vector<CString>{"\"1x\" is not a number."});
  one.Edit().setText("1.5");
  Tabs().setCurrentIndex(1);
  EXPECT_EQ(sheet.GetActivePage(), &two);
  EXPECT_EQ(one.number, 1.5);
}

TEST_F(Sheet, RunsInItsOwnWindowWithOkCancelApplyHelp) {
  sheet.style |= kPropertySheetHelp;
  const int result = Run([&](CDialog& window) {
    EXPECT_EQ(window.GetWindowText(), "Settings");
    for (const int id : {kIdOk, kIdCancel, kIdApply, kIdHelp}) EXPECT_TRUE(Shows(id)) << id;
    for (const int id : {kIdBack, kIdNext, kIdFinish}) EXPECT_FALSE(Shows(id)) << id;
    Take();
    Press(kIdHelp);
    Press(kIdApply);
    EXPECT_EQ(Take(), (Log{"one help", "one apply", "two apply", "three apply"}));
    two.answer = 2;
    Press(kIdOk);
    EXPECT_EQ(Take(), (Log{"one apply and close", "two apply and close"})) << "stops at the refusal";
    EXPECT_TRUE(window.isVisible());
    two.answer = 0;
    one.Edit().setText("bad");
    Press(kIdOk);
    EXPECT_TRUE(Take().empty()) << "nobody applies a bad number";
    one.Edit().setText("4");
    QTest::keyClick(&one.Edit(), Qt::Key_Return);
  });
  EXPECT_EQ(result, kIdOk) << "Enter presses OK";
  EXPECT_EQ(one.number, 4);
  EXPECT_EQ(sheet.parentWidget(), nullptr);
}

TEST_F(Sheet, ClosingItsWindowCancels) {
  EXPECT_EQ(Run([](CDialog& window) { window.close(); }), kIdCancel);
  EXPECT_EQ(log.back(), "one cancel");
  EXPECT_EQ(Run([&](CDialog&) { Press(kIdCancel); }), kIdCancel) << "and it can run again";
}

TEST_F(Sheet, AWizardLeadsThroughItsPages) {
  sheet.style |= kPropertySheetWizard;
  const auto buttons = [&] {
    return std::string(sheet.GetDlgItem(kIdBack)->isEnabled() ? "back " : "") + (Shows(kIdNext) ? "next" : "") +
           (Shows(kIdFinish) ? "finish" : "");
  };
  const int result = Run([&](CDialog& window) {
    EXPECT_FALSE(Tabs().isVisible());
    EXPECT_FALSE(Shows(kIdOk));
    EXPECT_EQ(buttons(), "next");
    QTest::keyClick(&one.Edit(), Qt::Key_Return);
    EXPECT_EQ(sheet.GetActivePage(), &two) << "Enter goes on";
    EXPECT_EQ(buttons(), "back next");
    Press(kIdNext);
    EXPECT_EQ(buttons(), "back finish");
    Press(kIdBack);
    EXPECT_EQ(sheet.GetActivePage(), &two);
    Press(kIdNext);
    three.mayFinish = false;
    Press(kIdFinish);
    EXPECT_TRUE(window.isVisible()) << "refused";
    three.mayFinish = true;
    Press(kIdFinish);
  });
  EXPECT_EQ(result, kIdOk);
  EXPECT_EQ(log.back(), "three finish");
}

TEST_F(Sheet, TheTabKeyGoesFromTabsThroughThePageToTheButtons) {
  Run([&](CDialog& window) {
    Tabs().setFocus();
    QTest::keyClick(&Tabs(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &one.Edit());
    QTest::keyClick(&one.Edit(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), sheet.GetDlgItem(kIdOk));
    sheet.SetActivePage(1);
    two.Edit().setFocus();
    QTest::keyClick(&two.Edit(), Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(sheet.GetActivePage(), &three);
    window.close();
  });
}

TEST_F(Sheet, PagesComeAndGo) {
  auto extra = std::make_unique<LoggedPage>(&log, "extra");
  sheet.Create(nullptr);
  sheet.AddPage(extra.get());
  EXPECT_EQ(Tabs().count(), 4);
  sheet.SetActivePage(3);
  extra.reset();
  EXPECT_EQ(Tabs().count(), 3) << "a page that dies leaves its sheet";
  EXPECT_EQ(sheet.GetPageCount(), 3);
  EXPECT_EQ(sheet.GetActivePage(), nullptr);
  sheet.SetActivePage(2);
  sheet.RemovePage(&one);
  EXPECT_EQ(sheet.GetActivePage(), &three);
  EXPECT_EQ(Tabs().currentIndex(), 1);
  EXPECT_EQ(one.GetParentSheet(), nullptr);
}

TEST(SheetLifetime, NoSheetOwnsItsPages) {
  Log log;
  LoggedPage page(&log, "page");
  {
    CPropertySheet sheet("Short");
    sheet.AddPage(&page);
    sheet.Create(nullptr);
    EXPECT_EQ(page.window(), &sheet);
  }
  EXPECT_EQ(page.parentWidget(), nullptr);
  EXPECT_EQ(page.GetParentSheet(), nullptr);
}

}  // namespace
}  // namespace tallyscope
