// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <string_view>
#include <vector>

#include "host/TableBuilder.h"
#include "host/TableReader.h"
#include "host/TextCells.h"
#include "host/TextDialect.h"

namespace tallyscope {

class CProgressSink;
class CTextSource;

// Walks the rows of a delimited text into a builder, once, and again for the labels of some columns. kFault leaves a
// sentence, which may come of a source that changed: then it is the source's to say.
class CTextRows {
 public:
  CTextRows(CTextSource& source, const CString& file, const TextDialect& dialect, CTableBuilder& builder,
            CProgressSink* progress);

  // All rows from byte `at` of the source, which is in `line`. Throws bad_alloc.
  RowsEnd Read(std::size_t at, long line);
  // The same rows once more, for the labels of some columns. A fault where they are other rows, or hold other cells in
  // those columns: nothing is written outside the rows that Read counted.
  RowsEnd Reread(std::size_t at, long line, const std::vector<std::size_t>& columns);

  const CString& GetError() const { return error_; }  // a sentence with file, line and column
  // Of rows too short or too long. Before Reread, which meets them again.
  void AddWarnings(std::vector<CString>& warnings) const;

 private:
  // A place where rows differ from the headings.
  struct Oddity {
    int rows = 0;
    long line = 0;
    std::size_t cells = 0;
  };

  // Steps: false ends the pass, at its end, after a cancel, or with a sentence in `error_`.
  bool Start(std::size_t at, long line);
  bool FindRow();
  bool StartRow(std::size_t& row);
  RowsEnd GetEnd() const;
  bool ReadRow(std::size_t row);
  bool RereadRow(std::size_t row, const std::vector<char>& wanted);
  bool PutLabel(std::size_t column, std::size_t row, std::string_view text);
  template <bool kBlanks>
  std::size_t ReadPlainCells(std::size_t row, std::size_t column);
  bool ReadCell(std::size_t row, std::size_t column, CellEnd& end);
  bool DrainRow(std::size_t cells);
  void FillRow(std::size_t row, std::size_t column, long line);
  bool Fail(CellFault fault, long line, std::size_t column);
  bool Tick();
  static void Note(Oddity& oddity, long line, std::size_t cells);

  CTextSource& source_;
  CString file_;
  CTextCells cells_;
  CTableBuilder& builder_;
  CProgressSink* progress_;
  char decimal_;
  bool readsPlain_;  // not where the delimiter is the decimal character too, and decimals stand in quotes
  std::size_t columns_;
  bool rowEnded_ = false;

  long blankLines_ = 0;  // of a single column, where an empty line may be a null
  std::size_t tickAt_ = 0;
  std::size_t cellsSinceTick_ = 0;
  std::chrono::steady_clock::time_point asked_{};
  bool cancelled_ = false;
  CString error_;
  Oddity shortRows_;
  Oddity longRows_;
};

}  // namespace tallyscope
