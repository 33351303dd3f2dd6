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

// File and field names may look like markup, and must not be taken for it.
int ShowMessage(QWidget* parent, QMessageBox::Icon icon, const CString& text, QMessageBox::StandardButtons buttons) {
  QMessageBox box(icon, "Tallyscope", QString(), buttons, parent);
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  box.setText(ToQString(text));
  return box.exec();
}

class RealModal : public CModal {
 public:
  void Tell(QWidget* parent, const CString& sentence) override {
    ShowMessage(parent, QMessageBox::Warning, sentence, QMessageBox::Ok);
  }
  bool Confirm(QWidget* parent, const CString& question) override {
    return ShowMessage(parent, QMessageBox::Question, question, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
  }
  std::optional<CString> AskOpenFile(QWidget* parent, const CString& title, const CString& folder,
                                     const CString& filter) override {
    return Chosen(QFileDialog::getOpenFileName(parent, ToQString(title), ToQString(folder), ToQString(filter)));
  }
  std::optional<CString> AskSaveFile(QWidget* parent, const CString& title, const CString& path,
                                     const CString& filter) override {
    const QFileInfo proposed(ToQString(path));
    QFileDialog dialog(parent, ToQString(title), proposed.path(), ToQString(filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.selectFile(proposed.fileName());
    // A name without an ending gets the chosen kind's.
    dialog.setDefaultSuffix(Suffix(dialog.selectedNameFilter()));
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                     [&dialog](const QString& chosen) { dialog.setDefaultSuffix(Suffix(chosen)); });
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return Chosen(dialog.selectedFiles().value(0));
  }
  int RunMenu(QWidget* parent, const CMenu& menu, QPoint global) override {
    QMenu popup(parent);
    for (const auto& item : menu.GetItems()) {
      if (item.id == 0) {
        popup.addSeparator();
        continue;
      }
      auto* action = popup.addAction(ToQString(item.text));
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

std::unique_ptr<CModal>& Current() {
  static std::unique_ptr<CModal> current = std::make_unique<RealModal>();
  return current;
}

}  // namespace

CModal& GetModal() {
  return *Current();
}

void SetModal(std::unique_ptr<CModal> modal) {
  Current() = modal ? std::move(modal) : std::make_unique<RealModal>();
}

}  // namespace tallyscope
