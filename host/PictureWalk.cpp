// SPDX-License-Identifier: MIT
#include "host/PictureWalk.h"

#include <QApplication>
#include <QBuffer>
#include <QComboBox>
#include <QDir>
#include <QPixmap>

#include "platform/core/AtomicFile.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_Tallyscope.h"
#include "workbench/PS_BaseTS.h"

namespace tallyscope {

namespace {

QString MakeFileName(const QString& mode, const QString& page) {
  return (mode + "-" + page + ".png").toLower().replace(' ', '-');
}

Status SavePicture(CDlg_Tallyscope& workbench, const QString& path) {
  QApplication::processEvents();
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!workbench.grab().save(&buffer, "PNG")) {
    return Status::Bad("The picture " + FromQString(path) + " could not be made.");
  }
  CAtomicFile file(FromQString(path));
  if (file.Write({bytes.constData(), static_cast<std::size_t>(bytes.size())}) && file.Commit()) {
    return Status::Good();
  }
  return Status::Bad(file.GetError());
}

}  // namespace

Status WalkPages(CDlg_Tallyscope& workbench, const CString& folder, std::vector<CString>& written) {
  const QDir dir(ToQString(folder));
  if (!dir.mkpath(".")) return Status::Bad("The folder " + folder + " could not be made.");
  auto* modes = workbench.GetControl<QComboBox>(kControlMode);
  for (int mode = 0; mode < modes->count(); ++mode) {
    modes->setCurrentIndex(mode);
    emit modes->activated(mode);
    auto* sheet = workbench.GetSheet();
    for (int page = 0; sheet != nullptr && page < sheet->GetPageCount(); ++page) {
      sheet->SetActivePage(page);
      const QString caption = ToQString(sheet->GetPage(page)->GetCaption());
      const QString path = dir.filePath(MakeFileName(modes->currentText(), caption));
      Status saved = SavePicture(workbench, path);
      if (!saved.IsGood()) return saved;
      written.push_back(FromQString(path));
    }
  }
  return Status::Good();
}

}  // namespace tallyscope
