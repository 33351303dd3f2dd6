// SPDX-License-Identifier: MIT
#include "platform/core/TemporaryFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <grp.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "platform/core/AtomicFile.h"
#include "tests/support/Scratch.h"

namespace tallyscope {

namespace {

namespace fs = std::filesystem;
using Kind = CTemporaryFile::Kind;

constexpr Kind kKinds[] = {Kind::kUnnamed, Kind::kNamed};

class TemporaryFile : public testing::Test, protected CScratch {
 protected:
  // Writes `text` to `name` in the folder; the platform's errno.
  int Save(const CString& name, const CString& text, Kind kind) const {
    struct stat status {};
    const bool exists = ::stat(Path(name).c_str(), &status) == 0;
    CTemporaryFile file;
    if (const int number = file.Open(folder, name, exists ? &status : nullptr, kind)) return number;
    EXPECT_EQ(::write(file.GetHandle(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
    return file.TakePlace();
  }
  // Runs `work` in a process of its own; the signal that ended it, or 0.
  template <class Work>
  static int RunApart(Work work, int killAfterMicroseconds = -1) {
    const pid_t child = ::fork();
    if (child == 0) {
      work();
      ::_exit(0);
    }
    if (killAfterMicroseconds >= 0) {
      ::usleep(static_cast<unsigned>(killAfterMicroseconds));
      ::kill(child, SIGKILL);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  }
  std::size_t CountTemporaries() const {
    const auto names = List();
    return static_cast<std::size_t>(std::count_if(
        names.begin(), names.end(), [](const std::string& name) { return name.starts_with(".tallyscope-"); }));
  }
};

mode_t ModeOf(int file) {
  struct stat status {};
  ::fstat(file, &status);
  return status.st_mode & 07777;
}

TEST_F(TemporaryFile, HasTheOldFilesModeFromTheStart) {
  const mode_t before = ::umask(022);
  for (const Kind kind : kKinds) {
    for (const mode_t mode : {mode_t{0600}, mode_t{0640}, mode_t{0664}, mode_t{0777}, mode_t{0200}}) {
      const CString path = Write("a", "old");
      ASSERT_EQ(::chmod(path.c_str(), mode), 0);
      struct stat old {};
      ASSERT_EQ(::stat(path.c_str(), &old), 0);
      CTemporaryFile file;
      ASSERT_EQ(file.Open(folder, "a", &old, kind), 0);
      EXPECT_EQ(ModeOf(file.GetHandle()), mode);
      EXPECT_EQ(file.TakePlace(), 0);
      ASSERT_EQ(::stat(path.c_str(), &old), 0);
      EXPECT_EQ(old.st_mode & 07777, mode);
    }
    fs::remove(Path("a"));
    CTemporaryFile file;
    ASSERT_EQ(file.Open(folder, "a", nullptr, kind), 0);
    EXPECT_EQ(ModeOf(file.GetHandle()), mode_t{0644}) << "what the umask leaves";
  }
  ::umask(before);
}

// Access list: owner rw, user 12345 rw, group none, bounds rw, others none, as the kernel stores it.
TEST_F(TemporaryFile, KeepsTheAccessList) {
  const std::string list(
      "\2\0\0\0\1\0\6\0\xff\xff\xff\xff\2\0\6\0\x39\x30\0\0\4\0\0\0\xff\xff\xff\xff\x10\0\6\0\xff\xff\xff\xff\x20\0\0\0"
      "\xff\xff\xff\xff",
      44);
  const char* const key = "system.posix_acl_access";
  const CString path = Write("a", "old");
  if (::setxattr(path.c_str(), key, list.data(), list.size(), 0) != 0) GTEST_SKIP() << "no access lists here";
  for (const Kind kind : kKinds) {
    ASSERT_EQ(Save("a", "new", kind), 0);
    char got[64] = {};
    const auto size = ::getxattr(path.c_str(), key, got, sizeof got);
    EXPECT_EQ(std::string(got, static_cast<std::size_t>(std::max<ssize_t>(size, 0))), list);
  }
}

// What a superuser may hand over, another user may not: the group then gets no more than all others have.
TEST_F(TemporaryFile, OwnerAndGroupAreKeptWhereAllowed) {
  if (::geteuid() != 0) GTEST_SKIP() << "only a superuser can make a file of another user";
  ::chmod(folder.c_str(), 0777);
  struct Row {
    uid_t writer;
    mode_t oldMode;
    uid_t owner;  // expected
    gid_t group;
    mode_t mode;
  };
  for (const Row& row : {Row{0, 0640, 1001, 1002, 0640}, Row{1001, 0664, 1001, 1001, 0644},
                         Row{1003, 0666, 1003, 1003, 0666}, Row{1003, 0646, 1003, 1003, 0646}}) {
    for (const Kind kind : kKinds) {
      const CString path = Write("a", "old");
      ASSERT_EQ(::chown(path.c_str(), 1001, 1002), 0);
      ASSERT_EQ(::chmod(path.c_str(), row.oldMode), 0);
      RunApart([&] {
        if (row.writer != 0 && (::setgroups(0, nullptr) != 0 || ::setgid(row.writer) != 0 || ::setuid(row.writer) != 0))
          ::abort();
        Save("a", "new", kind);
      });
      struct stat status {};
      ASSERT_EQ(::stat(path.c_str(), &status), 0);
      EXPECT_EQ(ReadAll(path), "new");
      EXPECT_EQ(status.st_uid, row.owner);
      EXPECT_EQ(status.st_gid, row.group);
      EXPECT_EQ(status.st_mode & 07777, row.mode) << "written by " << row.writer;
      fs::remove(path);
    }
  }
}

// A process that is killed at any time leaves the old text or the new one, and what else it leaves, the next write to
// the same target removes. TALLYSCOPE_KILLS sets how often it is tried.
TEST_F(TemporaryFile, KilledWritersLeaveWholeFilesAndNothingElse) {
  const char* const asked = std::getenv("TALLYSCOPE_KILLS");
  const int kills = asked != nullptr ? std::atoi(asked) : 24;
  const std::vector<CString> texts = {CString(3'000'000, 'a'), CString(2'500'000, 'b'), "old"};
  Write("a", "old");
  int left = 0;
  for (int i = 0; i < kills; ++i) {
    const Kind kind = kKinds[i % 2];
    RunApart(
        [&] {
          for (;;) {
            Save("a", texts[0], kind);
            Save("a", texts[1], kind);
          }
        },
        200 + i * 7919 % 12'000);
    ASSERT_NE(std::find(texts.begin(), texts.end(), ReadAll(Path("a"))), texts.end()) << "torn after " << i;
    left += static_cast<int>(CountTemporaries());
    if (i % 4 != 3) continue;
    ASSERT_EQ(Save("a", "old", kind), 0);
    ASSERT_EQ(CountTemporaries(), 0u);
  }
  EXPECT_EQ(Save("a", "old", Kind::kNamed), 0);
  EXPECT_EQ(List(), std::vector<std::string>{"a"});
  RecordProperty("left behind for a while", left);
}

// Files of our naming that are somebody else's, or still written, stay; so do those of other targets.
TEST_F(TemporaryFile, OnlyForgottenOnesAreRemoved) {
  CTemporaryFile live;
  ASSERT_EQ(live.Open(folder, "a", nullptr, Kind::kNamed), 0);
  RunApart([&] {
    for (const char* target : {"a", "a", "b"}) {
      auto* const forgotten = new CTemporaryFile;  // NOLINT: as a killed process leaves it
      forgotten->Open(folder, target, nullptr, Kind::kNamed);
    }
    ::raise(SIGKILL);
  });
  EXPECT_EQ(CountTemporaries(), 4u);
  std::string stem;  // of the names for "a"
  for (const auto& name : List()) {
    if (name.ends_with("-2.tmp")) stem = name.substr(0, name.size() - 5);
  }
  ASSERT_FALSE(stem.empty());
  fs::create_symlink("../elsewhere", Path(stem + "3.tmp"));
  fs::create_directory(Path(stem + "4.tmp"));
  ASSERT_EQ(::mkfifo(Path(stem + "5.tmp").c_str(), 0600), 0);
  EXPECT_EQ(Save("a", "new", Kind::kUnnamed), 0);
  EXPECT_EQ(CountTemporaries(), 5u) << "the live one, that of b, link, folder and pipe";
  EXPECT_EQ(live.TakePlace(), 0);
  EXPECT_EQ(CountTemporaries(), 4u);
}

TEST_F(TemporaryFile, ManyWritersAtOnceAndTakenNames) {
  std::vector<CTemporaryFile> files(40);  // more than there are names for
  for (auto& file : files) ASSERT_EQ(file.Open(folder, "a", nullptr, Kind::kNamed), 0);
  EXPECT_EQ(Save("a", "unnamed", Kind::kUnnamed), 0);
  for (auto& file : files) ASSERT_EQ(file.TakePlace(), 0);
  EXPECT_EQ(List(), std::vector<std::string>{"a"});
}

TEST_F(TemporaryFile, SignalsRemoveItAndEndTheProgramAsBefore) {
  struct Row {
    int signal;
    bool ignored;
    int end;
    std::size_t left;
  };
  for (const Row& row : {Row{SIGINT, false, SIGINT, 0}, Row{SIGTERM, false, SIGTERM, 0}, Row{SIGHUP, false, SIGHUP, 0},
                         Row{SIGHUP, true, 0, 1}}) {
    const int end = RunApart([&] {
      if (row.ignored) std::signal(row.signal, SIG_IGN);
      CTemporaryFile::RemoveOnSignals();
      auto* const file = new CTemporaryFile;  // NOLINT: _exit runs no destructor
      file->Open(folder, "a", nullptr, Kind::kNamed);
      ::raise(row.signal);
    });
    EXPECT_EQ(end, row.end);
    EXPECT_EQ(CountTemporaries(), row.left) << row.signal;
  }
}

}  // namespace

}  // namespace tallyscope
