// SPDX-License-Identifier: MIT
#include "platform/core/File.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include <sys/stat.h>

#include "platform/core/StdioFile.h"
#include "tests/support/Scratch.h"

namespace tallyscope {

namespace {

namespace fs = std::filesystem;

class File : public testing::Test, protected CScratch {};

// What fails, and the cause that the user's sentence is made from.
TEST_F(File, CausesOfWhatCannotBeOpened) {
  Write("file", "text");
  fs::create_directory(Path("folder"));
  fs::create_symlink("loop", Path("loop"));
  struct Row {
    CString path;
    CStdioFile::OpenMode mode;
    int cause;
    int number;
  };
  constexpr auto kRead = CStdioFile::modeRead;
  constexpr auto kWrite = CStdioFile::modeWrite;
  constexpr auto kBoth = CStdioFile::modeReadWrite;
  for (const Row& row : {
           Row{Path("none"), kRead, CFileException::fileNotFound, ENOENT},
           Row{Path("none"), kBoth, CFileException::fileNotFound, ENOENT},
           Row{Path("none/a"), kRead, CFileException::badPath, ENOENT},
           Row{Path("none/a"), kWrite, CFileException::badPath, ENOENT},
           Row{Path("file/a"), kRead, CFileException::badPath, ENOTDIR},
           Row{Path("file\\a"), kRead, CFileException::badPath, ENOTDIR},
           Row{Path("loop"), kWrite, CFileException::badPath, ELOOP},
           Row{Path(CString(300, 'x')), kWrite, CFileException::badPath, ENAMETOOLONG},
           Row{CString("a\0b", 3), kRead, CFileException::badPath, EINVAL},
           Row{Path("folder"), kRead, CFileException::accessDenied, EISDIR},
           Row{Path("folder"), kWrite, CFileException::accessDenied, EISDIR},
           Row{Path("folder"), kBoth, CFileException::accessDenied, EISDIR},
       }) {
    CStdioFile file;
    EXPECT_FALSE(file.OpenFile(row.path, row.mode)) << row.path;
    EXPECT_EQ(file.GetFailure().cause, row.cause) << row.path;
    EXPECT_EQ(file.GetFailure().number, row.number) << row.path;
    EXPECT_EQ(file.GetFailure().path, row.path);
    EXPECT_FALSE(file.IsOpen());
  }
}

TEST_F(File, StatusTellsKindsApart) {
  const CString path = Write("a\\b", "12345");
  fs::create_directory(Path("folder"));
  ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
  const CString closed = Write("folder/closed", "");
  ASSERT_EQ(::chmod(closed.c_str(), 0444), 0);
  CFileStatus status;
  ASSERT_TRUE(GetFileStatus(path, status)) << "a name that exists as it stands is not taken apart";
  EXPECT_EQ(status.size, 5);
  EXPECT_EQ(status.attributes, 0u);
  EXPECT_EQ(status.fullName, path);
  ASSERT_TRUE(GetFileStatus(folder + "\\folder\\closed", status));
  EXPECT_EQ(status.attributes, CFileStatus::kReadOnly);
  ASSERT_TRUE(GetFileStatus(Path("folder"), status));
  EXPECT_EQ(status.attributes, CFileStatus::kDirectory);
  ASSERT_TRUE(GetFileStatus(Path("pipe"), status));
  EXPECT_EQ(status.attributes, CFileStatus::kSystem);
  EXPECT_FALSE(GetFileStatus(Path("none"), status));
}

TEST_F(File, ReadingAndWritingInTurnChangesInPlace) {
  const CString path = Write("a", "one\r\ntwo\nsix");
  CStdioFile file;
  CString line;
  ASSERT_TRUE(file.OpenFile(path, CStdioFile::modeReadWrite));
  ASSERT_TRUE(file.ReadString(line));
  EXPECT_EQ(line, "one");
  EXPECT_TRUE(file.WriteString("TWO\n"));
  ASSERT_TRUE(file.ReadString(line));
  EXPECT_EQ(line, "six") << "the last line may lack its end";
  EXPECT_FALSE(file.ReadString(line));
  EXPECT_EQ(file.GetFailure().cause, CFileException::none) << "the end is no failure";
  EXPECT_TRUE(file.CloseFile());
  EXPECT_EQ(ReadAll(path), "one\r\nTWO\nsix");
  EXPECT_FALSE(file.WriteString("x"));
  EXPECT_EQ(file.GetFailure().cause, CFileException::invalidFile);
}

}  // namespace

}  // namespace tallyscope
