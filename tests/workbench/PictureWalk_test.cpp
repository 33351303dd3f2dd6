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
  std::vector<CString> written;
  EXPECT_EQ(WalkPages(dialog, scratch.folder, written).GetError(), "");
  EXPECT_EQ(written.size(), 7u) << "each page of each mode";
  EXPECT_EQ(ReadAll(kept), "an old picture") << "written in place: a kill would leave half of it";
  for (const auto& path : written) EXPECT_FALSE(QImage(QString::fromStdString(path)).isNull()) << path;

  std::filesystem::remove(first);
  std::filesystem::create_directory(first);
  written.clear();
  const Status stopped = WalkPages(dialog, scratch.folder, written);
  EXPECT_NE(stopped.GetError().find("univariate-statistics.png"), CString::npos) << stopped.GetError();
  EXPECT_EQ(written.size(), 1u) << "it stops there";
}

}  // namespace
}  // namespace tallyscope
