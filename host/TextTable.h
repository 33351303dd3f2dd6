// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "host/ReaderOptions.h"
#include "host/TableReader.h"

namespace tallyscope {

class CTextSource;

// Where the rows of a delimited text start, and what is known of them.
struct TextLayout {
  std::size_t at = 0;            // byte
  long line = 1;                 // of that byte
  std::vector<CString> names{};  // empty: from the first line, or made up
  double nullSize = 0;           // above 0: numbers of that size or more are nulls
  CString format{};              // what the format is called; empty: after its delimiter
};

// A reader of delimited text. It goes over the rows in one pass; a second one goes over the columns of texts that have
// numbers among them. The rules stand in docs/formats/delimited-text.md. `file` is what the sentences call it; both,
// and the options, must outlive the reader. Throws bad_alloc.
std::unique_ptr<CTableReader> MakeTextReader(CTextSource& source, const CString& file, const ReaderOptions& options,
                                             TextLayout layout);

inline constexpr std::size_t kMaxColumns = 100'000;

}  // namespace tallyscope
