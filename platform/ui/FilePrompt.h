// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "files/UFilename.h"
#include "files/UFindLostFile.h"
#include "platform/ui/Wnd.h"

namespace tallyscope {

// What Qt's file dialogs call a filter: "A (*.a)|*.a;*.b||" becomes "A (*.a *.b)".
CString ToModalFilter(const CString& filter);

// Asks where to save. `folder`, `fileName`, `extension` and `title` take effect when not empty; a name
// without an ending gets `extension`. Overwriting is asked for; the current folder stays. `filterIndex` counts from 1,
// in and out. Fills `files` with the one path and gives true, or empties it, sets `filterIndex` to -1 and gives false
// when the user cancels. `flags` have no effect on this system.
bool PromptSave(const CString& folder, const CString& fileName, const CString& extension, const CString& title,
                const CString& filter, int& filterIndex, std::vector<CUFilename>& files, unsigned flags,
                QWidget* parent);

// Asks where to open from, in `folder`. Nothing when the user cancels.
std::optional<CString> PromptOpen(const CString& folder, const CString& title, const CString& filter, int& filterIndex,
                                  QWidget* parent);

// Asks about lost files with windows. The host's main window, if there is one, gets kMessageStatusText with a new
// CString that it owns from then on.
class CModalLostFileAsker : public CLostFileAsker {
 public:
  explicit CModalLostFileAsker(CWnd* mainWindow = nullptr, QWidget* parent = nullptr)
      : mainWindow_(mainWindow), parent_(parent) {}
  bool Confirm(const CString& caption, const CString& question) override;
  std::optional<CString> AskOpen(const CString& title, const CString& folder, unsigned flags, const CString& filter,
                                 int& filterIndex) override;
  void ShowStatus(const CString& text) override;

 private:
  CWnd* mainWindow_;
  QWidget* parent_;
};

}  // namespace tallyscope
