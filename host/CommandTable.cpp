// SPDX-License-Identifier: MIT
#include "host/CommandTable.h"

#include <ostream>

#include <CLI/CLI.hpp>

#include "host/OpenTable.h"
#include "host/Sentences.h"
#include "host/TerminalProgress.h"
#include "platform/core/AtomicFile.h"

namespace tallyscope {

OpenedTable OpenForCommand(const CString& file, const ReaderOptions& options, std::ostream& err) {
  OpenedTable opened = [&] {
    CTerminalProgress progress(err);
    return OpenTable(file == "-" ? "/dev/stdin" : file, options, &progress);
  }();
  if (!opened.table) Say(err, opened.error);
  return opened;
}

int FindDimForCommand(const CHostTable& table, const CString& file, const CString& name, std::ostream& err) {
  const int dim = table.FindDim(name);
  if (dim != CHostTable::kNoDim) return dim;
  Say(err, file + " has no field " + name + SuggestNames(name, table.GetColumnNames()));
  return dim;
}

void AddFormulaFlag(CLI::App& app, CsvTarget& target) {
  app.add_flag_callback(
      "--spreadsheet-safe", [&target] { target.formulas = Formulas::kGuarded; },
      "put an apostrophe before texts that a spreadsheet would run as formulas");
}

bool WriteForCommand(const CHostTable& table, const std::vector<int>& stations, const CsvTarget& target,
                     std::ostream& out, std::ostream& err) {
  const auto write = [&](const TextTarget& take) { return WriteCsv(table, stations, target.formulas, take); };
  // A failure is told where the output of every command is checked.
  if (target.file == "-") return write([&](std::string_view text) { return static_cast<bool>(out << text); });
  CAtomicFile file(target.file);
  if (write([&](std::string_view text) { return file.Write(text); }) && file.Commit()) return true;
  Say(err, file.GetError());
  return false;
}

}  // namespace tallyscope
