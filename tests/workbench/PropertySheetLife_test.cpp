// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QLineEdit>

#include "platform/ui/DataExchange.h"
#include "platform/ui/Dialog.h"
#include "platform/ui/WinApp.h"
#include "workbench/PP_Base.h"
#include "workbench/PS_Base.h"

namespace tallyscope {
namespace {

constexpr int kEdit = 42;
using Log = std::vector<std::string>;

// A page that writes down what is asked of it.
class LoggedPage : public CPP_Base {
 public:
  LoggedPage(CPS_Base* owner, Log* log, const char* name) : CPP_Base(1000, name), log_(log) { sheet = owner; }

  CString text = "first";
  int downloadBits = 0;

  void Initialise() override {
    Say("Initialise");
    CPP_Base::Initialise();
  }
  void UploadData() override { Say("UploadData"); }
  int DownloadData() override {
    Say("DownloadData");
    return downloadBits;
  }
  void EnableControls() override { Say("EnableControls"); }
  void SetWizardButtons() override { Say("SetWizardButtons"); }
  void Write2Registry() override { Say("Write2Registry"); }
  void DoDataExchange(unsigned, CDataExchange* exchange) override {
    Say(exchange->saveAndValidate ? "save" : "show");
    DDX_Text(exchange, kEdit, text);
  }

 protected:
  void CreateControls() override { AddControl(kEdit, new QLineEdit(this), "Text"); }

 private:
  void Say(const char* what) { log_->push_back(GetCaption() + " " + what); }
  Log* log_;
};

class LoggedSheet : public CPS_Base {
 public:
  explicit LoggedSheet(Log* log) : one(this, log, "one"), two(this, log, "two"), log_(log) {
    title = "Sheet";
    AddPage(&one);
    AddPage(&two);
  }
  void Write2Registry() override {
    one.Write2Registry();
    two.Write2Registry();
  }
  void SignalProcess(unsigned long apply) override { log_->push_back("SignalProcess " + std::to_string(apply)); }
  void SignalCancel(unsigned long) override { log_->push_back("SignalCancel"); }

  LoggedPage one, two;

 private:
  Log* log_;
};

struct SheetLife : testing::Test {
  Log log;
  CDialog dialog;
  LoggedSheet sheet{&log};

