// SPDX-License-Identifier: MIT
#pragma once

#include <climits>

#include <QDialog>

#include "platform/ui/Wnd.h"

namespace tallyscope {

inline constexpr int kIdOk = 1;  // control ids of the two standard buttons, and the results of a modal run
inline constexpr int kIdCancel = 2;

// A dialog. Its controls are built in the constructor or in CreateControls; OnInitDialog runs once, before it is first
// shown, and moves members to controls.
class CDialog : public QDialog, public CWnd {
 public:
  explicit CDialog(CWnd* parent = nullptr);

  QWidget* GetWidget() override { return this; }

  // Runs the dialog through the modal seam. kIdOk or kIdCancel.
  virtual int DoModal();
  // Does what comes before showing: CreateControls and OnInitDialog, once. DoModal calls it; a test may.
  void Create();

  // Shows and runs the created dialog until it ends; used by the modal seam.
  int RunModalLoop();
  // Whether something runs on top of this dialog: a menu, another dialog, a drag, anything with an event loop of its
  // own. Code of the dialog is on the stack then.
  bool IsCovered() const;

 protected:
  virtual void CreateControls() {}
  virtual bool OnInitDialog();  // moves members to controls
  virtual void OnOK();          // moves controls to members; ends with kIdOk if that went well
  virtual void OnCancel();      // ends with kIdCancel
  virtual void OnDestroy() {}   // the modal run has ended
  void EndDialog(int result);

  // Adds a row of standard buttons to a layout, wired to OnOK and OnCancel.
  QWidget* CreateButtons(bool cancel);

  void accept() override { OnOK(); }
  void reject() override { OnCancel(); }

 private:
  bool created_ = false;
  // How deep things are while nothing is open on top of this dialog.
  static constexpr int kAnyLevel = INT_MAX;
  int modalDepth_ = 0;
  int loopLevel_ = kAnyLevel;  // known while it runs
};

}  // namespace tallyscope
