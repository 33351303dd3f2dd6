// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>

#include "host/CsvWriter.h"
#include "host/OpenTable.h"

namespace CLI {
class App;
}

namespace tallyscope {

// The table that a command names: "-" is standard input. Without a table the sentence has been said.
OpenedTable OpenForCommand(const CString& file, const ReaderOptions& options, std::ostream& err);

// The dim of a field or axis by name; CHostTable::kNoDim, and the sentence has been said, when the table has none.
int FindDimForCommand(const CHostTable& table, const CString& file, const CString& name, std::ostream& err);

// Where stations go as comma-separated text: a file or for "-" standard output.
struct CsvTarget {
  CString file;
  Formulas formulas = Formulas::kKept;
};
void AddFormulaFlag(CLI::App& app, CsvTarget& target);  // the option that guards formulas

// Stations of a table to a file, or to `out`. False when the sentence has been said, or `out` has failed.
[[nodiscard]] bool WriteForCommand(const CHostTable& table, const std::vector<int>& stations, const CsvTarget& target,
                                   std::ostream& out, std::ostream& err);

}  // namespace tallyscope
