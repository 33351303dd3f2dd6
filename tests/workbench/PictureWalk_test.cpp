// SPDX-License-Identifier: MIT
#include "host/PictureWalk.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <QImage>

#include "tests/support/Scratch.h"
#include "tests/workbench/WorkbenchTesting.h"

namespace tallyscope {
namespace {

TEST(PictureWalk, ReplacesAPictureAsAWholeAndTellsAFailure) {
  const CScratch scratch;
  const std::string first = scratch.Path("univariate-statistics.png");
  const std::string kept = scratch.Path("kept.png");
  scratch.Write("univariate-statistics.png", "an old picture");
  std::filesystem::create_hard_link(first, kept);
  auto table = SmallTable();
  OpenWorkbench dialog(table);
  dialog.Create();
  dialog.show();
  CString error;
  const auto written = WalkPages(dialog, scratch.folder, error);
  EXPECT_EQ(error, "");
  EXPECT_EQ(written.size(), 7u) << "each page of each mode";
  EXPECT_EQ(ReadAll(kept), "an old picture") << "written in place: a kill would leave half of it";
  for (const auto& path : written) EXPECT_FALSE(QImage(QString::fromStdString(path)).isNull()) << path;

  std::filesystem::remove(first);
  std::filesystem::create_directory(first);
  const auto before = WalkPages(dialog, scratch.folder, error);
  EXPECT_NE(error.find("univariate-statistics.png"), CString::npos) << error;
  EXPECT_EQ(before.size(), 1u) << "it stops there";
}

}  // namespace
}  // namespace tallyscope
