// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tallyscope {

enum class CellEnd { kDelimiter, kLine, kText };  // what stands behind a cell; kText: the end of the whole text
enum class CellFault { kNone, kOpenQuote, kTooLong, kZeroByte };

struct TextCell {
  std::string_view text;  // without quotes and outer blanks; valid until the next cell
  bool quoted = false;
  CellEnd end = CellEnd::kText;
};

inline bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}
inline bool IsLineEnd(char c) {
  return c == '\n' || c == '\r';
}
std::string_view TrimBlanks(std::string_view text);

// Walks a delimited text cell by cell, with quotes, doubled quotes and line breaks inside quotes. The delimiter ' ' is
// any run of blanks and tabs, with none before the first cell and behind the last. Lines end with LF, CRLF or CR.
class CTextCells {
 public:
  static constexpr std::size_t kMaxCell = std::size_t{1} << 20;  // bytes

  CTextCells(std::string_view text, char delimiter) : text_(text), delimiter_(delimiter) {}

  std::size_t at = 0;  // where the next cell starts
  long line = 1;       // of `at`

  bool AtEnd() const { return at >= text_.size(); }
  std::string_view GetText() const { return text_; }
  char GetDelimiter() const { return delimiter_; }

  // Skips the line at `at` if it is empty or blank. False if there is something in it, or no line.
  bool SkipBlankLine();
  // Reads the cell at `at` and moves behind it and its end. kOpenQuote: `line` is where the quote opened.
  CellFault Next(TextCell& cell);

 private:
  bool SkipBlanks();  // false when there are too many
  CellFault NextQuoted(TextCell& cell);
  CellFault NextPlain(TextCell& cell);
  CellFault PassEnd(TextCell& cell);
  std::size_t FindCellEnd(std::size_t from) const;

  std::string_view text_;
  char delimiter_;
  std::string unquoted_;
};

}  // namespace tallyscope
