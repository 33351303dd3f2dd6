// SPDX-License-Identifier: MIT
// Where the commands that write may write.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "host/Command.h"
#include "tests/host/HostTesting.h"
#include "tests/support/Scratch.h"

namespace tallyscope {
namespace {

const char* const kStations = "x,y,v\n1,0,10\n2,0,20\n3,1,30\n4,1,45\n";

// A call of each command that writes, with the name of its output still to come.
std::vector<std::vector<CString>> GetWriters(const CString& file) {
  return {{"select", file, "--invert", "-o"},
          {"condition", file, "--field", "v", "-o"},
          {"condition", file, "--field", "v", "--save-rules"},
          {"variogram", file, "--field", "v", "--fit", "-o"},
          {"render", file, "--page", "map", "-o"}};
}

TEST(OutputTargets, NothingIsWrittenOverWhatIsRead) {
  namespace fs = std::filesystem;
  const CScratch scratch;
  const std::string file = scratch.Write("t.csv", kStations);
  fs::create_symlink("t.csv", scratch.Path("soft.csv"));
  fs::create_hard_link(file, scratch.Path("hard.csv"));
  fs::create_directory(scratch.Path("sub"));
  for (const std::string& target : {file, "./" + file, scratch.Path("sub/../t.csv"), scratch.Path("soft.csv"),
                                    scratch.Path("hard.csv"), fs::absolute(file).string()}) {
    for (auto arguments : GetWriters(file)) {
      arguments.push_back(target);
      const Answer answer = RunProgram(arguments);
      EXPECT_EQ(answer.code, kExitBadInput) << testing::PrintToString(arguments);
      EXPECT_EQ(answer.err, target + (target == file ? "" : " is the same file as " + file + ", which") +
                                " is read: it would be written over. Choose another name, or give --force.\n");
      EXPECT_EQ(answer.out, "");
    }
  }
  EXPECT_EQ(ReadAll(file), kStations);
}

TEST(OutputTargets, PolygonsAndRulesAreReadToo) {
  const CScratch scratch;
  const std::string file = scratch.Write("t.csv", kStations);
  const std::string other = scratch.Write("other", "x,y\n0,0\n9,0\n9,9\n");
  for (const auto& arguments : std::vector<std::vector<CString>>{
           {"select", file, "--inside", other, "-o", "./" + other},
           {"condition", file, "--field", "v", "--rules", other, "-o", other},
           {"condition", file, "--field", "v", "--rules", other, "--save-rules", other}}) {
    const Answer answer = RunProgram(arguments);
    EXPECT_EQ(answer.code, kExitBadInput);
    EXPECT_NE(answer.err.find(" is read: "), std::string::npos) << answer.err;
  }
}

TEST(OutputTargets, TwoThingsNeverGoToOneFile) {
  const CScratch scratch;
  const std::string file = scratch.Write("t.csv", kStations);
  const auto write = [&](const std::string& table, const std::string& rules, bool force) {
    std::vector<CString> arguments = {"condition", file,  "--field",      "v",  "--operator", "Scale=2",
                                      "-o",        table, "--save-rules", rules};
    if (force) arguments.emplace_back("--force");
    return RunProgram(arguments);
  };
  const std::string target = scratch.Path("new");  // not there yet
  const Answer answer = write(target, "./" + target, false);
  EXPECT_EQ(answer.code, kExitBadInput);
  EXPECT_EQ(answer.err,
            target + " and ./" + target +
                " are one file: two things would be written to it. Choose another name, or give --force.\n");
  EXPECT_FALSE(std::filesystem::exists(target));
  EXPECT_EQ(write(target, scratch.Path("new2"), false).code, kExitDone);
  EXPECT_EQ(write("/dev/null", "/dev/null", false).code, kExitDone) << "not a file that could be written over";
  EXPECT_EQ(write(file, file, true).code, kExitDone);
  EXPECT_NE(ReadAll(file), kStations);
}

// Each is refused with one sentence that names it, and nothing is left beside it; or it is written.
TEST(OutputTargets, OddTargets) {
  namespace fs = std::filesystem;
  const CScratch scratch;
  const std::string file = scratch.Write("t.csv", kStations);
  fs::create_directory(scratch.Path("folder"));
  fs::create_symlink("loop", scratch.Path("loop"));
  struct Row {
    std::string target;
    bool isWritten;
  };
  const auto before = scratch.List().size();
  for (const Row& row : {
           Row{scratch.Path("folder"), false},
           Row{scratch.Path("none/out"), false},
           Row{file + "/out", false},
           Row{scratch.Path("loop"), false},
           Row{"/proc/out", false},
           Row{"/dev/full", false},
           Row{scratch.Path(std::string(256, 'n')), false},
           Row{scratch.Path(std::string(255, 'n')), true},
           Row{scratch.Path("a\nb"), true},
           Row{"/dev/null", true},
       }) {
    for (auto arguments : GetWriters(file)) {
      if (arguments.front() == "render") continue;  // this binary has no plots
      arguments.push_back(row.target);
      const Answer answer = RunProgram(arguments);
      EXPECT_EQ(answer.code, row.isWritten ? kExitDone : kExitBadInput) << testing::PrintToString(arguments);
      EXPECT_EQ(answer.err.find(row.target) != std::string::npos, !row.isWritten) << answer.err;
      EXPECT_EQ(answer.err.find('\n') + 1, answer.err.size()) << answer.err;
      EXPECT_TRUE(!row.isWritten || row.target.front() == '/' || fs::remove(row.target)) << row.target;
      EXPECT_EQ(scratch.List().size(), before) << testing::PrintToString(arguments);
    }
  }
}

}  // namespace
}  // namespace tallyscope