  void Open(int startPage = 0) {
    sheet.SetDlg(&dialog);
    sheet.SetStartPage(startPage);
    sheet.Embed(1);
    sheet.Create(&dialog);
  }
  Log Take() { return std::exchange(log, {}); }
};

TEST_F(SheetLife, APageIsInitialisedAtItsFirstShowingAndFilledAtEach) {
  Open(1);
  EXPECT_EQ(Take(), (Log{"two Initialise", "two show", "two UploadData", "two show", "two EnableControls"}))
      << "only the start page is made";
  EXPECT_FALSE(sheet.one.IsCreated());
  sheet.SetActivePage(0);
  log.clear();
  sheet.SetActivePage(1);
  EXPECT_EQ(log[log.size() - 3], "two UploadData") << "filled again, not initialised again";
  EXPECT_EQ(std::count(log.begin(), log.end(), "two Initialise"), 0);
  sheet.Initialise();
  log.clear();
  sheet.SetActivePage(0);
  EXPECT_EQ(log.back(), "one SetWizardButtons") << "once the sheet is initialised, and last";
}

TEST_F(SheetLife, ProcessRunsOnceForEachChange) {
  Open();
  log.clear();
  EXPECT_EQ(sheet.Process(0), 1);
  EXPECT_EQ(Take(), (Log{"one save", "one DownloadData", "one EnableControls", "two save", "two DownloadData",
                         "two EnableControls", "one Write2Registry", "two Write2Registry", "SignalProcess 0"}));
  EXPECT_EQ(sheet.Process(1), 0);
  EXPECT_TRUE(log.empty()) << "nothing has changed";
  sheet.one.SetDataChanged(0, 0);
  EXPECT_EQ(sheet.Process(1), 0) << "no bit, no change";
  sheet.one.SetDataChanged(4, 1);
  sheet.one.SetDataChanged(2, 1);
  EXPECT_EQ(sheet.one.dataChanged, 6u);
  EXPECT_EQ(sheet.Process(1), 1);
  EXPECT_EQ(log.back(), "SignalProcess 1");
  sheet.one.SetDataChanged(1, 0);
  EXPECT_EQ(sheet.one.dataChanged, 1u) << "replaced, not added";
}

TEST_F(SheetLife, TypedTextReachesTheMemberAndDownloadedBitsTheFlags) {
  Open();
  sheet.one.GetControl<QLineEdit>(kEdit)->setText("typed");
  sheet.one.downloadBits = 8;
  sheet.one.UpdateControlData(kEdit, 1);
  EXPECT_EQ(sheet.one.text, "typed");
  EXPECT_EQ(sheet.one.dataChanged, 8u);
  EXPECT_FALSE(sheet.processed);
}

TEST_F(SheetLife, ButtonsOfAPage) {
  Open();
  log.clear();
  sheet.one.OnOK();
  EXPECT_EQ(log.back(), "SignalProcess 0");
  Take();
  sheet.one.OnOK();
  EXPECT_EQ(Take(), Log{"SignalCancel"}) << "nothing left to process";
  sheet.one.OnCancel();
  EXPECT_EQ(Take(), Log{"SignalCancel"});
  sheet.one.SetDataChanged(1, 1);
  EXPECT_FALSE(sheet.one.OnApply());
  EXPECT_EQ(log.back(), "SignalProcess 1");
  sheet.one.SetDataChanged(1, 1);
  sheet.one.OnWizardFinish();
  EXPECT_EQ(log.back(), "SignalProcess 0");
}

TEST_F(SheetLife, OkGoesThroughThePagesAndTheLastOneProcesses) {
  Open();
  log.clear();
  for (CPropertyPage* page : {static_cast<CPropertyPage*>(&sheet.one), static_cast<CPropertyPage*>(&sheet.two)}) {
    PSHNOTIFY notify;
    notify.code = -202;
    notify.close = true;
    notify.result = 7;
    EXPECT_TRUE(page->SendNotify(&notify));
    EXPECT_EQ(notify.result, 0);
    EXPECT_EQ(log.empty(), page == &sheet.one) << "only the last page acts";
  }
  PSHNOTIFY apply;
  apply.code = -202;
  sheet.one.SendNotify(&apply);
  EXPECT_EQ(apply.result, 2) << "the sheet stays open";
}

TEST(SheetTitle, FollowsEmbeddingAndWizardStyle) {
  for (const bool embedded : {false, true}) {
    for (const bool wizard : {false, true}) {
      Log log;
      CDialog dialog;
      dialog.SetWindowText("untouched");
      LoggedSheet sheet(&log);
      if (wizard) sheet.style |= kPropertySheetWizard;
      sheet.SetDlg(&dialog);
      sheet.Embed(embedded ? 1 : 0);
      sheet.Create(&dialog);
      const std::string expected = std::string("Sheet") + (wizard ? " - one" : "");
      if (embedded) {
        EXPECT_EQ(dialog.GetWindowText(), "Application - " + expected);
      } else {
        EXPECT_EQ(dialog.GetWindowText(), "untouched");
        EXPECT_EQ(sheet.GetTitle(), expected);
      }
    }
  }
}

TEST(Settings, ADoubleGoesThroughItsText) {
  auto& profile = GetProfile();
  EXPECT_EQ(profile.GetProfileDouble("UPlotXControls", "None", 1.0 / 3), 0.333333333333333) << "not 1/3";
  profile.WriteProfileDouble("UPlotXControls", "Half", -1234567.5);
  EXPECT_EQ(profile.GetProfileString("UPlotXControls", "Half", ""), "-1234567.5") << "a point in every locale";
  EXPECT_EQ(profile.GetProfileDouble("UPlotXControls", "Half", 0), -1234567.5);
  profile.WriteProfileInt("UPlotXControls", "Flag", 7);
  EXPECT_TRUE(profile.GetProfileBool("UPlotXControls", "Flag", false));
}

}  // namespace
}  // namespace tallyscope
