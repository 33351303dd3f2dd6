// SPDX-License-Identifier: MIT
#include "host/TextCells.h"

#include <algorithm>

#include "host/TextSource.h"

namespace tallyscope {

void CTextCells::GoTo(std::size_t position, long itsLine) {
  text_ = source_->Look(position, CTextSource::kWindow);
  base_ = position;
  at = 0;
  line = itsLine;
}

bool CTextCells::More(std::size_t from) {
  const std::size_t inSight = text_.size() - from;
  if (source_ == nullptr || cutShort_ || base_ + text_.size() == source_->GetSize()) return false;
  text_ = source_->Look(base_ + from, std::max(CTextSource::kWindow, 2 * inSight));
  base_ += from;
  at = 0;
  cutShort_ = text_.size() <= inSight;
  return true;
}

bool CTextCells::AtEnd() {
  while (at >= text_.size()) {
    if (!More(at)) return true;
  }
  return false;
}

bool CTextCells::SkipBlankLine() {
  std::size_t i = 0;
  do {
    const std::size_t last = std::min(text_.size(), at + kMaxCell);
    i = at;
    // A line of tabs in a text with tabs is a row of empty cells.
    while (i < last && (text_[i] == ' ' || (text_[i] == '\t' && delimiter_ != '\t'))) ++i;
  } while (i + 1 >= text_.size() && More(at));
  if (i == text_.size() && i > at) {
    at = i;
    return true;
  }
  if (i >= text_.size() || !IsLineEnd(text_[i])) return false;
  at = i + (text_[i] == '\r' && i + 1 < text_.size() && text_[i + 1] == '\n' ? 2 : 1);
  ++line;
  return true;
}

bool CTextCells::SkipBlanks() {
  const std::size_t last = std::min(text_.size(), at + kMaxCell);
  while (at < last && IsBlank(text_[at]) && (text_[at] != delimiter_ || delimiter_ == ' ')) ++at;
  return at < last || last == text_.size();
}

CellFault CTextCells::Next(TextCell& cell) {
  for (;;) {
    const std::size_t first = at;
    const long firstLine = line;
    const CellFault fault = NextInSight(cell);
    const bool mayGoOn = at >= text_.size() || fault == CellFault::kOpenQuote;
    if (!mayGoOn || !More(first)) return fault;
    line = firstLine;
  }
}

CellFault CTextCells::NextInSight(TextCell& cell) {
  if (!SkipBlanks()) return CellFault::kTooLong;
  cell.quoted = at < text_.size() && text_[at] == '"';
  const CellFault fault = cell.quoted ? NextQuoted(cell) : NextPlain(cell);
  return fault == CellFault::kNone ? PassEnd(cell) : fault;
}

std::size_t CTextCells::FindCellEnd(std::size_t from) const {
  const std::size_t last = std::min(text_.size(), from + kMaxCell);
  std::size_t i = from;
  if (delimiter_ == ' ') {
    while (i < last && !IsBlank(text_[i]) && !IsLineEnd(text_[i])) ++i;
  } else {
    while (i < last && text_[i] != delimiter_ && !IsLineEnd(text_[i])) ++i;
  }
  return i;
}

CellFault CTextCells::NextPlain(TextCell& cell) {
  const std::size_t end = FindCellEnd(at);
  if (end - at >= kMaxCell) return CellFault::kTooLong;
  cell.text = TrimBlanks(text_.substr(at, end - at));
  if (cell.text.find('\0') != std::string_view::npos) return CellFault::kZeroByte;
  at = end;
  return CellFault::kNone;
}

// What stands between the closing quote and the end of the cell belongs to the text as it is: a quote too many must not
// swallow the rest of the file.
CellFault CTextCells::NextQuoted(TextCell& cell) {
  unquoted_.clear();
  const std::size_t last = std::min(text_.size(), at + kMaxCell);
  long lines = 0;
  std::size_t i = at + 1;
  for (;; ++i) {
    if (i >= last) return last == text_.size() ? CellFault::kOpenQuote : CellFault::kTooLong;
    const char c = text_[i];
    if (c == '\0') return CellFault::kZeroByte;
    if (c == '"') {
      if (i + 1 >= text_.size() || text_[i + 1] != '"') break;
      ++i;
    }
    if (c == '\n' || (c == '\r' && (i + 1 >= text_.size() || text_[i + 1] != '\n'))) ++lines;
    unquoted_ += c;
  }
  const std::size_t end = FindCellEnd(i + 1);
  if (end - at >= kMaxCell) return CellFault::kTooLong;
  unquoted_ += TrimBlanks(text_.substr(i + 1, end - i - 1));
  if (unquoted_.find('\0') != std::string::npos) return CellFault::kZeroByte;
  cell.text = unquoted_;
  line += lines;
  at = end;
  return CellFault::kNone;
}

CellFault CTextCells::PassEnd(TextCell& cell) {
  if (delimiter_ == ' ' && !SkipBlanks()) return CellFault::kTooLong;
  cell.end = CellEnd::kText;
  if (at >= text_.size()) return CellFault::kNone;
  if (!IsLineEnd(text_[at])) {
    cell.end = CellEnd::kDelimiter;
    if (delimiter_ != ' ') ++at;
    return CellFault::kNone;
  }
  cell.end = CellEnd::kLine;
  at += text_[at] == '\r' && at + 1 < text_.size() && text_[at + 1] == '\n' ? 2 : 1;
  ++line;
  return CellFault::kNone;
}

}  // namespace tallyscope
