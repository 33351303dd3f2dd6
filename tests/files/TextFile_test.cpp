// SPDX-License-Identifier: MIT
#include "files/UTextFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <stdexcept>

#include <sys/resource.h>

#include "files/FileErrorText.h"
#include "tests/support/Scratch.h"

namespace tallyscope {

namespace {

namespace fs = std::filesystem;

class TextFile : public testing::Test {
 protected:
  CString Path(const CString& name) const { return scratch_.Path(name); }
  void Put(const CString& name, const CString& text) const { scratch_.Write(name, text); }
  CString Get(const CString& name) const { return ReadAll(Path(name)); }
  std::size_t CountFiles() const { return scratch_.List().size(); }
  // As sentences show it.
  CString FullPath(const CString& name) const { return (fs::current_path() / Path(name)).string(); }

  const CScratch scratch_;
};

// Lowers a limit of the process, as long as it lives.
class CLimit {
 public:
  CLimit(decltype(RLIMIT_FSIZE) resource, rlim_t value) : resource_(resource) {
    ::getrlimit(resource, &before_);
    const rlimit lower{value, before_.rlim_max};
    ::setrlimit(resource, &lower);
  }
  CLimit(const CLimit&) = delete;
  CLimit& operator=(const CLimit&) = delete;
  ~CLimit() { ::setrlimit(resource_, &before_); }

