// SPDX-License-Identifier: MIT
// The program's window: opens a table, with a progress bar when that takes a while, and runs the workbench on it.

#include <iostream>
#include <memory>

#include <QApplication>
#include <QFileInfo>
#include <QLabel>
#include <QProgressDialog>
#include <QTimer>

#include "host/CommandLine.h"
#include "host/OpenTable.h"
#include "host/PictureWalk.h"
#include "host/Sentences.h"
#include "platform/ui/Icon.h"
#include "platform/ui/Modal.h"
#include "platform/ui/PlainText.h"
#include "platform/ui/WinApp.h"
#include "platform/ui/Wnd.h"
#include "statistics/ProgressSink.h"
#include "workbench/Dlg_Tallyscope_Ext.h"

namespace tallyscope {

namespace {

constexpr int kSlow = 500;     // milliseconds until the progress bar shows
constexpr int kSettled = 300;  // and until a new window has its size from the display server

// Qt ends the process when there is no display server, so we look first.
bool HasDisplay() {
  const auto named = [](const char* variable) { return !qEnvironmentVariableIsEmpty(variable); };
  return named("DISPLAY") || named("WAYLAND_DISPLAY") || named("QT_QPA_PLATFORM");
}

// A progress bar with Cancel, which shows itself when the work takes longer than half a second.
class ProgressWindow : public CProgressSink {
 public:
  explicit ProgressWindow(const CString& text) : bar_(QString(), "Cancel", 0, 100) {
    auto* label = new QLabel;
    SetPlainText(*label, OneLine(text));
    bar_.setLabel(label);
    bar_.setWindowTitle("Tallyscope");
    bar_.setWindowModality(Qt::ApplicationModal);
    bar_.setMinimumDuration(kSlow);
  }
  bool OnProgress(int percent) override {
    bar_.setValue(percent);  // runs the event loop once it shows
    return !bar_.wasCanceled();
  }
  void SetTask(const char*, int) override {}

 private:
  QProgressDialog bar_;
};

CString AskForFile() {
  auto& profile = GetProfile();
  const auto chosen = GetModal().AskOpenFile(nullptr, "Open a table", profile.GetProfileString("PATH", "Table", ""),
                                             "Tables (*.csv *.txt *.tsv *.dat *.gslib);;All files (*)");
  if (!chosen) return CString();
  profile.WriteProfileString("PATH", "Table", FromQString(QFileInfo(ToQString(*chosen)).absolutePath()));
  return *chosen;
}

OpenedTable Load(const CString& file, const ReaderOptions& options) {
  ProgressWindow progress("Reading " + FromQString(QFileInfo(ToQString(file)).fileName()));
  return OpenTable(file, options, &progress);
}

int Refuse(const CString& sentence, bool tell) {
  Say(std::cerr, sentence);
  if (tell) GetModal().Tell(nullptr, sentence);
  return 1;
}

// What was found in the file, for the status line.
CString Describe(const CString& file, const OpenedTable& opened) {
  CString text = FromQString(QFileInfo(ToQString(file)).fileName()) + ": " + opened.format;
  if (!opened.axes.empty()) text += "; axes " + opened.axes.substr(0, opened.axes.find(';'));
  return text;
}

// Sets the field that every mode starts with, and the first other one beside it for two of them.
void SetFields(CDlg_Tallyscope& workbench, CStats_Data& table, int field) {
  int other = field == 0 ? 1 : 0;
  if (other >= table.GetValueSize()) other = field == -1 ? -2 : -1;
  if (other < -table.GetSpatialSize()) other = field;
  workbench.SetUniDim(field);
  workbench.SetSPDim(field);
  workbench.SetBiDim1(field);
  workbench.SetBiDim2(other);
  if (workbench.GetMode() != CTallyscope::eBivariate) workbench.SetUniDim(field);  // one field on show, not two
}

void ShowPictures(CDlg_Tallyscope& workbench, const CString& folder, int& result) {
  std::vector<CString> written;
  const Status walked = WalkPages(workbench, folder, written);
  for (const auto& path : written) Say(std::cout, "Picture: " + path);
  if (!walked.IsGood()) result = Refuse(walked.GetError(), false);
  workbench.close();
}

}  // namespace

int RunWindow(const OpenRequest& request) {
  if (!HasDisplay()) {
    return Refuse("There is no display to open a window on. \"tallyscope summary FILE\" needs none.", false);
  }
  int argc = 1;
  char name[] = "tallyscope";
  char* argv[] = {name, nullptr};
  QApplication application(argc, argv);
  QApplication::setApplicationName("tallyscope");
  QApplication::setDesktopFileName("tallyscope");
  QApplication::setWindowIcon(MakeIcon("app"));

  const bool walks = !request.pictures.empty();
  if (walks) SetProfile(std::make_unique<CMemoryProfile>());  // pictures look the same every time
  const CString file = request.file.empty() ? AskForFile() : request.file;
  if (file.empty()) return 0;
  auto opened = Load(file, request.reader);
  if (!opened.table) return opened.error.empty() ? 0 : Refuse(opened.error, !walks);
  for (const auto& warning : opened.warnings) Say(std::cerr, warning);
  if (!opened.axes.empty()) Say(std::cout, "Axes: " + opened.axes);

  auto* table = opened.table.get();
  int field = table->GetValueSize() > 0 ? 0 : -1;
  if (!request.field.empty()) {
    field = table->FindDim(request.field);
    if (field == CHostTable::kNoDim) return Refuse(file + " has no field \"" + request.field + "\".", !walks);
  }

  CDlg_Tallyscope_Ext workbench;
  auto* dialog = workbench.GetDlg();
  dialog->PushData(opened.table.release(), /*owns=*/true);
  if (request.mode) {
    if (!dialog->IsModeOffered(*request.mode)) return Refuse(file + " can't be shown in that mode.", !walks);
    dialog->SetMode(*request.mode);
  }
  SetFields(*dialog, *table, field);
  dialog->SetIdleStatus(Describe(file, opened));
  int result = 0;
  if (walks) QTimer::singleShot(kSettled, dialog, [&] { ShowPictures(*dialog, request.pictures, result); });
  workbench.DoModal();
  return result;
}

}  // namespace tallyscope
