// SPDX-License-Identifier: MIT
#include "workbench/ModelVariogramPrompt.h"

#include "files/FolderMemory.h"
#include "platform/ui/FilePrompt.h"
#include "platform/ui/Modal.h"
#include "platform/ui/WinApp.h"
#include "spatial/ModelVariogramFile.h"

namespace tallyscope {

namespace {

constexpr const char* kFilter = "Model Variogram files (*.mvf)|*.mvf|All files (*.*)|*.*||";
constexpr const char* kSection = "PATH";
constexpr const char* kKey = "ModelVariogram";

void RememberFolder(const CUFilename& file) {
  SetDefaultFolder(GetProfile(), kSection, kKey, file.GetDriveAndFolder());
}

bool TellUnless(bool good, QWidget* parent, const CString& error) {
  if (!good) GetModal().Tell(parent, error);
  return good;
}

}  // namespace

bool LoadFromFile(CStats_ModelVariogram& model, QWidget* parent) {
  int filter = 1;
  const auto path = PromptOpen(GetDefaultFolder(GetProfile(), kSection, kKey), "Load a model variogram file", kFilter,
                               filter, parent);
  if (!path) return false;
  RememberFolder(CUFilename(*path));
  CString error;
  return TellUnless(LoadFromFile(model, *path, error), parent, error);
}

bool SaveToFile(const CStats_ModelVariogram& model, QWidget* parent) {
  int filter = 1;
  std::vector<CUFilename> files;
  if (!PromptSave(GetDefaultFolder(GetProfile(), kSection, kKey), "", "mvf", "Save a model variogram file", kFilter,
                  filter, files, 0, parent)) {
    return false;
  }
  RememberFolder(files.front());
  const Status saved = SaveToFile(model, files.front().GetFullPath());
  return TellUnless(saved.IsGood(), parent, saved.GetError());
}

}  // namespace tallyscope
