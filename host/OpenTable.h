// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "host/HostTable.h"
#include "host/ReaderOptions.h"

namespace tallyscope {

class CProgressSink;

// What opening a table gave.
struct OpenedTable {
  std::unique_ptr<CHostTable> table;  // null when it failed or was cancelled
  CString error;                      // one sentence; empty with a table, and after a cancel
  CString format;                     // "comma-separated text", "GeoEAS"
  CString axes;                       // which columns are the axes, and why
  std::vector<CString> warnings;      // sentences on what was not as one would expect
};

// Opens a table file of any format we read, and gives it its axes. The format is told from the content.
//   OpenedTable opened = OpenTable("meuse.csv", {}, nullptr);
//   if (!opened.table) Say(opened.error);
OpenedTable OpenTable(const CString& path, const ReaderOptions& options, CProgressSink* progress);

// The same from memory. `file` is what the sentences call it.
OpenedTable OpenTableText(std::string_view text, const CString& file, const ReaderOptions& options,
                          CProgressSink* progress);

}  // namespace tallyscope
