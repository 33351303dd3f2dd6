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

bool SavePicture(CDlg_Tallyscope& workbench, const QString& path, CString& error) {
  QApplication::processEvents();
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!workbench.grab().save(&buffer, "PNG")) {
    error = "The picture " + FromQString(path) + " could not be made.";
    return false;
  }
  CAtomicFile file(FromQString(path));
  if (file.Write({bytes.constData(), static_cast<std::size_t>(bytes.size())}) && file.Commit()) return true;
  error = file.GetError();
  return false;
}

}  // namespace

std::vector<CString> WalkPages(CDlg_Tallyscope& workbench, const CString& folder, CString& error) {
  std::vector<CString> written;
  const QDir dir(ToQString(folder));
  if (!dir.mkpath(".")) {
    error = "The folder " + folder + " could not be made.";
    return written;
  }
  auto* modes = workbench.GetControl<QComboBox>(kControlMode);
  for (int mode = 0; mode < modes->count(); ++mode) {
    modes->setCurrentIndex(mode);
    emit modes->activated(mode);
    auto* sheet = workbench.GetSheet();
    for (int page = 0; sheet != nullptr && page < sheet->GetPageCount(); ++page) {
      sheet->SetActivePage(page);
      const QString caption = ToQString(sheet->GetPage(page)->GetCaption());
      const QString path = dir.filePath(MakeFileName(modes->currentText(), caption));
      if (!SavePicture(workbench, path, error)) return written;
      written.push_back(FromQString(path));
    }
  }
  return written;
}

}  // namespace tallyscope
