// SPDX-License-Identifier: MIT
#include "host/CommandTable.h"

#include <ostream>

#include "host/OpenTable.h"
#include "host/Sentences.h"
#include "host/TerminalProgress.h"

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

}  // namespace tallyscope
