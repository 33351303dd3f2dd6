// SPDX-License-Identifier: MIT
#include "host/CommandLine.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <ostream>

#include <sys/stat.h>

#include <CLI/CLI.hpp>

#include "host/Command.h"
#include "host/Sentences.h"
#include "host/StandardStreams.h"

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

constexpr const char* kUsage =
    "Usage: tallyscope FILE [OPTIONS]\n"
    "       tallyscope COMMAND [OPTIONS]\n";

void PrintHelp(std::ostream& out) {
  out << "Tallyscope, a statistics workbench for geoscience tables\n\n" << kUsage << "\nCommands:\n";
  for (const auto& row : kCommands) {
    out << "  " << row.name << CString(12 - std::min<std::size_t>(11, CString(row.name).size()), ' ') << row.description
        << "\n";
  }
  out << "\nA file called like a command is opened by 'tallyscope open NAME' or './NAME'.\n"
         "Options:\n"
         "  -h,--help     this text; 'tallyscope COMMAND --help' lists the options of a command\n"
         "  --version     the version\n";
}

// The sentence comes last, where the eye is.
int RefuseCall(const CLI::App& app, CString sentence, std::ostream& err) {
  err << CLI::Formatter().make_usage(&app, app.get_name()) << "'" << app.get_name() << " --help' lists the options.\n";
  if (CString(".?").find(sentence.back()) == CString::npos) sentence += '.';
  Say(err, sentence);
  return kExitWrongCall;
}

// A sentence on an argument that was left over; CLI11's own when there is none.
CString DescribeFault(const CLI::App& app, const CLI::ParseError& error) {
  const auto left = app.remaining();
  const auto option = std::find_if(left.begin(), left.end(), [](const auto& text) { return text.starts_with("-"); });
  if (option != left.end()) {
    const CString name = option->substr(0, option->find('='));
    std::vector<CString> names;
    for (const auto* known : app.get_options()) {
      for (const auto& longName : known->get_lnames()) names.push_back("--" + longName);
    }
    return "There is no option " + name + SuggestNear(name, names);
  }
  if (!left.empty()) return Quoted(left.front()) + " is one argument too many";
  return error.what();
}

// Whether the first argument can't be meant as a file to open: there is none, and it looks like a word.
bool IsUnknownWord(const CString& text) {
  struct stat facts {};
  return !text.empty() && text.front() != '-' && text.find_first_of("./") == CString::npos &&
         stat(text.c_str(), &facts) != 0;
}

int RefuseWord(const CString& word, std::ostream& err) {
  std::vector<CString> names;
  for (const auto& row : kCommands) names.emplace_back(row.name);
  const CString near = SuggestNear(word, names);
  err << kUsage;
  Say(err, "There is no command " + word +
               (near.empty() ? ", and no such file; 'tallyscope --help' lists the commands." : near));
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
    return RefuseCall(app, DescribeFault(app, error), err);
  }
  const CString sentence = command->CheckOptions();
  return sentence.empty() ? command->Run(out, err) : RefuseCall(app, sentence, err);
}

int RunArguments(const std::vector<CString>& arguments, std::ostream& out, std::ostream& err) {
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
  if (named == nullptr && IsUnknownWord(first)) return RefuseWord(first, err);
  const CommandRow& row = named != nullptr ? *named : kCommands[0];
  try {
    return RunCommand(row, {arguments.begin() + (named != nullptr ? 1 : 0), arguments.end()}, out, err);
  } catch (const std::bad_alloc&) {
    Say(err, "There is not enough memory.");
    return kExitBadInput;
  }
}

}  // namespace

std::span<const CommandRow> GetCommands() {
  return kCommands;
}

int RunCommandLine(const std::vector<CString>& arguments, std::ostream& out, std::ostream& err) {
  return FinishOutput(out, err, RunArguments(arguments, out, err));
}

}  // namespace tallyscope
