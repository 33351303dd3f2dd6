// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include <QPoint>

#include "platform/core/String.h"

class QWidget;

namespace tallyscope {

class CDialog;
class CMenu;

// The one seam for everything modal, so that no test ever blocks. The program's shows real windows; a test's answers
// from a script (tests/support/ScriptedModal.h).
class CModal {
 public:
  virtual ~CModal() = default;
  virtual void Tell(QWidget* parent, const CString& sentence) = 0;
  virtual bool Confirm(QWidget* parent, const CString& question) = 0;
  // The same where something went wrong: with a stop sign and a caption.
  virtual bool ConfirmTrouble(QWidget* parent, const CString& caption, const CString& question) = 0;
  // `filter` as in "Tables (*.csv *.txt);;All files (*)"; `filterNumber` is the chosen one, from 1 on, in and out.
  // Nothing when the user cancels.
  virtual std::optional<CString> AskOpenFile(QWidget* parent, const CString& title, const CString& folder,
                                             const CString& filter, int* filterNumber = nullptr) = 0;
  virtual std::optional<CString> AskSaveFile(QWidget* parent, const CString& title, const CString& path,
                                             const CString& filter, int* filterNumber = nullptr) = 0;
  virtual int RunMenu(QWidget* parent, const CMenu& menu, QPoint global) = 0;  // id of the item picked, 0 none
  virtual int RunDialog(CDialog& dialog) = 0;                                  // kIdOk or kIdCancel
};

CModal& GetModal();
// How many things asked of it are open, one on top of the other.
int GetModalDepth();
void SetModal(std::unique_ptr<CModal> modal);  // null: real windows again

}  // namespace tallyscope
