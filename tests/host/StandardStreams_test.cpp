// SPDX-License-Identifier: MIT
// Output that can't be written, for every command.
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "host/Command.h"
#include "host/StandardStreams.h"
#include "tests/host/HostTesting.h"
#include "tests/support/Scratch.h"

namespace tallyscope {
namespace {

constexpr const char* kSentence = "Standard output can't be written.\n";

std::vector<std::vector<CString>> GetPrintingCalls(const CString& model) {
  const CString table = Example("meuse.csv");
  std::vector<std::vector<CString>> calls = {{"--help"},
                                             {"--version"},
                                             {"summary", table},
                                             {"summary", table, "--json"},
                                             {"summary", table, "--field", "zinc"},
                                             {"bivariate", table, "zinc", "lead"},
                                             {"bivariate", table, "zinc", "lead", "--json"},
                                             {"variogram", table, "--field", "zinc"},
                                             {"variogram", table, "--field", "zinc", "--json"},
                                             {"model", model},
                                             {"model", model, "--json"},
                                             {"select", table, "--invert", "--summary"},
                                             {"select", table, "--invert", "-o", "-"},
                                             {"condition", table, "--field", "zinc"},
                                             {"condition", table, "--field", "zinc", "-o", "-"},
                                             {"operators"},
                                             {"operators", "--json"}};
  for (const auto& row : GetCommands()) calls.push_back({row.name, "--help"});
  return calls;
}

TEST(StandardStreams, FullOutputFailsEveryCommand) {
  const CScratch scratch;
  const CString model = scratch.Path("m.mvf");
  ASSERT_EQ(RunProgram({"variogram", Example("meuse.csv"), "--field", "zinc", "--fit", "-o", model}).code, kExitDone);
  for (const auto& arguments : GetPrintingCalls(model)) {
    ASSERT_EQ(RunProgram(arguments).code, kExitDone) << testing::PrintToString(arguments);
    std::ofstream full("/dev/full");
    std::ostringstream err;
    EXPECT_EQ(RunCommandLine(arguments, full, err), kExitBadInput) << testing::PrintToString(arguments);
    EXPECT_TRUE(err.str().ends_with(kSentence)) << err.str();
  }
  std::ofstream full("/dev/full");
  std::ostringstream err;
  EXPECT_EQ(RunCommandLine({"summary", "none.csv"}, full, err), kExitBadInput);
  EXPECT_EQ(err.str(), "There is no file none.csv.\n") << "nothing was to be printed";
}

// Runs the program as a process of its own would, once its streams are set up. What waitpid tells of it.
int RunApart(const std::vector<CString>& arguments, const CString& said, const std::function<void()>& setUp) {
  std::cout.flush();
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    std::ofstream err(said);
    setUp();
    PrepareOutput();
    const int code = RunCommandLine(arguments, std::cout, err);
    err.close();
    _exit(code);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return status;
}

TEST(StandardStreams, ReportOnClosedOutputNeverEndsUpInAFile) {
  const CScratch scratch;
  const std::string table = scratch.Write("t.csv", "x,y,v\n1,0,10\n2,0,20\n");
  const auto arguments = [&](const std::string& target) {
    return std::vector<CString>{"condition", table, "--field", "v", "-o", target, "--save-rules", target + ".dcf"};
  };
  ASSERT_EQ(RunProgram(arguments(scratch.Path("open.csv"))).code, kExitDone);
  const int status = RunApart(arguments(scratch.Path("closed.csv")), scratch.Path("said"), [] {
    close(STDOUT_FILENO);
    close(STDIN_FILENO);
  });
  EXPECT_EQ(WEXITSTATUS(status), kExitBadInput);
  EXPECT_EQ(ReadAll(scratch.Path("said")), kSentence);
  EXPECT_EQ(ReadAll(scratch.Path("closed.csv")), ReadAll(scratch.Path("open.csv")));
  EXPECT_EQ(ReadAll(scratch.Path("closed.csv.dcf")), ReadAll(scratch.Path("open.csv.dcf")));
}

TEST(StandardStreams, LimitOfFileSizeIsLikeAFullDisk) {
  const CScratch scratch;
  const std::string old = scratch.Write("out.csv", "old\n");
  for (const auto& arguments : std::vector<std::vector<CString>>{
           {"select", Example("meuse.csv"), "--invert", "-o", old},
           {"condition", Example("meuse.csv"), "--field", "zinc", "-o", old},
           {"condition", Example("meuse.csv"), "--field", "zinc", "--save-rules", old},
           {"variogram", Example("meuse.csv"), "--field", "zinc", "--fit", "-o", old},
       }) {
    const int status = RunApart(arguments, "/dev/null", [] {
      const rlimit small{16, 16};
      setrlimit(RLIMIT_FSIZE, &small);
    });
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == kExitBadInput)
        << testing::PrintToString(arguments) << status;
    EXPECT_EQ(ReadAll(old), "old\n");
    EXPECT_EQ(scratch.List(), std::vector<std::string>{"out.csv"}) << "nothing left beside it";
  }
}

TEST(StandardStreams, ReaderWhoHasEnoughEndsItQuietly) {
  const CScratch scratch;
  for (const bool ignored : {false, true}) {
    const int status = RunApart({"summary", Example("meuse.csv")}, scratch.Path("said"), [ignored] {
      std::signal(SIGPIPE, ignored ? SIG_IGN : SIG_DFL);
      int ends[2];
      if (pipe(ends) != 0) _exit(99);
      dup2(ends[1], STDOUT_FILENO);
      close(ends[0]);
    });
    if (ignored) {
      EXPECT_EQ(WEXITSTATUS(status), kExitReaderGone);
    } else {
      EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGPIPE) << status;
    }
    EXPECT_EQ(ReadAll(scratch.Path("said")), "");
  }
}

}  // namespace
}  // namespace tallyscope
