// SPDX-License-Identifier: MIT
#include "files/UFindLostFile.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/Scratch.h"

namespace tallyscope {

namespace {

namespace fs = std::filesystem;

class Asker : public CLostFileAsker {
 public:
  bool yes = true;
  std::optional<CString> file;
  std::vector<CString> said;

  bool Confirm(const CString& caption, const CString& question) override {
    said.push_back(caption + ": " + question);
    return yes;
  }
  std::optional<CString> AskOpen(const CString& title, const CString&, unsigned, const CString&, int&) override {
    said.push_back(title);
    return file;
  }
  void ShowStatus(const CString& text) override { said.push_back(text); }
};

class FindLostFile : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* folder : {"a", "b/2020", "moved"}) fs::create_directories(scratch_.Path(folder));
    for (const char* file : {"a/one.csv", "b/2020/two.csv", "moved/three.csv", "moved/four.csv"}) {
      scratch_.Write(file, "x");
    }
  }
  CString Path(const CString& name) const { return scratch_.Path(name); }

  const CScratch scratch_;
  CUFindLostFile lost_;
  int filter_ = 1;
};

TEST_F(FindLostFile, LooksInFoldersByNameAndByEndsOfThePath) {
  EXPECT_TRUE(lost_.Locate(Path("a/one.csv")));
  EXPECT_FALSE(lost_.Locate("/gone/one.csv"));
  EXPECT_FALSE(lost_.IsFound());
  lost_.AddFolder(Path("a"));
  lost_.AddFolder(Path("b"));
  EXPECT_TRUE(lost_.Locate("/gone/one.csv"));
  EXPECT_EQ(lost_.GetFound().GetFullPath(), Path("a/one.csv"));
  EXPECT_TRUE(lost_.Locate("/gone/data/2020/two.csv")) << "by the end 2020/two.csv";
  EXPECT_TRUE(lost_.Locate("C:\\data\\2020\\two.csv")) << "of a path from elsewhere too";
  EXPECT_EQ(NativePath(lost_.GetFound().GetFullPath()), Path("b/2020/two.csv"));
  EXPECT_FALSE(lost_.Locate("/gone/2020/one.txt"));
  EXPECT_FALSE(lost_.Locate(""));
  lost_.ClearFolders();
  EXPECT_FALSE(lost_.Locate("/gone/one.csv"));
}

TEST_F(FindLostFile, WhatTheUserFindsHelpsTheNextOne) {
  Asker asker;
  lost_.SetAsker(&asker);
  asker.file = Path("moved/three.csv");
  EXPECT_TRUE(lost_.Find("/gone/three.csv", "", 0, "", filter_));
  EXPECT_EQ(asker.said,
            (std::vector<CString>{
                "Error locating file: Warning :: The following file was not located:\n/gone/three.csv\n\n"
                "Do you want to browse for this file?",
                "Replacing /gone/three.csv", "Select a replacement for /gone/three.csv", "For Help, press F1"}));
  asker.said.clear();
  EXPECT_TRUE(lost_.Find("/gone/four.csv", "", 0, "", filter_));
  EXPECT_TRUE(asker.said.empty()) << "found without asking";
  EXPECT_EQ(lost_.GetFolders(), std::vector<CString>{Path("moved/")});
}

TEST_F(FindLostFile, NoAndCancelLeaveItLost) {
  Asker asker;
  EXPECT_FALSE(lost_.Find("/gone/three.csv", "", 0, "", filter_)) << "nobody to ask";
  lost_.SetAsker(&asker);
  asker.yes = false;
  EXPECT_FALSE(lost_.Find("/gone/three.csv", "", 0, "", filter_));
  EXPECT_EQ(asker.said.size(), 1u);
  asker.yes = true;
  EXPECT_FALSE(lost_.Find("/gone/three.csv", "", 0, "", filter_));
  EXPECT_EQ(asker.said.back(), "For Help, press F1");
  EXPECT_TRUE(lost_.GetFolders().empty());
}

}  // namespace

}  // namespace tallyscope
