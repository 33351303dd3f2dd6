// SPDX-License-Identifier: MIT
#include "platform/ui/Modal.h"

#include <utility>

#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QRegularExpression>

#include "platform/ui/Dialog.h"
#include "platform/ui/Menu.h"
#include "platform/ui/PlainText.h"

namespace tallyscope {

namespace {

std::optional<CString> Chosen(const QString& path) {
  if (path.isEmpty()) return std::nullopt;
  return FromQString(path);
}

// The ending of the first pattern of a filter: "png" of "Picture (*.png *.jpg)", none of "All files (*)".
QString Suffix(const QString& filter) {
  static const QRegularExpression pattern("\\*\\.(\\w+)");
  return pattern.match(filter).captured(1);
}

int ShowMessage(QWidget* parent, QMessageBox::Icon icon, const CString& text, QMessageBox::StandardButtons buttons,
                const CString& caption = "Tallyscope") {
  QMessageBox box(icon, TitleText(caption), QString(), buttons, parent);
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  box.setText(CutText(text));
  return box.exec();
}

void SelectFilter(QFileDialog& dialog, const int* filterNumber) {
  if (filterNumber == nullptr) return;
  const QString filter = dialog.nameFilters().value(*filterNumber - 1);
  if (!filter.isEmpty()) dialog.selectNameFilter(filter);
}

std::optional<CString> RunFileDialog(QFileDialog& dialog, int* filterNumber) {
  SelectFilter(dialog, filterNumber);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  if (filterNumber != nullptr) {
    *filterNumber = static_cast<int>(dialog.nameFilters().indexOf(dialog.selectedNameFilter())) + 1;
  }
  return Chosen(dialog.selectedFiles().value(0));
}

class RealModal : public CModal {
 public:
  void Tell(QWidget* parent, const CString& sentence) override {
    ShowMessage(parent, QMessageBox::Warning, sentence, QMessageBox::Ok);
  }
  bool Confirm(QWidget* parent, const CString& question) override {
    return ShowMessage(parent, QMessageBox::Question, question, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
  }
  bool ConfirmTrouble(QWidget* parent, const CString& caption, const CString& question) override {
    return ShowMessage(parent, QMessageBox::Critical, question, QMessageBox::Yes | QMessageBox::No, caption) ==
           QMessageBox::Yes;
  }
  std::optional<CString> AskOpenFile(QWidget* parent, const CString& title, const CString& folder,
                                     const CString& filter, int* filterNumber) override {
    QFileDialog dialog(parent, TitleText(title), ToQString(folder), ToQString(filter));
    dialog.setFileMode(QFileDialog::ExistingFile);
    return RunFileDialog(dialog, filterNumber);
  }
  std::optional<CString> AskSaveFile(QWidget* parent, const CString& title, const CString& path, const CString& filter,
                                     int* filterNumber) override {
    const QFileInfo proposed(ToQString(path));
    QFileDialog dialog(parent, TitleText(title), proposed.path(), ToQString(filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.selectFile(proposed.fileName());
    SelectFilter(dialog, filterNumber);
    // A name without an ending gets the chosen kind's.
    dialog.setDefaultSuffix(Suffix(dialog.selectedNameFilter()));
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                     [&dialog](const QString& chosen) { dialog.setDefaultSuffix(Suffix(chosen)); });
    return RunFileDialog(dialog, filterNumber);
  }
  int RunMenu(QWidget* parent, const CMenu& menu, QPoint global) override {
    QMenu popup(parent);
    for (const auto& item : menu.GetItems()) {
      if (item.id == 0) {
        popup.addSeparator();
        continue;
      }
      auto* action = popup.addAction(ItemText(item.text));
      action->setData(item.id);
      action->setEnabled(item.enabled);
      action->setCheckable(item.checked);
      action->setChecked(item.checked);
    }
    const auto* picked = popup.exec(global);
    return picked != nullptr ? picked->data().toInt() : 0;
  }
  int RunDialog(CDialog& dialog) override { return dialog.RunModalLoop(); }
};

// Counts what is open, and asks the one in use.
class CountingModal : public CModal {
 public:
  std::unique_ptr<CModal> inner = std::make_unique<RealModal>();
  int depth = 0;

  void Tell(QWidget* parent, const CString& sentence) override {
    const Open open(depth);
    inner->Tell(parent, sentence);
  }
  bool Confirm(QWidget* parent, const CString& question) override {
    const Open open(depth);
    return inner->Confirm(parent, question);
  }
  bool ConfirmTrouble(QWidget* parent, const CString& caption, const CString& question) override {
    const Open open(depth);
    return inner->ConfirmTrouble(parent, caption, question);
  }
  std::optional<CString> AskOpenFile(QWidget* parent, const CString& title, const CString& folder,
                                     const CString& filter, int* filterNumber) override {
    const Open open(depth);
    return inner->AskOpenFile(parent, title, folder, filter, filterNumber);
  }
  std::optional<CString> AskSaveFile(QWidget* parent, const CString& title, const CString& path, const CString& filter,
                                     int* filterNumber) override {
    const Open open(depth);
    return inner->AskSaveFile(parent, title, path, filter, filterNumber);
  }
  int RunMenu(QWidget* parent, const CMenu& menu, QPoint global) override {
    const Open open(depth);
    return inner->RunMenu(parent, menu, global);
  }
  int RunDialog(CDialog& dialog) override {
    const Open open(depth);
    return inner->RunDialog(dialog);
  }

 private:
  class Open {
   public:
    explicit Open(int& depth) : depth_(depth) { ++depth_; }
    ~Open() { --depth_; }
    Open(const Open&) = delete;
    Open& operator=(const Open&) = delete;

   private:
    int& depth_;
  };
};

CountingModal& Current() {
  static CountingModal current;
  return current;
}

}  // namespace

CModal& GetModal() {
  return Current();
}

int GetModalDepth() {
  return Current().depth;
}

void SetModal(std::unique_ptr<CModal> modal) {
  Current().inner = modal ? std::move(modal) : std::make_unique<RealModal>();
}

}  // namespace tallyscope
