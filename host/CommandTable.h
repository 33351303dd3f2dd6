// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>

#include "host/TextTable.h"

namespace tallyscope {

// The table that a command names: "-" is standard input. Without a table the sentence has been said.
OpenedTable OpenForCommand(const CString& file, const ReaderOptions& options, std::ostream& err);

// The dim of a field or axis by name; CHostTable::kNoDim, and the sentence has been said, when the table has none.
int FindDimForCommand(const CHostTable& table, const CString& file, const CString& name, std::ostream& err);

// Stations of a table as comma-separated text, to a file or for "-" to `out`. False when the sentence has been said.
bool WriteForCommand(const CHostTable& table, const std::vector<int>& stations, const CString& target,
                     std::ostream& out, std::ostream& err);

}  // namespace tallyscope
