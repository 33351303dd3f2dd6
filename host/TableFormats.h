// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <span>

#include "host/ReaderOptions.h"
#include "host/TableReader.h"

namespace tallyscope {

class CTextSource;

// A format of tables: how it is told, and who reads it. Formats that are met often and not read stand here too: their
// reader refuses to start, with a sentence on what to do.
struct TableFormat {
  const char* name;
  // Whether the source is of this format, by its first bytes. Throws bad_alloc.
  bool (*probe)(CTextSource& source);
  // A reader for it. `file` is what sentences call the source; both and the options must outlive the reader.
  std::unique_ptr<CTableReader> (*open)(CTextSource& source, const CString& file, const ReaderOptions& options);
};

// All of them. The first one whose probe agrees reads a source; the last takes any.
std::span<const TableFormat> GetTableFormats();
const TableFormat& FindTableFormat(CTextSource& source);

}  // namespace tallyscope
