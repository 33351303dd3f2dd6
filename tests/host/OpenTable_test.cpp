// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "host/OpenTable.h"
#include "host/TextSource.h"
#include "tests/host/HostTesting.h"
#include "tests/support/Scratch.h"

namespace tallyscope {
namespace {

class OpenTableTest : public testing::Test, protected CScratch {};

std::string ErrorOf(const std::string& path) {
  return OpenTable(path, {}, nullptr).error;
}

TEST_F(OpenTableTest, WhatIsNoTableIsRefusedInASentence) {
  EXPECT_EQ(ErrorOf(Path("none.csv")), "There is no file " + Path("none.csv") + ".");
  EXPECT_EQ(ErrorOf(Path("")), Path("") + " is a folder, not a table.");
  EXPECT_EQ(ErrorOf(Write("empty.csv", "")), Path("empty.csv") + " is empty.");
  EXPECT_EQ(ErrorOf(Write("a.csv", "a,b\n") + "/x.csv"), Path("a.csv") + "/x.csv can't be read: Not a directory.");
  EXPECT_EQ(ErrorOf("/dev/null"), "/dev/null is empty.");
  EXPECT_EQ(ErrorOf("/dev/zero"), "/dev/zero is no text file: byte 1 is zero.") << "which has no end";
  if (geteuid() == 0) return;  // root may read everything
  const auto closed = Write("closed.csv", "a,b\n1,2\n");
  chmod(closed.c_str(), 0);
  EXPECT_EQ(ErrorOf(closed), closed + " can't be read: Permission denied.");
}

// 10 GB in one line, on a disk that keeps holes: a refusal at once, not a hang.
TEST_F(OpenTableTest, EndlessLinesAreRefusedAtOnce) {
  const auto path = Write("hole.csv", "a,b\n1,2\n");
  std::filesystem::resize_file(path, std::uintmax_t{10} << 30);
  EXPECT_EQ(ErrorOf(path), path + " is no text file: byte 9 is zero.");
}

TEST_F(OpenTableTest, StreamsAreReadWhole) {
  const auto path = Path("pipe");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::thread writer([&] {
    std::ofstream pipe(path);
    pipe << "x,y,v\n";
    for (int i = 0; i < 200'000; ++i) pipe << std::to_string(i) + ",1,2.5\n";
  });
  const auto opened = OpenTable(path, {}, nullptr);
  writer.join();
  ASSERT_TRUE(opened.table) << opened.error;
  EXPECT_EQ(opened.table->GetSize(), 200'000);
  EXPECT_EQ(opened.table->GetValue(-1, 199'999), 199'999);
}

TEST_F(OpenTableTest, OnlyTheSizeAtOpeningCounts) {
  const auto path = Write("grows.csv", "a,b\n1,2\n3,4");
  CTextSource source;
  CString error;
  ASSERT_TRUE(source.Open(path, error));
  std::ofstream(path, std::ios::app) << "5\n6,7\n";
  EXPECT_EQ(source.GetText(), "a,b\n1,2\n3,4");
  EXPECT_FALSE(source.HasShrunk());
  std::filesystem::resize_file(path, 4);
  EXPECT_TRUE(source.HasShrunk());
}

// A mapped file is let go of piece by piece behind the reader, and read again for the labels.
TEST_F(OpenTableTest, ReleasedPagesComeBackForTheLabels) {
  std::string text = "n,v\n";
  for (int i = 0; i < 700'000; ++i) text += (i % 3 == 0 ? "17" : "clay" + std::to_string(i % 5)) + ",12345.5\n";
  const auto opened = OpenTable(Write("labels.csv", text), {}, nullptr);
  ASSERT_TRUE(opened.table) << opened.error;
  ASSERT_EQ(opened.table->GetSize(), 700'000);
  const auto& column = opened.table->GetColumn(0);
  ASSERT_TRUE(column.IsText());
  EXPECT_EQ(column.labels.front(), "17");
  EXPECT_EQ(column.labels.size(), 6u);
  EXPECT_EQ(column.labels[static_cast<std::size_t>(opened.table->GetValue(0, 699'998)) - 1], "clay3");
}

TEST(Examples, AreOpenedAsTheirReadmeSays) {
  struct Case {
    const char* file;
    int stations;
    int columns;
    const char* x;
    int axes;
    int nulls;
  };
  for (const auto& c : {Case{"meuse.csv", 155, 14, "x", 2, 3}, Case{"jura.csv", 259, 11, "Xloc", 2, 0},
                        Case{"walker.csv", 470, 6, "X", 2, 195}, Case{"quakes.csv", 1000, 5, "long", 3, 0}}) {
    SCOPED_TRACE(c.file);
    const auto opened = OpenTable(Example(c.file), {}, nullptr);
    ASSERT_TRUE(opened.table) << opened.error;
    EXPECT_EQ(opened.table->GetSize(), c.stations);
    EXPECT_EQ(opened.table->GetColumnCount(), c.columns);
    EXPECT_EQ(opened.table->GetSpatialSize(), c.axes);
    EXPECT_EQ(opened.table->GetValueName(-1), c.x);
    EXPECT_TRUE(opened.warnings.empty());
    int nulls = 0;
    for (const auto& column : opened.table->GetFileColumns())
      nulls += c.stations - static_cast<int>(column.CountValid());
    EXPECT_EQ(nulls, c.nulls);
  }
}

}  // namespace
}  // namespace tallyscope
