// SPDX-License-Identifier: MIT
#include "files/UTextFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <sys/resource.h>
#include <unistd.h>

#include "files/FileErrorText.h"
#include "files/FolderMemory.h"

namespace tallyscope {

namespace {

namespace fs = std::filesystem;

class TextFile : public testing::Test {
 protected:
  void SetUp() override {
    const auto stem = fs::temp_directory_path() / ("tallyscope_text_file_" + std::to_string(::getpid()));
    folder_ = stem;
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }

  CString Path(const CString& name) const { return (folder_ / name).string(); }
  void Put(const CString& name, const CString& text) const { std::ofstream(Path(name), std::ios::binary) << text; }
  CString Get(const CString& name) const {
    std::ostringstream text;
    text << std::ifstream(Path(name), std::ios::binary).rdbuf();
    return text.str();
  }
  std::size_t CountFiles() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
  }

  fs::path folder_;
};

TEST_F(TextFile, ReadsLinesOfEveryEndingIntoTokens) {
  Put("a.txt", CString("Nest Begin\r\n\n'Begin' 2\n") + CString("x\0y\n", 4) + "last \"one\"");
  CUTextFile file;
  ASSERT_TRUE(file.Open(Path("a.txt"), 1, 0, 0)) << file.GetErrorText();
  EXPECT_EQ(file.GetStatus().size, 37);
  ASSERT_TRUE(file.ReadLine());
  EXPECT_EQ(file.GetTokenCount(), 2);
  EXPECT_EQ(file.GetToken(1), "Begin") << "no carriage return is left";
  EXPECT_TRUE(file.IsToken(0, "NEST"));
  EXPECT_TRUE(file.IsWord(1, ""));
  EXPECT_FALSE(file.IsToken(2, "")) << "out of range";
  EXPECT_EQ(file.GetTokenType(-1), 0);
  EXPECT_EQ(file.GetToken(7), "");
  ASSERT_TRUE(file.ReadLine()) << "an empty line is one";
  EXPECT_EQ(file.GetTokenCount(), 0);
  ASSERT_TRUE(file.ReadLine());
  EXPECT_TRUE(file.IsToken(0, "")) << "any quoted text";
  EXPECT_FALSE(file.IsWord(0, "Begin")) << "quoted is no word";
  ASSERT_TRUE(file.ReadLine());
  ASSERT_TRUE(file.ReadLine()) << "the last line may lack its end";
  EXPECT_EQ(file.GetToken(1), "one");
  EXPECT_FALSE(file.ReadLine());
  EXPECT_EQ(file.GetTokenCount(), 0);
  EXPECT_FALSE(file.IsFailed());
}

TEST_F(TextFile, IsWrittenWholeOrNotAtAll) {
  Put("a.txt", "old");
  {
    CUTextFile file;
    ASSERT_TRUE(file.Open(Path("a.txt"), 0, 1, 0));
    EXPECT_TRUE(file.WriteString("new\n"));
    EXPECT_EQ(Get("a.txt"), "old");
  }
  EXPECT_EQ(Get("a.txt"), "old") << "never closed";
  CUTextFile file;
  ASSERT_TRUE(file.Open(Path("a.txt"), 0, 1, 0));
  EXPECT_TRUE(file.WriteString("new\n"));
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(Get("a.txt"), "new\n");
  EXPECT_EQ(CountFiles(), 1u);
}

// A limit on a file's size stands for the full disk: the platform's answers differ in their number alone.
TEST_F(TextFile, AFullDiskLeavesTheOldFileAndSaysSo) {
  Put("a.txt", "old");
  const auto before = std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  ::getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small{1000, limit.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &small);
  CUTextFile file;
  bool written = file.Open(Path("a.txt"), 0, 1, 0) && file.WriteString(CString(5000, 'x'));
  written = file.Close() && written;
  ::setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, before);
  EXPECT_FALSE(written);
  EXPECT_TRUE(file.IsFailed());
  EXPECT_EQ(file.GetErrorText(),
            "An error occurred writing to the file \"" + Path("a.txt") +
                "\".\nThe file could not be written as the disk is full.\nPlease delete some files to make room on the "
                "disk.");
  EXPECT_EQ(Get("a.txt"), "old");
  EXPECT_EQ(CountFiles(), 1u) << "no temporary file is left";
}

