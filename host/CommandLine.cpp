// SPDX-License-Identifier: MIT
#include "host/CommandLine.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <ostream>

#include <CLI/CLI.hpp>

#include "host/Command.h"

namespace tallyscope {

namespace {

constexpr CommandRow kCommands[] = {
    {"open", "open the workbench on a table", MakeOpenCommand},
    {"summary", "print the figures of a table", MakeSummaryCommand},
    {"bivariate", "print how two fields go together", MakeBivariateCommand},
    {"variogram", "print how a field's values differ with distance", MakeVariogramCommand},
    {"model", "print what a model variogram says", MakeModelCommand},
    {"render", "draw a plot as a picture, without a window", MakeRenderCommand},
    {"select", "select stations, to write or to summarise them", MakeSelectCommand},
    {"condition", "clean and filter a field, and tell what that did", MakeConditionCommand},
    {"operators", "list the operators that can be applied to a field", MakeOperatorsCommand},
};

const CommandRow* FindCommand(const CString& name) {
  const auto* found =
      std::find_if(std::begin(kCommands), std::end(kCommands), [&](const CommandRow& row) { return name == row.name; });
  return found == std::end(kCommands) ? nullptr : found;
}

void PrintHelp(std::ostream& out) {
  out << "Tallyscope, a statistics workbench for geoscience tables\n\n"
         "Usage: tallyscope FILE [OPTIONS]\n"
         "       tallyscope COMMAND [OPTIONS]\n\n"
         "Commands:\n";
  for (const auto& row : kCommands) {
    out << "  " << row.name << CString(12 - std::min<std::size_t>(11, CString(row.name).size()), ' ') << row.description
        << "\n";
  }
  out << "\nA file called like a command is opened by 'tallyscope open NAME' or './NAME'.\n"
         "Options:\n"
         "  -h,--help     this text; 'tallyscope COMMAND --help' lists the options of a command\n"
         "  --version     the version\n";
}

int RefuseCall(CLI::App& app, const CString& sentence, std::ostream& err) {
  err << sentence << "\n\n" << app.help();
  return kExitWrongCall;
}

int RunCommand(const CommandRow& row, const std::vector<CString>& arguments, std::ostream& out, std::ostream& err) {
  const auto command = row.make();
  CLI::App app(row.description, CString("tallyscope ") + row.name);
  command->AddOptions(app);
  try {
    app.parse(std::vector<CString>(arguments.rbegin(), arguments.rend()));  // CLI11 takes them from the back
  } catch (const CLI::CallForHelp&) {
    out << app.help();
    return kExitDone;
  } catch (const CLI::ParseError& error) {
    return RefuseCall(app, error.what(), err);
  }
  const CString sentence = command->CheckOptions();
  return sentence.empty() ? command->Run(out, err) : RefuseCall(app, sentence, err);
}

}  // namespace

std::span<const CommandRow> GetCommands() {
  return kCommands;
}

int RunCommandLine(const std::vector<CString>& arguments, std::ostream& out, std::ostream& err) {
  const CString first = arguments.empty() ? CString() : arguments.front();
  if (first == "--help" || first == "-h") {
    PrintHelp(out);
    return kExitDone;
  }
  if (first == "--version") {
    out << "tallyscope " TALLYSCOPE_VERSION "\n";
    return kExitDone;
  }
  const CommandRow* named = FindCommand(first);
  const CommandRow& row = named != nullptr ? *named : kCommands[0];
  try {
    return RunCommand(row, {arguments.begin() + (named != nullptr ? 1 : 0), arguments.end()}, out, err);
  } catch (const std::bad_alloc&) {
    err << "There is not enough memory.\n";
    return kExitBadInput;
  }
}

}  // namespace tallyscope
