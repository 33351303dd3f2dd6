// SPDX-License-Identifier: MIT
#include "platform/ui/DataExchange.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include "platform/core/NumberText.h"
#include "platform/ui/Dialog.h"
#include "tests/support/ScriptedModal.h"

namespace tallyscope {
namespace {

enum { kName = 1000, kCount, kValue, kSingle, kFlag, kBox, kFigure, kMissing };

class Form : public CDialog {
 public:
  CString name = "zinc";
  int count = 12;
  double value = 0.1;
  float single = 0.1f;
  bool flag = true;
  int box = 1;
  CString figure = "<b>Au</b>";
  CString missing = "kept";

  template <class Widget>
  Widget& Control(int id) {
    return *GetControl<Widget>(id);
  }
  void Type(int id, const char* text) { Control<QLineEdit>(id).setText(QString::fromUtf8(text)); }

 protected:
  void CreateControls() override {
    auto* layout = new QVBoxLayout(this);
    for (const int id : {kName, kCount, kValue, kSingle}) Add(layout, id, new QLineEdit);
    Add(layout, kFlag, new QCheckBox);
    auto* box = new QComboBox;
    box->addItems({"First", "Last"});
    Add(layout, kBox, box);
    Add(layout, kFigure, new QLabel);
    layout->addWidget(CreateButtons(/*cancel=*/true));
  }
  void DoDataExchange(CDataExchange* exchange) override {
    DDX_Text(exchange, kName, name);
    DDX_Text(exchange, kCount, count);
    DDX_Number(exchange, kValue, value);
    DDX_Number(exchange, kSingle, single);
    DDX_Check(exchange, kFlag, flag);
    DDX_CBIndex(exchange, kBox, box);
    DDX_Text(exchange, kFigure, figure);
    DDX_Text(exchange, kMissing, missing);
  }

 private:
  void Add(QVBoxLayout* layout, int id, QWidget* control) {
    layout->addWidget(control);
    AddControl(id, control, "control " + std::to_string(id));
  }
};

struct DataExchange : testing::Test {
  ScriptedModal& modal = ScriptedModal::Install();
  Form form;
  DataExchange() { form.Create(); }
  ~DataExchange() override {
    SetModal(nullptr);
    SetNumberCharacters({".", ","});
  }
};

TEST_F(DataExchange, MembersReachTheControls) {
  EXPECT_EQ(form.Control<QLineEdit>(kName).text(), "zinc");
  EXPECT_EQ(form.Control<QLineEdit>(kCount).text(), "12");
  EXPECT_EQ(form.Control<QLineEdit>(kValue).text(), "0.1") << "15 digits, no tail";
  EXPECT_EQ(form.Control<QLineEdit>(kSingle).text(), "0.1") << "6 digits of a single";
  EXPECT_TRUE(form.Control<QCheckBox>(kFlag).isChecked());
  EXPECT_EQ(form.Control<QComboBox>(kBox).currentText(), "Last");
  EXPECT_EQ(form.Control<QLabel>(kFigure).text(), "<b>Au</b>");
  EXPECT_EQ(form.Control<QLabel>(kFigure).textFormat(), Qt::PlainText) << "names are no markup";
  form.box = 7;
  form.UpdateData(false);
  EXPECT_EQ(form.Control<QComboBox>(kBox).currentIndex(), -1);
}

TEST_F(DataExchange, WhatIsTypedReachesTheMembers) {
  SetNumberCharacters({",", "."});
  form.Type(kName, "Blei – Pb");
  form.Type(kCount, " -7 ");
  form.Type(kValue, "1.234,5");
  form.Type(kSingle, "0,1");
  form.Control<QCheckBox>(kFlag).setChecked(false);
  form.Control<QComboBox>(kBox).setCurrentIndex(0);
  ASSERT_TRUE(form.UpdateData(true));
  EXPECT_EQ(form.name, "Blei – Pb");
  EXPECT_EQ(form.count, -7);
  EXPECT_EQ(form.value, 1234.5);
  EXPECT_EQ(form.single, 0.1f);
  EXPECT_FALSE(form.flag);
  EXPECT_EQ(form.box, 0);
  EXPECT_EQ(form.missing, "kept");
  EXPECT_TRUE(modal.told.empty());
}

TEST_F(DataExchange, ABadTextIsToldAndGetsTheFocus) {
  const struct {
    int id;
    const char* text;
    const char* told;
  } cases[] = {
      {kValue, "1x", "\"1x\" is not a number."},
      {kSingle, "--1", "\"--1\" is not a number."},
      {kCount, "3.5", "\"3.5\" is not a whole number."},
      {kCount, "99999999999", "\"99999999999\" is not a whole number."},
      {kCount, "", "\"\" is not a whole number."},
  };
  form.show();
  QApplication::setActiveWindow(&form);
  ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
  for (const auto& each : cases) {
    form.UpdateData(false);
    modal.told.clear();
    form.Control<QLineEdit>(kName).setFocus();
    form.Type(each.id, each.text);
    EXPECT_FALSE(form.UpdateData(true));
    EXPECT_EQ(modal.told, std::vector<CString>{each.told});
    EXPECT_TRUE(form.Control<QLineEdit>(each.id).hasFocus()) << each.told;
  }
  EXPECT_EQ(form.value, 0.1);
  EXPECT_EQ(form.count, 12);
}

TEST_F(DataExchange, OkKeepsADialogOpenUntilAllIsWell) {
  modal.onDialog = [this](CDialog& dialog) {
    dialog.show();
    form.Type(kValue, "1x");
    form.Control<QAbstractButton>(kIdOk).click();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(modal.told.size(), 1u);
    form.Type(kValue, "2.5");
    form.Control<QAbstractButton>(kIdOk).click();
    EXPECT_FALSE(dialog.isVisible());
    return dialog.result();
  };
  EXPECT_EQ(form.DoModal(), kIdOk);
  EXPECT_EQ(form.value, 2.5);
  modal.onDialog = [this](CDialog& dialog) {
    dialog.show();
    form.Type(kValue, "3");
    QTest::keyClick(&dialog, Qt::Key_Escape);
    return dialog.result();
  };
  EXPECT_EQ(form.DoModal(), kIdCancel);
  EXPECT_EQ(form.value, 2.5);
}

}  // namespace
}  // namespace tallyscope
