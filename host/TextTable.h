// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "host/HostTable.h"
#include "host/ReaderOptions.h"

namespace tallyscope {

class CProgressSink;
class CTextSource;
struct TextDialect;

// What opening a table gave.
struct OpenedTable {
  std::unique_ptr<CHostTable> table;  // null when it failed or was cancelled
  CString error;                      // one sentence; empty with a table, and after a cancel
  CString format;                     // "comma-separated text", "GeoEAS"
  CString axes;                       // which columns are the axes, and why
  std::vector<CString> warnings;      // sentences on what was not as one would expect
};

// Where the rows of a delimited text start, and what is known of them.
struct TextLayout {
  std::size_t at = 0;            // byte
  long line = 1;                 // of that byte
  std::vector<CString> names{};  // empty: from the first line, or made up
  double nullSize = 0;           // above 0: numbers of that size or more are nulls
};

// Reads a delimited text into columns, in one pass; a second one goes over the columns of texts that have numbers among
// them. The rules stand in docs/formats/delimited-text.md. The sink is asked every few milliseconds. `file` is what the
// sentences call it.
// The axes are not looked for: the table has none.
OpenedTable ReadTextTable(CTextSource& source, const CString& file, const ReaderOptions& options,
                          const TextLayout& layout, CProgressSink* progress);

inline constexpr std::size_t kMaxColumns = 100'000;

}  // namespace tallyscope
