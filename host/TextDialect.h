// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "host/ReaderOptions.h"

namespace tallyscope {

class CTextSource;

// How a delimited text is written.
struct TextDialect {
  char delimiter = ',';  // ' ': any run of blanks and tabs; '\n': none, for a single column
  char decimal = '.';
  bool headings = true;     // the first line holds the names
  bool rowNames = false;    // the headings lack one for the first column, as statistics programs write row names
  std::size_t columns = 0;  // cells in most rows behind the headings; 0 without any
};

// Tells the dialect from the beginning of the text, which is at byte `at` of the source, as far as the options leave it
// open. Throws bad_alloc.
// Each delimiter is tried on the first rows. The one wins that gives most rows the same number of cells and most cells
// a number. In a tie the order is tab, semicolon, bar, comma, blanks. The decimal character is the comma if more cells
// read as numbers with it than with the point, and never where the comma is the delimiter. The first line holds
// headings unless one of its cells, not counting quoted ones, is a number.
TextDialect GuessDialect(CTextSource& source, std::size_t at, const ReaderOptions& options);

CString GetDelimiterName(char delimiter);  // "comma", "semicolon", "tab", "bar", "blanks" or the character in quotes

}  // namespace tallyscope
