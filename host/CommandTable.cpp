// SPDX-License-Identifier: MIT
#include "host/CommandTable.h"

#include <ostream>

#include "host/CsvWriter.h"
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
  if (!opened.table) err << opened.error << "\n";
  return opened;
}

int FindDimForCommand(const CHostTable& table, const CString& file, const CString& name, std::ostream& err) {
  const int dim = table.FindDim(name);
  if (dim != CHostTable::kNoDim) return dim;
  err << file << " has no field " << name << SuggestNames(name, table.GetColumnNames()) << "\n";
  return dim;
}

bool WriteForCommand(const CHostTable& table, const std::vector<int>& stations, const CString& target,
                     std::ostream& out, std::ostream& err) {
  if (target == "-") {
    const bool written =
        WriteCsv(table, stations, [&](std::string_view text) { return static_cast<bool>(out << text); });
    if (written && out.flush()) return true;
    err << "Standard output can't be written.\n";
    return false;
  }
  CAtomicFile file(target);
  if (WriteCsv(table, stations, [&](std::string_view text) { return file.Write(text); }) && file.Commit()) return true;
  err << file.GetError() << "\n";
  return false;
}

}  // namespace tallyscope