 private:
  decltype(RLIMIT_FSIZE) resource_;
  rlimit before_{};
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

TEST_F(TextFile, ALineEndsAtAMegabyte) {
  constexpr std::size_t kMost = CUTextFile::kMostOfLine;
  Put("a.txt", "one\n" + CString(kMost, 'x') + "\n" + CString(kMost + 1, 'y') + "\nlast\n");
  CUTextFile file;
  ASSERT_TRUE(file.Open(Path("a.txt"), 1, 0, 0));
  ASSERT_TRUE(file.ReadLine() && file.ReadLine());
  EXPECT_EQ(file.GetToken(0).size(), kMost);
  const CString sentence =
      "An error occurred reading from the file \"" + FullPath("a.txt") + "\".\nA line of it is longer than 1 MB.";
  for (int i = 0; i < 2; ++i) {
    EXPECT_FALSE(file.ReadLine()) << "the rest is no line";
    EXPECT_EQ(file.GetTokenCount(), 0);
    EXPECT_EQ(file.GetErrorText(), sentence);
  }
  EXPECT_FALSE(file.Close());
  EXPECT_TRUE(file.IsFailed());
  ASSERT_TRUE(file.Open(Path("a.txt"), 1, 0, 0));
  EXPECT_TRUE(file.ReadLine() && file.GetErrorText().empty()) << "forgotten by the next file";
}

TEST_F(TextFile, IsWrittenWholeOrNotAtAll) {
  Put("a.txt", "old");
  CUTextFile file;
  ASSERT_TRUE(file.Open(Path("a.txt"), 0, 1, 0));
  EXPECT_TRUE(file.WriteString("new\n"));
  EXPECT_EQ(Get("a.txt"), "old") << "until it is closed";
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(Get("a.txt"), "new\n");
  {
    CUTextFile second;
    ASSERT_TRUE(second.Open(Path("a.txt"), 0, 1, 0));
    EXPECT_TRUE(second.WriteString("third"));
    ASSERT_TRUE(second.Open(Path("b.txt"), 0, 1, 0));
    EXPECT_EQ(Get("a.txt"), "third") << "opening another closes the first";
  }
  EXPECT_TRUE(fs::exists(Path("b.txt"))) << "the end of the object closes";
  try {
    CUTextFile cut;
    ASSERT_TRUE(cut.Open(Path("a.txt"), 0, 1, 0));
    EXPECT_TRUE(cut.WriteString("half"));
    throw std::runtime_error("cut short");
  } catch (const std::runtime_error&) {
  }
  EXPECT_EQ(Get("a.txt"), "third");
  EXPECT_EQ(CountFiles(), 2u) << "no temporary file is left";
}

// A limit on a file's size stands for the full disk: the platform's answers differ in their number alone.
TEST_F(TextFile, AFullDiskLeavesTheOldFileAndSaysSo) {
  Put("a.txt", "old");
  const CString sentence = "An error occurred writing to the file \"" + FullPath("a.txt") +
                           "\".\nThe file could not be written as the disk is full.\nPlease delete some files to make "
                           "room on the disk.";
  const auto before = std::signal(SIGXFSZ, SIG_IGN);
  for (const std::size_t size : {std::size_t{5000}, std::size_t{3} << 20}) {  // told by Close, and by WriteString
    CUTextFile file;
    bool written = false;
    {
      const CLimit full(RLIMIT_FSIZE, 1000);
      written = file.Open(Path("a.txt"), 0, 1, 0) && file.WriteString(CString(size, 'x'));
      EXPECT_EQ(written, size == 5000);
      written = file.Close() && written;
    }
    EXPECT_FALSE(written);
    EXPECT_TRUE(file.IsFailed());
    EXPECT_EQ(file.GetErrorText(), sentence);
    EXPECT_FALSE(file.Close()) << "once more";
    EXPECT_EQ(file.GetErrorText(), sentence);
    EXPECT_EQ(Get("a.txt"), "old");
    EXPECT_EQ(CountFiles(), 1u) << "no temporary file is left";
  }
  std::signal(SIGXFSZ, before);
}

TEST_F(TextFile, ChangesInPlace) {
  Put("a.txt", "one\ntwo\nsix\n");
  CUTextFile file;
  ASSERT_TRUE(file.Open(Path("a.txt"), 1, 1, 0));
  ASSERT_TRUE(file.ReadLine());
  EXPECT_TRUE(file.WriteString("TWO\n"));
  ASSERT_TRUE(file.ReadLine());
  EXPECT_EQ(file.GetToken(0), "six");
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(Get("a.txt"), "one\nTWO\nsix\n");
  ASSERT_TRUE(file.Open(Path("a.txt"), 1, 0, 0));
  EXPECT_FALSE(file.WriteString("x")) << "opened for reading";
  EXPECT_NE(file.GetErrorText().find("invalid file handle"), CString::npos);
}

TEST_F(TextFile, SaysWhyAFileCannotBeOpened) {
  const auto openError = [](const CString& path, int read, int write) {
    CUTextFile file;
    EXPECT_FALSE(file.Open(path, read, write, 0)) << path;
    EXPECT_TRUE(file.IsFailed());
    EXPECT_FALSE(file.ReadLine());
    EXPECT_FALSE(file.Close());
    return file.GetErrorText();
  };
  const CString bad =
      "The file name contains invalid characters or the drive\nor one or more component directories do not exist.";
  const CString directory = "This is a directory - you cannot use it as a file.";
  const CString reading = "An error occurred reading from the file \"";
  const CString writing = "An error occurred writing to the file \"";
  EXPECT_EQ(openError(Path("none.txt"), 1, 0), reading + FullPath("none.txt") + "\".\nThe file does not exist.");
  EXPECT_EQ(openError(Path("no/such.txt"), 0, 1), writing + FullPath("no/such.txt") + "\".\n" + bad);
  EXPECT_EQ(openError(Path("no/such.txt"), 1, 1),
            "An error occurred using the file \"" + FullPath("no/such.txt") + "\".\n" + bad);
  const CString folder = (fs::current_path() / scratch_.folder).string();
  EXPECT_EQ(openError(folder, 1, 0), reading + folder + "\".\n" + directory);
  EXPECT_EQ(openError(folder, 0, 1), writing + folder + "\".\n" + directory);
  EXPECT_NE(openError("", 0, 1).find(directory), CString::npos) << "the current folder";
  EXPECT_NE(openError(Path(CString(300, 'n')), 1, 0).find("invalid characters"), CString::npos);
  EXPECT_NE(openError(CString("a\0b", 3), 1, 0).find("invalid characters"), CString::npos);
  Put("a.txt", "x\n");
  const CLimit files(RLIMIT_NOFILE, 0);
  EXPECT_EQ(openError(Path("a.txt"), 1, 0), reading + FullPath("a.txt") +
                                                "\".\nThere are too many open files in this system.\nTry closing some "
                                                "programs or rebooting the system.");
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
  fs::create_directory(Path("sub"));
  Put("sub/a.txt", "x\n");
  CUTextFile file;
  EXPECT_TRUE(file.Open(scratch_.folder + "\\sub\\a.txt", 1, 0, 0)) << file.GetErrorText();
  EXPECT_TRUE(file.Open(Path("sub/a.txt"), 1, 0, 0));
  EXPECT_EQ(file.GetFileName().GetFullPath(), FullPath("sub/a.txt"));
  EXPECT_FALSE(file.Open("\\\\server\\share\\a.txt", 1, 0, 0));
  EXPECT_EQ(file.GetFileName().GetFullPath(), "\\\\server\\share\\a.txt") << "a share is no relative path";
  EXPECT_FALSE(file.Open("C:\\a.txt", 1, 0, 0));
  EXPECT_EQ(file.GetFileName().GetFullPath(), "C:\\a.txt");
}

TEST_F(TextFile, AFolderOfManyCharactersIsWrittenTo) {
  CString folder;
  for (int i = 0; i < 6; ++i) folder += CString(90, 'f') + "/";
  fs::create_directories(Path(folder));
  CUTextFile file;
  ASSERT_TRUE(file.Open(Path(folder + "a.txt"), 0, 1, 0)) << file.GetErrorText();
  EXPECT_EQ(file.GetFileName().GetFolder().size(), 255u);
  EXPECT_TRUE(file.WriteString("x") && file.Close());
  EXPECT_EQ(Get(folder + "a.txt"), "x");
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
            "Access denied. Check that you have permission\nto read the directory and use the file.");
  EXPECT_EQ(said(5, modeWrite, "/no/such"),
            "Check that you have permission to write\nto the directory and that the disk is\nnot write-protected or "
            "read-only media.");
  EXPECT_EQ(said(5, modeWrite, "/dev/null"), "The file is a special system file.");
  const CScratch scratch;
  const CString file = scratch.Write("a.txt", "x");
  fs::permissions(file, fs::perms::owner_read);
  EXPECT_EQ(said(5, modeReadWrite, file), "You cannot write to a read-only file.");
  EXPECT_EQ(said(5, modeRead, file), "You cannot access this file.");
}

TEST(FileErrors, PlatformErrorsFindTheirCause) {
  const struct {
    int number;
    int cause;
  } rows[] = {{ENOENT, 2}, {EMFILE, 4},  {ENFILE, 4}, {EACCES, 5},  {EROFS, 5},   {EISDIR, 5}, {EBADF, 6},
              {EIO, 10},   {ENOSPC, 13}, {EFBIG, 13}, {EDQUOT, 13}, {ENOTDIR, 3}, {EDOM, 1},   {0, 0}};
  for (const auto& row : rows) EXPECT_EQ(CFileException::FromErrno(row.number, "f").cause, row.cause) << row.number;
}

}  // namespace

}  // namespace tallyscope
