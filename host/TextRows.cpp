// SPDX-License-Identifier: MIT
#include "host/TextRows.h"

#include <algorithm>
#include <limits>

#include "host/NumberScan.h"
#include "host/Sentences.h"
#include "host/TextSource.h"
#include "host/TextTable.h"
#include "statistics/ProgressSink.h"

namespace tallyscope {

namespace {

// The clock is looked at after so many bytes or cells, which take some two milliseconds, and the sink asked every ten.
constexpr std::size_t kTickBytes = std::size_t{1} << 20;
constexpr std::size_t kTickCells = std::size_t{1} << 16;
constexpr std::chrono::milliseconds kAskEvery{10};

// Short rows are filled with nulls. A table may not be so much larger than its file that the file can't be meant.
constexpr std::size_t kFilledCells = std::size_t{4} << 20;

// More blanks before a cell are for the careful way, which counts them.
constexpr std::ptrdiff_t kBlanksSkipped = 64;

bool EndsCell(char c, char delimiter) {
  return c == delimiter || IsBlank(c) || IsLineEnd(c);
}

}  // namespace

CTextRows::CTextRows(CTextSource& source, const CString& file, const TextDialect& dialect, CTableBuilder& builder,
                     CProgressSink* progress)
    : source_(source),
      file_(file),
      cells_(source, dialect.delimiter),
      builder_(builder),
      progress_(progress),
      decimal_(dialect.decimal),
      readsPlain_(dialect.decimal != dialect.delimiter),
      columns_(builder.GetColumnCount()) {}

bool CTextRows::Start(std::size_t at, long line) {
  cells_.GoTo(at, line);
  blankLines_ = 0;
  tickAt_ = at + kTickBytes;
  cellsSinceTick_ = 0;
  asked_ = std::chrono::steady_clock::now();
  return progress_ == nullptr || progress_->OnProgress(0);
}

RowsEnd CTextRows::Read(std::size_t at, long line) {
  if (!Start(at, line)) return RowsEnd::kCancelled;
  std::size_t row = 0;
  while (FindRow()) {
    for (; blankLines_ > 0; --blankLines_) {
      if (!StartRow(row)) return RowsEnd::kFault;
      builder_.PutEmpty(0, row);
    }
    if (!StartRow(row) || !ReadRow(row)) break;
  }
  return GetEnd();
}

RowsEnd CTextRows::Reread(std::size_t at, long line, const std::vector<std::size_t>& columns) {
  std::vector<char> wanted(columns_, 0);
  for (const std::size_t column : columns) wanted[column] = 1;
  if (!Start(at, line)) return RowsEnd::kCancelled;
  std::size_t row = 0;
  bool same = true;
  while (same && FindRow()) {
    for (; same && blankLines_ > 0; --blankLines_) same = PutLabel(0, row++, {});
    same = same && RereadRow(row++, wanted);
  }
  if (same && !cancelled_ && error_.empty() && row != builder_.GetRowCount()) error_ = GetChangedSentence(file_);
  return GetEnd();
}

RowsEnd CTextRows::GetEnd() const {
  if (cancelled_) return RowsEnd::kCancelled;
  return error_.empty() ? RowsEnd::kDone : RowsEnd::kFault;
}

// Goes to the next line that holds something. Blank lines mean nothing, except in a table of one column, where a blank
// line between others is an empty cell.
bool CTextRows::FindRow() {
  while (!cells_.AtEnd()) {
    const char first = cells_.GetText()[cells_.at];
    if (first > ' ' || !cells_.SkipBlankLine()) return true;
    if (columns_ == 1) ++blankLines_;
    if (cells_.GetPosition() >= tickAt_ && !Tick()) return false;
  }
  return false;
}

bool CTextRows::StartRow(std::size_t& row) {
  if (builder_.GetRowCount() == static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    error_ = file_ + " has more rows than can be counted: at most 2147483647 are read.";
    return false;
  }
  if ((builder_.GetRowCount() + 1) * columns_ > source_.GetSize() + kFilledCells) {
    error_ = file_ + ", line " + std::to_string(cells_.line) + ": nearly all rows have fewer cells than the " +
             std::to_string(columns_) + " that the table has columns.";
    return false;
  }
  row = builder_.StartRow();
  return true;
}

// The cells from `column` on as long as they are empty or plain numbers, which nearly all cells are. Returns the first
// column that wants a closer look.
template <bool kBlanks>
std::size_t CTextRows::ReadPlainCells(std::size_t row, std::size_t column) {
  const auto text = cells_.GetText();
  const char* p = text.data() + cells_.at;
  const char* const end = text.data() + text.size();
  const char delimiter = cells_.GetDelimiter();
  double* const* values = builder_.GetValues();
  const bool checkNulls = builder_.GetRules().HasNumbers();
  for (; column < columns_ && end - p >= kPlainNumberReach; ++column) {
    const char* const stop = p + std::min(kBlanksSkipped, end - p - kPlainNumberReach);
    while (p < stop && IsBlank(*p) && (kBlanks || *p != delimiter)) ++p;
    if (!kBlanks && *p == delimiter && column + 1 < columns_) {
      builder_.PutEmpty(column, row);
      ++p;
      continue;
    }
    double value = 0;
    const char* next = ScanPlainNumber(p, decimal_, value);
    // Behind a plain number may come the rest of a longer one: an exponent, or a sixteenth digit.
    if (next == nullptr || !EndsCell(*next, delimiter)) {
      next = decimal_ == '.' ? ScanNumber(p, end, value) : nullptr;
      if (next == nullptr || next == end || !EndsCell(*next, delimiter)) break;
    }
    if (checkNulls && builder_.GetRules().IsNullNumber(value)) break;
    if constexpr (kBlanks) {
      while (next != end && IsBlank(*next)) ++next;
      if (next == end) break;
    }
    const bool last = column + 1 == columns_;
    if (!last && (kBlanks ? !IsLineEnd(*next) : *next == delimiter)) {
      values[column][row] = value;
      p = next + (kBlanks ? 0 : 1);
      continue;
    }
    // The edge of what is in sight may cut a line end of two bytes.
    if (!last || !IsLineEnd(*next) || next + 1 == end) break;
    values[column][row] = value;
    p = next + (next[0] == '\r' && next[1] == '\n' ? 2 : 1);
    rowEnded_ = true;
    ++cells_.line;
  }
  cells_.at = static_cast<std::size_t>(p - text.data());
  return column;
}

bool CTextRows::ReadRow(std::size_t row) {
  const long line = cells_.line;
  const bool blanks = cells_.GetDelimiter() == ' ';
  rowEnded_ = false;
  for (std::size_t column = 0; column < columns_; ++column) {
    if (readsPlain_) column = blanks ? ReadPlainCells<true>(row, column) : ReadPlainCells<false>(row, column);
    if (rowEnded_) break;
    CellEnd end = CellEnd::kText;
    if (!ReadCell(row, column, end)) return false;
    if (end == CellEnd::kDelimiter && column + 1 == columns_) return DrainRow(columns_);
    if (end == CellEnd::kDelimiter) continue;
    FillRow(row, column + 1, line);
    break;
  }
  cellsSinceTick_ += columns_;
  return (cells_.GetPosition() < tickAt_ && cellsSinceTick_ < kTickCells) || Tick();
}

bool CTextRows::ReadCell(std::size_t row, std::size_t column, CellEnd& end) {
  TextCell cell;
  const long line = cells_.line;
  const CellFault fault = cells_.Next(cell);
  if (fault != CellFault::kNone) return Fail(fault, line, column);
  builder_.PutCell(column, row, TrimBlanks(cell.text), line);
  end = cell.end;
  return true;
}

// Passes over the cells that no heading stands above. Empty ones, as delimiters at the end of each line make them, are
// not worth a word.
bool CTextRows::DrainRow(std::size_t cells) {
  const long line = cells_.line;
  TextCell cell;
  cell.end = CellEnd::kDelimiter;
  bool empty = true;
  while (cell.end == CellEnd::kDelimiter) {
    if (++cells > kMaxColumns) {
      error_ = file_ + ", line " + std::to_string(line) + " has more than " + std::to_string(kMaxColumns) + " cells.";
      return false;
    }
    const CellFault fault = cells_.Next(cell);
    if (fault != CellFault::kNone) return Fail(fault, cells_.line, cells - 1);
    empty = empty && cell.text.empty();
    if (cells_.GetPosition() >= tickAt_ && !Tick()) return false;
  }
  if (!empty) Note(longRows_, line, cells);
  cellsSinceTick_ += cells;
  return true;
}

void CTextRows::FillRow(std::size_t row, std::size_t column, long line) {
  if (column < columns_) Note(shortRows_, line, column);
  for (; column < columns_; ++column) builder_.PutEmpty(column, row);
}

bool CTextRows::RereadRow(std::size_t row, const std::vector<char>& wanted) {
  TextCell cell;
  cell.end = CellEnd::kDelimiter;
  for (std::size_t column = 0; column < columns_; ++column) {
    const bool there = cell.end == CellEnd::kDelimiter;
    const CellFault fault = there ? cells_.Next(cell) : CellFault::kNone;
    if (fault != CellFault::kNone) return Fail(fault, cells_.line, column);
    const auto text = there ? TrimBlanks(cell.text) : std::string_view();
    if (wanted[column] != 0 && !PutLabel(column, row, text)) return false;
  }
  if (cell.end == CellEnd::kDelimiter && !DrainRow(columns_)) return false;
  cellsSinceTick_ += columns_;
  return (cells_.GetPosition() < tickAt_ && cellsSinceTick_ < kTickCells) || Tick();
}

bool CTextRows::PutLabel(std::size_t column, std::size_t row, std::string_view text) {
  if (builder_.PutLabel(column, row, text)) return true;
  error_ = GetChangedSentence(file_);
  return false;
}

bool CTextRows::Fail(CellFault fault, long line, std::size_t column) {
  error_ = file_ + ", line " + std::to_string(line) + ", column " + std::to_string(column + 1) + ": ";
  switch (fault) {
    case CellFault::kOpenQuote:
      error_ += "the quote that opens here is never closed.";
      break;
    case CellFault::kTooLong:
      error_ += "a cell that starts here is longer than 1 MB.";
      break;
    default:
      error_ += "a zero byte, which no text holds.";
  }
  return false;
}

bool CTextRows::Tick() {
  tickAt_ = cells_.GetPosition() + kTickBytes;
  cellsSinceTick_ = 0;
  if (!source_.IsUnchanged()) {
    error_ = source_.GetFailure(file_);
    return false;
  }
  const auto now = std::chrono::steady_clock::now();
  if (progress_ == nullptr || now - asked_ < kAskEvery) return true;
  asked_ = now;
  const auto done = static_cast<double>(cells_.GetPosition()) / static_cast<double>(source_.GetSize());
  cancelled_ = !progress_->OnProgress(static_cast<int>(done * 100));
  return !cancelled_;
}

void CTextRows::Note(Oddity& oddity, long line, std::size_t cells) {
  if (oddity.rows++ > 0) return;
  oddity.line = line;
  oddity.cells = cells;
}

void CTextRows::AddWarnings(std::vector<CString>& warnings) const {
  const auto describe = [&](const Oddity& oddity, std::string_view one, std::string_view many, std::string_view end) {
    if (oddity.rows == 0) return;
    warnings.push_back(Counted(oddity.rows, one, many) + (oddity.rows == 1 ? " (line " : " (first at line ") +
                       std::to_string(oddity.line) + ": " + std::to_string(oddity.cells) + " of " +
                       std::to_string(columns_) + CString(end));
  };
  describe(shortRows_, "row is too short", "rows are too short", "); the missing cells are nulls.");
  describe(longRows_, "row is too long", "rows are too long", "); the cells beyond the columns are not read.");
}

}  // namespace tallyscope
