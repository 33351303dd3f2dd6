// SPDX-License-Identifier: MIT
#include "workbench/ModelVariogramPrompt.h"

#include "files/UFilename.h"
#include "platform/ui/Modal.h"
#include "platform/ui/WinApp.h"
#include "spatial/ModelVariogramFile.h"

namespace tallyscope {

namespace {

constexpr const char* kFilter = "Model Variogram files (*.mvf);;All files (*)";
constexpr const char* kSection = "PATH";
constexpr const char* kKey = "ModelVariogram";

CString GetFolder() {
  return GetProfile().GetProfileString(kSection, kKey, "");
}

void RememberFolder(const CString& path) {
  GetProfile().WriteProfileString(kSection, kKey, CUFilename(path).GetDriveAndFolder());
}

}  // namespace

bool LoadFromFile(CStats_ModelVariogram& model, QWidget* parent) {
  const auto path = GetModal().AskOpenFile(parent, "Load a model variogram file", GetFolder(), kFilter);
  if (!path) return false;
  RememberFolder(*path);
  CString error;
  if (LoadFromFile(model, *path, error)) return true;
  GetModal().Tell(parent, error);
  return false;
}

bool SaveToFile(const CStats_ModelVariogram& model, QWidget* parent) {
  const auto path = GetModal().AskSaveFile(parent, "Save a model variogram file", GetFolder(), kFilter);
  if (!path) return false;
  RememberFolder(*path);
  CString error;
  if (SaveToFile(model, *path, error)) return true;
  GetModal().Tell(parent, error);
  return false;
}

}  // namespace tallyscope
