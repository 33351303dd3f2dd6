// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/ui/Dialog.h"
#include "platform/ui/Menu.h"
#include "platform/ui/Modal.h"

namespace tallyscope {

// Answers everything modal from lists that a test fills, first to last, and keeps what was asked. A question that finds
// no answer fails the test; a sentence needs none, and a menu without one is closed.
class ScriptedModal : public CModal {
 public:
  std::vector<bool> confirmations;
  std::vector<std::optional<CString>> files;  // for both file prompts
  std::vector<int> menuIds;
  std::function<int(CDialog&)> onDialog;  // works on the open dialog; what it returns ends it

  std::vector<CString> told;
  std::vector<CString> asked;  // questions and titles of file prompts
  std::vector<CMenu> menus;
  std::vector<QPoint> menuPlaces;

  // Installs one that stays until the next SetModal; the modal seam owns it.
  static ScriptedModal& Install() {
    auto scripted = std::make_unique<ScriptedModal>();
    auto& installed = *scripted;
    SetModal(std::move(scripted));
    return installed;
  }

  void Tell(QWidget*, const CString& sentence) override { told.push_back(sentence); }
  bool Confirm(QWidget*, const CString& question) override {
    asked.push_back(question);
    return Next(confirmations, question).value_or(false);
  }
  std::optional<CString> AskOpenFile(QWidget*, const CString& title, const CString&, const CString&) override {
    asked.push_back(title);
    return Next(files, title).value_or(std::nullopt);
  }
  std::optional<CString> AskSaveFile(QWidget*, const CString& title, const CString&, const CString&) override {
    asked.push_back(title);
    return Next(files, title).value_or(std::nullopt);
  }
  int RunMenu(QWidget*, const CMenu& menu, QPoint global) override {
    menus.push_back(menu);
    menuPlaces.push_back(global);
    return menuIds.empty() ? 0 : *Next(menuIds, "a menu");
  }
  int RunDialog(CDialog& dialog) override {
    if (onDialog) return onDialog(dialog);
    ADD_FAILURE() << "unexpected dialog: " << dialog.GetWindowText();
    return kIdCancel;
  }

 private:
  template <class Answer>
  static std::optional<Answer> Next(std::vector<Answer>& answers, const CString& question) {
    if (answers.empty()) {
      ADD_FAILURE() << "no answer to: " << question;
      return std::nullopt;
    }
    auto answer = answers.front();
    answers.erase(answers.begin());
    return answer;
  }
};

}  // namespace tallyscope
