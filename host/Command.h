// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <memory>
#include <span>

#include "platform/core/String.h"

namespace CLI {
class App;
}

namespace tallyscope {

// What a command ends with.
enum ExitCode : int {
  kExitDone = 0,
  kExitBadInput = 1,      // one sentence on standard error
  kExitWrongCall = 2,     // two lines of usage and one sentence on standard error
  kExitCancelled = 130,   // by Ctrl-C, as a shell has it
  kExitReaderGone = 141,  // of standard output, as a shell has it
};

// One command of the program. It declares its options, and runs once they are filled in.
class CCommand {
 public:
  virtual ~CCommand() = default;
  virtual void AddOptions(CLI::App& app) = 0;
  // A sentence on options that don't go together; empty when they do.
  virtual CString CheckOptions() const { return {}; }
  virtual int Run(std::ostream& out, std::ostream& err) = 0;
};

struct CommandRow {
  const char* name;
  const char* description;
  std::unique_ptr<CCommand> (*make)();
};

// Every command of the program, in the order of the help: one row and one source file each.
std::span<const CommandRow> GetCommands();

std::unique_ptr<CCommand> MakeOpenCommand();
std::unique_ptr<CCommand> MakeRenderCommand();
std::unique_ptr<CCommand> MakeSelectCommand();
std::unique_ptr<CCommand> MakeSummaryCommand();
std::unique_ptr<CCommand> MakeBivariateCommand();
std::unique_ptr<CCommand> MakeVariogramCommand();
std::unique_ptr<CCommand> MakeModelCommand();
std::unique_ptr<CCommand> MakeConditionCommand();
std::unique_ptr<CCommand> MakeOperatorsCommand();

}  // namespace tallyscope