TEST_F(TextFile, SaysWhyAFileCannotBeOpened) {
  const auto openError = [](const CString& path, int read, int write) {
    CUTextFile file;
    EXPECT_FALSE(file.Open(path, read, write, 0)) << path;
    EXPECT_TRUE(file.IsFailed());
    return file.GetErrorText();
  };
  const CString bad =
      "The file name contains invalid characters or the drive\nor one or more component directories do not exist.";
  EXPECT_EQ(openError(Path("none.txt"), 1, 0),
            "An error occurred reading from the file \"" + Path("none.txt") + "\".\nThe file does not exist.");
  EXPECT_EQ(openError(Path("no/such.txt"), 0, 1),
            "An error occurred writing to the file \"" + Path("no/such.txt") + "\".\n" + bad);
  EXPECT_EQ(openError(Path("no/such.txt"), 1, 1),
            "An error occurred using the file \"" + Path("no/such.txt") + "\".\n" + bad);
  EXPECT_EQ(openError(folder_.string(), 1, 0), "An error occurred reading from the file \"" + folder_.string() +
                                                   "\".\nThis is a directory - you cannot use it as a file.");
  EXPECT_EQ(openError(folder_.string(), 0, 1), "An error occurred writing to the file \"" + folder_.string() +
                                                   "\".\nThis is a directory - you cannot use it as a file.");
  EXPECT_NE(openError(Path(CString(300, 'n')), 1, 0).find("invalid characters"), CString::npos);
  EXPECT_NE(openError(CString("a\0b", 3), 1, 0).find("invalid characters"), CString::npos);
}

TEST_F(TextFile, AFailureIsForgottenByTheNextSuccess) {
  Put("a.txt", "x\n");
  CUTextFile file;
  EXPECT_FALSE(file.Open(Path("b.txt"), 1, 0, 0));
  EXPECT_TRUE(file.Open(Path("a.txt"), 1, 0, 0));
  EXPECT_EQ(file.GetErrorText(), "");
  EXPECT_FALSE(file.IsFailed());
}

TEST_F(TextFile, BothSeparatorsWorkAndARelativePathStartsAtTheCurrentFolder) {
  fs::create_directory(folder_ / "sub");
  Put("sub/a.txt", "x\n");
  CUTextFile file;
  EXPECT_TRUE(file.Open(folder_.string() + "\\sub\\a.txt", 1, 0, 0)) << file.GetErrorText();
  const auto current = fs::current_path();
  fs::current_path(folder_);
  EXPECT_TRUE(file.Open("sub/a.txt", 1, 0, 0));
  fs::current_path(current);
  EXPECT_EQ(fs::path(file.GetFileName().GetFullPath()), fs::canonical(folder_) / "sub/a.txt");
}

TEST(FileErrors, EveryCauseHasItsSentence) {
  const auto said = [](int cause, CStdioFile::OpenMode mode, const CString& path) {
    CFileException failure;
    failure.cause = cause;
    const CString text = FileErrorText(failure, mode, path);
    return text.substr(text.find('\n') + 1);
  };
  using enum CStdioFile::OpenMode;
  EXPECT_EQ(said(0, modeRead, "f"), "Apparently there was no error!");
  EXPECT_EQ(said(14, modeRead, "f"), "An attempt was made to access an area past the end of the file.");
  EXPECT_EQ(said(99, modeRead, "f"), "An undocumented file error occurred.");
  EXPECT_EQ(said(-1, modeRead, "f"), "An undocumented file error occurred.");
  EXPECT_EQ(said(5, modeRead, "\\"), "This is a directory - you cannot use it as a file.") << "it counts as /";
  EXPECT_EQ(said(5, modeRead, "C:\\"), "This is the root directory.\nYou cannot use it as a file.");
  EXPECT_EQ(said(5, modeRead, "/no/such"),
            "Access denied. Check that you have permission\nto read the directory and use the file.");
  EXPECT_EQ(said(5, modeReadWrite, "/no/such"),
            "Check that you have permission to write\nto the directory and that the disk is\nnot write-protected or "
            "read-only media.");
  EXPECT_EQ(said(5, modeWrite, "/dev/null"), "The file is a special system file.");
}

TEST(FileErrors, PlatformErrorsFindTheirCause) {
  const struct {
    int number;
    int cause;
  } rows[] = {{ENOENT, 2}, {EMFILE, 4},  {ENFILE, 4}, {EACCES, 5},  {EROFS, 5},   {EISDIR, 5}, {EBADF, 6},
              {EIO, 10},   {ENOSPC, 13}, {EFBIG, 13}, {EDQUOT, 13}, {ENOTDIR, 3}, {EDOM, 1},   {0, 0}};
  for (const auto& row : rows) EXPECT_EQ(CFileException::FromErrno(row.number, "f").cause, row.cause) << row.number;
}

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
