// SPDX-License-Identifier: MIT
#include "workbench/ModelVariogramPrompt.h"

#include <gtest/gtest.h>

#include "platform/ui/WinApp.h"
#include "spatial/ModelVariogramFile.h"
#include "spatial/Stats_ModelVariogram.h"
#include "tests/support/Scratch.h"
#include "tests/support/ScriptedModal.h"

namespace tallyscope {
namespace {

TEST(ModelVariogramPrompt, AModelGoesToAFileAndBack) {
  SetProfile(std::make_unique<CMemoryProfile>());
  auto& modal = ScriptedModal::Install();
  const CScratch scratch;
  const auto file = scratch.Path("zinc.mvf");
  modal.files = {std::nullopt, file, std::nullopt, file, scratch.Path("none.mvf"), scratch.Path("no/zinc.mvf")};
  CStats_ModelVariogram model;
  model.AddNest() = CModelVariogram::Spherical({.sill = 10, .primaryRange = 500});
  EXPECT_FALSE(SaveToFile(model, nullptr));
  EXPECT_EQ(GetProfile().GetProfileString("PATH", "ModelVariogram", "none"), "none") << "cancelled";
  EXPECT_TRUE(SaveToFile(model, nullptr));
  EXPECT_EQ(GetProfile().GetProfileString("PATH", "ModelVariogram", ""), scratch.folder + "/");

  CStats_ModelVariogram loaded;
  loaded.SetIsotropicNugget(5);
  EXPECT_FALSE(LoadFromFile(loaded, nullptr));
  EXPECT_EQ(loaded.isotropicNugget.nugget, 5);
  EXPECT_TRUE(LoadFromFile(loaded, nullptr));
  EXPECT_EQ(FormatModel(loaded), FormatModel(model));
  EXPECT_TRUE(modal.told.empty());

  EXPECT_FALSE(LoadFromFile(loaded, nullptr));
  EXPECT_EQ(FormatModel(loaded), FormatModel(model));
  EXPECT_FALSE(SaveToFile(model, nullptr));
  ASSERT_EQ(modal.told.size(), 2u);
  EXPECT_NE(modal.told[0].find("The file does not exist."), CString::npos) << modal.told[0];
  EXPECT_EQ(modal.asked[1], "Save a model variogram file");
  EXPECT_EQ(modal.asked[2], "Load a model variogram file");
}

}  // namespace
}  // namespace tallyscope
