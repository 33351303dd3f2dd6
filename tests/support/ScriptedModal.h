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

  int answerFilter = 0;  // the filter that file prompts answer with; 0 leaves the one they came with

  std::vector<CString> told;
  std::vector<CString> asked;       // questions and titles of file prompts
  std::vector<CString> filePlaces;  // folder or path that each file prompt started at
  std::vector<CString> fileFilters;
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
  bool ConfirmTrouble(QWidget* parent, const CString&, const CString& question) override {
    return Confirm(parent, question);
  }
  std::optional<CString> AskOpenFile(QWidget*, const CString& title, const CString& folder, const CString& filter,
                                     int* filterNumber) override {
    return AskFile(title, folder, filter, filterNumber);
  }
  std::optional<CString> AskSaveFile(QWidget*, const CString& title, const CString& path, const CString& filter,
                                     int* filterNumber) override {
    return AskFile(title, path, filter, filterNumber);
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
  std::optional<CString> AskFile(const CString& title, const CString& place, const CString& filter, int* filterNumber) {
    asked.push_back(title);
    filePlaces.push_back(place);
    fileFilters.push_back(filter);
    if (filterNumber != nullptr && answerFilter != 0) *filterNumber = answerFilter;
    return Next(files, title).value_or(std::nullopt);
  }

  template <class Answer>
  static std::optional<Answer> Next(std::vector<Answer>& answers, const CString& question) {
    if (answers.empty()) {
      ADD_FAILURE() << "no answer to: " << question;
      return std::nullopt;
    }
    Answer answer = answers.front();  // a copy: the list of bools gives references
    answers.erase(answers.begin());
    return answer;
  }
};

}  // namespace tallyscope
