// SPDX-License-Identifier: MIT
#include "platform/core/AtomicFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <thread>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "tests/support/Scratch.h"

namespace tallyscope {

namespace {

namespace fs = std::filesystem;

// The sentence, without the target in front; empty for success.
CString Save(const CString& target, const CString& text) {
  CAtomicFile file(target);
  if (file.Write(text) && file.Commit()) return {};
  EXPECT_NE(file.GetErrorNumber(), 0);
  EXPECT_FALSE(file.Write("more") || file.Commit()) << "once it failed";
  EXPECT_TRUE(file.GetError().starts_with(target)) << file.GetError();
  return file.GetError().substr(target.size());
}

class AtomicFile : public testing::Test, protected CScratch {};

// One target a row, made by `make`. What it holds afterwards, and that nothing else came to be.
TEST_F(AtomicFile, OddTargets) {
  struct Row {
    const char* what;
    CString name;
    std::function<void(const CString& path)> make;
    CString sentence;
    CString holds;  // read through the name; where there is nothing to read, empty
  };
  const CString longest(255, 'n');
  const auto nothing = [](const CString&) {};
  const auto old = [](const CString& path) { std::ofstream(path) << "old"; };
  const auto linkTo = [](const CString& to) { return [to](const CString& path) { fs::create_symlink(to, path); }; };
  fs::create_directory(Path("far"));
  Write("far/real", "old");
  Write("file", "old");
  for (const Row& row : {
           Row{"new", "a", nothing, "", "new"},
           Row{"old", "a", old, "", "new"},
           Row{"name of 250 bytes", longest.substr(5), nothing, "", "new"},
           Row{"old name of 255 bytes", longest, old, "", "new"},
           Row{"name of 256 bytes", longest + "n", nothing, " can't be written: File name too long.", ""},
           Row{"link", "a", linkTo("far/real"), "", "new"},
           Row{"link to a link", "a", linkTo("../" + folder + "/far/../far/real"), "", "new"},
           Row{"link to nothing", "a", linkTo("none"), " can't be written: it is a symbolic link that leads nowhere.",
               ""},
           Row{"link to itself", "a", linkTo("a"), " can't be written: Too many levels of symbolic links.", ""},
           Row{"link to a folder", "a", linkTo("far"), " can't be written: Is a directory.", ""},
           Row{"folder", "far", nothing, " can't be written: Is a directory.", ""},
           Row{"end of a folder's name", "none/", nothing, " can't be written: Is a directory.", ""},
           Row{"no folder", "none/a", nothing, " can't be written: No such file or directory.", ""},
           Row{"file as a folder", "file/a", nothing, " can't be written: Not a directory.", ""},
           Row{"zero byte", CString("a\0b", 3), nothing, " can't be written: Invalid argument.", ""},
           Row{"name with odd bytes", "\xFF\n\x1b", nothing, "", "new"},
       }) {
    SCOPED_TRACE(row.what);
    const CString path = Path(row.name);
    row.make(path);
    const std::size_t before = List().size();
    std::error_code none;  // paths that are refused
    const bool isNew = row.sentence.empty() && !fs::exists(path, none);
    EXPECT_EQ(Save(path, "new"), row.sentence);
    EXPECT_EQ(fs::is_regular_file(path, none) ? ReadAll(path) : "", row.holds);
    EXPECT_EQ(List().size(), before + (isNew ? 1 : 0)) << "nothing else came to be";
    if (row.name != "far") fs::remove(path, none);
  }
  EXPECT_EQ(ReadAll(Path("far/real")), "new") << "links stay links";
  EXPECT_EQ(Save("", "new"), " can't be written: No such file or directory.");
}

TEST_F(AtomicFile, WhatIsNoFileIsWrittenStraight) {
  EXPECT_EQ(Save("/dev/null", "new"), "");
  EXPECT_EQ(Save("/dev/full", "new"), " can't be written: No space left on device.");
  ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
  CString heard;
  std::thread reader([&] { heard = ReadAll(Path("pipe")); });
  EXPECT_EQ(Save(Path("pipe"), "new"), "");
  reader.join();
  EXPECT_EQ(heard, "new");
  EXPECT_TRUE(fs::is_fifo(Path("pipe")));
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{AF_UNIX, {}};
  Path("socket").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(Save(Path("socket"), "new"), " can't be written: No such device or address.");
  ::close(socket);
  std::FILE* const nameless = std::fopen(Write("gone", "old text").c_str(), "r+");
  fs::remove(Path("gone"));
  EXPECT_EQ(Save("/dev/fd/" + std::to_string(::fileno(nameless)), "new"), "");
  char text[16] = {};
  EXPECT_EQ(std::fread(text, 1, sizeof text, nameless), 3u) << text;
  std::fclose(nameless);
}

// Told on the way, and at the end, when a megabyte has not come together.
TEST_F(AtomicFile, AFileBeyondTheLimitOfSizesLeavesTheOld) {
  const auto before = std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  ::getrlimit(RLIMIT_FSIZE, &limit);
  const CString path = Write("a", "old");
  for (const std::size_t size : {std::size_t{5000}, std::size_t{3} << 20}) {
    const rlimit low{4096, limit.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &low);
    const CString sentence = Save(path, CString(size, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &limit);
    EXPECT_EQ(sentence, " can't be written: File too large.");
    EXPECT_EQ(ReadAll(path), "old");
    EXPECT_EQ(List().size(), 1u);
  }
  std::signal(SIGXFSZ, before);
}

TEST_F(AtomicFile, WithoutACommitNothingRemains) {
  const CString path = Write("a", "old");
  {
    CAtomicFile file(path);
    EXPECT_TRUE(file.Write(CString(std::size_t{2} << 20, 'x')));
    EXPECT_EQ(ReadAll(path), "old") << "until it is committed";
  }
  EXPECT_EQ(ReadAll(path), "old");
  EXPECT_EQ(List().size(), 1u);
}

}  // namespace

}  // namespace tallyscope
