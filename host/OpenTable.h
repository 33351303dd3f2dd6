// SPDX-License-Identifier: MIT
#pragma once

#include "host/TextTable.h"

namespace tallyscope {

// Opens a table file of any format we read, and gives it its axes. The format is told from the content.
//   OpenedTable opened = OpenTable("meuse.csv", {}, nullptr);
//   if (!opened.table) Say(opened.error);
OpenedTable OpenTable(const CString& path, const ReaderOptions& options, CProgressSink* progress);

// The same from memory. `file` is what the sentences call it.
OpenedTable OpenTableText(std::string_view text, const CString& file, const ReaderOptions& options,
                          CProgressSink* progress);

}  // namespace tallyscope
