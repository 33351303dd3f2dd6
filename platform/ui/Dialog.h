// SPDX-License-Identifier: MIT
#pragma once

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
};

}  // namespace tallyscope
