// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/core/Blanks.h"

namespace tallyscope {

class CTextSource;

enum class CellEnd { kDelimiter, kLine, kText };  // what stands behind a cell; kText: the end of the whole text
enum class CellFault { kNone, kOpenQuote, kTooLong, kZeroByte };

struct TextCell {
  std::string_view text;  // without quotes and outer blanks; valid until the next cell
  bool quoted = false;
  CellEnd end = CellEnd::kText;
};

inline bool IsLineEnd(char c) {
  return c == '\n' || c == '\r';
}

// Walks a delimited text cell by cell, with quotes, doubled quotes and line breaks inside quotes. The delimiter ' ' is
// any run of blanks and tabs, with none before the first cell and behind the last. Lines end with LF, CRLF or CR.
// A text in memory is in sight from the start; of a source, only what the window shows, which moves on by itself: a
// cell or a line end that the edge of the window may cut is looked at again in a larger part.
class CTextCells {
 public:
  static constexpr std::size_t kMaxCell = std::size_t{1} << 20;  // bytes

  CTextCells(std::string_view text, char delimiter) : text_(text), delimiter_(delimiter) {}
  CTextCells(CTextSource& source, char delimiter) : source_(&source), delimiter_(delimiter) {}

  std::size_t at = 0;  // where the next cell starts, in what is in sight
  long line = 1;       // of `at`

  // Moves to a byte of the source, counted from its beginning.
  void GoTo(std::size_t position, long itsLine);
  std::size_t GetPosition() const { return base_ + at; }

  bool AtEnd();                                       // of the whole
  std::string_view GetText() const { return text_; }  // what is in sight
  char GetDelimiter() const { return delimiter_; }

  // Skips the line at `at` if it is empty or blank. False if there is something in it, or no line.
  bool SkipBlankLine();
  // Reads the cell at `at` and moves behind it and its end. kOpenQuote: `line` is where the quote opened. A cell, or
  // the blanks before it, may be kMaxCell bytes long at most.
  CellFault Next(TextCell& cell);

 private:
  // Shows more of what comes from there on, which becomes `at`. False, with nothing moved, at the end. After the source
  // has failed it is true once more, without anything new: what is in sight has moved.
  bool More(std::size_t from);
  bool SkipBlanks();  // false when there are too many
  CellFault NextInSight(TextCell& cell);
  CellFault NextQuoted(TextCell& cell);
  CellFault NextPlain(TextCell& cell);
  CellFault PassEnd(TextCell& cell);
  std::size_t FindCellEnd(std::size_t from) const;

  std::string_view text_;
  CTextSource* source_ = nullptr;
  std::size_t base_ = 0;   // position of the text in the source
  bool cutShort_ = false;  // the source failed
  char delimiter_;
  std::string unquoted_;
};

}  // namespace tallyscope
