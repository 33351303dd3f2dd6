// SPDX-License-Identifier: MIT
#include "files/UFilename.h"

#include <gtest/gtest.h>

#include "files/FolderMemory.h"

namespace tallyscope {

namespace {

TEST(Filename, FallsIntoItsParts) {
  const struct {
    const char* path;
    const char* parts;  // drive, folder, name, extension
  } rows[] = {{"C:\\data\\run.txt", "C:;\\data\\;run;.txt"},
              {"/data/run.a.txt", ";/data/;run.a;.txt"},
              {"run", ";;run;"},
              {".profile", ";;;.profile"},
              {"\\\\server\\share\\f.x", ";\\\\server\\share\\;f;.x"},
              {"a/b\\c.d/e", ";a/b\\c.d/;e;"},
              {"7:x", ";;7:x;"},
              {"", ";;;"}};
  for (const auto& row : rows) {
    const CUFilename name(row.path);
    EXPECT_EQ(name.GetDrive() + ";" + name.GetFolder() + ";" + name.GetName() + ";" + name.GetExtension(), row.parts);
    EXPECT_EQ(name.GetFullPath(), row.path);
  }
  const CUFilename longest("C:/" + CString(300, 'f') + "/" + CString(300, 'n') + "." + CString(300, 'e'));
  EXPECT_EQ(longest.GetFolder(), "/" + CString(254, 'f'));
  EXPECT_EQ(longest.GetNameAndExtension(), CString(255, 'n') + "." + CString(254, 'e'));
  EXPECT_EQ(longest.GetFullPath().size(), 905u);
  CUFilename folder;
  folder.SetPath("/data/x", true);
  EXPECT_EQ(folder.GetFullPath(), "/data/x/");
  folder.SetPath("C:\\x", true);
  EXPECT_EQ(folder.GetFullPath(), "C:\\x\\");
  folder.SetPath("", true);
  EXPECT_EQ(folder.GetFullPath(), "");
}

TEST(Filename, ComesBackFromAnArchive) {
  CUFilename stored("C:\\data\\run.txt");
  CArchive out;
  stored.Serialize(out);
  CArchive in(out.GetBytes());
  CUFilename loaded;
  loaded.Serialize(in);
  EXPECT_EQ(in.GetRemaining(), 0u);
  EXPECT_EQ(loaded.GetDrive(), "C:");
  EXPECT_EQ(loaded.GetDriveAndFolder(), "C:\\data\\");
  EXPECT_EQ(loaded.GetNameAndExtension(), "run.txt");
  EXPECT_EQ(loaded.GetFullPath(), "C:\\data\\run.txt");
}

TEST(FolderMemory, KeepsASeparatorAtTheEnd) {
  CMemoryProfile profile;
  EXPECT_EQ(GetDefaultFolder(profile, "PATH", "Model"), GetCurrentFolder());
  SetDefaultFolder(profile, "PATH", "Model", "/data/x");
  EXPECT_EQ(GetDefaultFolder(profile, "PATH", "Model"), "/data/x/");
  EXPECT_EQ(CloseFilter(AddFilter("", "A (*.a)", "*.a"), true), "A (*.a)|*.a|All Files (*.*)|*.*||");
  EXPECT_EQ(CloseFilter("A|*.a|", false), "A|*.a||");
}

}  // namespace

}  // namespace tallyscope
