// SPDX-License-Identifier: MIT
#include "workbench/GraphMenu.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>

#include "outside/plot/PlotPicture.h"
#include "platform/ui/FilePrompt.h"
#include "platform/ui/Menu.h"
#include "platform/ui/Modal.h"
#include "platform/ui/WaitCursor.h"
#include "platform/ui/WinApp.h"
#include "plots/UPlotX_Tallyscope.h"
#include "workbench/PP_Base_Graph.h"

namespace tallyscope {

namespace {

enum MenuItem : int { kCopyPicture = 1, kSavePicture, kCopyData, kPerceptual, kFit };

constexpr const char* kPictures = "PNG picture (*.png)|*.png|SVG drawing (*.svg)|*.svg|PDF document (*.pdf)|*.pdf||";
constexpr const char* kEndings[] = {"png", "svg", "pdf"};

CSize GetSize(CPP_Base_Graph& page) {
  const CRect client = page.GetContainer().GetClientRect();
  return {client.Width(), client.Height()};
}

void CopyPicture(CPP_Base_Graph& page) {
  QImage image;
  const Status status = MakePicture(page.GetContainer(), GetSize(page), page.devicePixelRatioF(), image);
  if (!status.IsGood()) {
    GetModal().Tell(&page, status.GetError());
    return;
  }
  image.setDevicePixelRatio(1);
  QGuiApplication::clipboard()->setImage(image);
}

void SavePictureAs(CPP_Base_Graph& page) {
  auto& profile = GetProfile();
  int filter = 1;
  std::vector<CUFilename> files;
  if (!PromptSave(profile.GetProfileString("PATH", "Picture", ""), page.GetCaption(), "", "Save the picture", kPictures,
                  filter, files, 0, &page)) {
    return;
  }
  CString path = files.front().GetFullPath();
  if (files.front().GetExtension().empty()) path += CString(".") + kEndings[std::clamp(filter, 1, 3) - 1];
  profile.WriteProfileString("PATH", "Picture", files.front().GetDriveAndFolder());
  const CWaitCursor wait;
  const Status status = SavePicture(page.GetContainer(), GetSize(page), path, page.devicePixelRatioF());
  if (!status.IsGood()) GetModal().Tell(&page, status.GetError());
}

void CopyData(CPP_Base_Graph& page) {
  const CWaitCursor wait;
  QGuiApplication::clipboard()->setText(ToQString(page.GetPlot()->GetDataText()));
}

}  // namespace

void RunGraphMenu(CPP_Base_Graph& page, QPoint global) {
  CMenu menu;
  menu.AppendItem(kCopyPicture, "Copy picture");
  menu.AppendItem(kSavePicture, "Save picture...");
  menu.AppendItem(kCopyData, "Copy data");
  menu.AppendSeparator();
  menu.AppendItem(kPerceptual, "Perceptual colours", page.IsPerceptual());
  menu.AppendSeparator();
  menu.AppendItem(kFit, "Fit to data");
  switch (GetModal().RunMenu(&page, menu, global)) {
    case kCopyPicture:
      return CopyPicture(page);
    case kSavePicture:
      return SavePictureAs(page);
    case kCopyData:
      return CopyData(page);
    case kPerceptual:
      return page.SetPerceptual(!page.IsPerceptual());
    case kFit:
      return page.SetZoomFit(true);
    default:
      return;
  }
}

}  // namespace tallyscope
