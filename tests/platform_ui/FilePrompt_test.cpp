// SPDX-License-Identifier: MIT
#include "platform/ui/FilePrompt.h"

#include <gtest/gtest.h>

#include <QWidget>

#include "platform/core/Messages.h"
#include "tests/support/Scratch.h"
#include "tests/support/ScriptedModal.h"

namespace tallyscope {

namespace {

TEST(FilePrompt, FiltersAreWordedAsTheDialogsNeedThem) {
  EXPECT_EQ(ToModalFilter("Models (*.mvf)|*.mvf|All files (*.*)|*.*||"), "Models (*.mvf);;All files (*)");
  EXPECT_EQ(ToModalFilter("Pictures|*.png;*.jpg||"), "Pictures (*.png *.jpg)");
  EXPECT_EQ(ToModalFilter(""), "");
  EXPECT_EQ(ToModalFilter("Models (old) (*.m)|*.m|Models (new)|*.n||"), "Models (old) (*.m);;Models (new) (*.n)");
  EXPECT_EQ(ToModalFilter("Half"), "Half (*)");
}

TEST(FilePrompt, SavesUnderTheChosenName) {
  auto& modal = ScriptedModal::Install();
  modal.files = {CString("/data/model"), std::nullopt};
  modal.answerFilter = 2;
  std::vector<CUFilename> files(3);
  int filter = 1;
  EXPECT_TRUE(PromptSave("/data", "old.mvf", "mvf", "Save a model", "A|*.a||", filter, files, 0, nullptr));
  ASSERT_EQ(files.size(), 1u);
  EXPECT_EQ(files[0].GetFullPath(), "/data/model.mvf");
  EXPECT_EQ(filter, 2);
  EXPECT_EQ(modal.filePlaces, std::vector<CString>{"/data/old.mvf"});
  EXPECT_FALSE(PromptSave("", "", "mvf", "", "", filter, files, 0, nullptr));
  EXPECT_TRUE(files.empty());
  EXPECT_EQ(filter, -1);
  SetModal(nullptr);
}

// The prompt itself asks only about the name that was typed.
TEST(FilePrompt, AddingAnEndingReplacesNoFileUnasked) {
  const CScratch scratch;
  const CString old = scratch.Write("model.mvf", "old");
  const CString typed = scratch.Path("model");
  auto& modal = ScriptedModal::Install();
  modal.files = {typed, typed, scratch.Path("other")};
  modal.confirmations = {false, true};
  std::vector<CUFilename> files;
  int filter = 1;
  EXPECT_TRUE(PromptSave("", "", ".mvf", "", "", filter, files, 0, nullptr));
  ASSERT_EQ(files.size(), 1u);
  EXPECT_EQ(files[0].GetFullPath(), old);
  EXPECT_EQ(modal.asked, (std::vector<CString>{"Save", old + " already exists.\nDo you want to replace it?", "Save",
                                               old + " already exists.\nDo you want to replace it?"}));
  EXPECT_TRUE(PromptSave("", "", "mvf", "", "", filter, files, 0, nullptr));
  EXPECT_EQ(files[0].GetNameAndExtension(), "other.mvf");
  SetModal(nullptr);
}

class MainWindow : public QWidget, public CWnd {
 public:
  std::vector<CString> said;
  QWidget* GetWidget() override { return this; }

 protected:
  std::intptr_t OnMessage(unsigned message, std::uintptr_t wParam, std::intptr_t) override {
    if (message != kMessageStatusText) return 0;
    const std::unique_ptr<CString> text(reinterpret_cast<CString*>(wParam));
    said.push_back(*text);
    return 1;
  }
};

TEST(FilePrompt, ALostFileIsAskedForAndTheMainWindowTold) {
  auto& modal = ScriptedModal::Install();
  modal.confirmations = {true};
  modal.files = {std::nullopt};
  MainWindow window;
  CModalLostFileAsker asker(&window, &window);
  CUFindLostFile lost;
  lost.SetAsker(&asker);
  int filter = 1;
  EXPECT_FALSE(lost.Find("/gone/a.csv", "", 0, "Tables|*.csv||", filter));
  EXPECT_EQ(window.said, (std::vector<CString>{"Replacing /gone/a.csv", "For Help, press F1"}));
  SetModal(nullptr);
}

}  // namespace

}  // namespace tallyscope
