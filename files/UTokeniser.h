// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

#include "platform/core/String.h"

namespace tallyscope {

// Cuts a line into words, quoted texts and a comment.
//   tokeniser.SetLine("Name = 'two words' ! note");   // Name | two words | ! note
// Two separators in a row enclose an empty word, and one at the end is followed by one. A quote that is never closed
// takes the rest of the line. A comment starter ends a word; one directly behind a separator is a comment after an
// empty word. Blanks and `=` part words and count for nothing themselves.
//
// A tokeniser keeps its sets of characters from line to line. Bytes are compared one by one, so UTF-8 passes through in
// words and quoted texts, but a set can't hold a character of more than one byte.
class CUTokeniser {
 public:
  enum TokenType : int { kNone = 0, kWord = 1, kQuoted = 2, kComment = 3 };

  struct Token {
    int start = 0;  // offset in the line, of a quoted text behind its quote
    int length = 0;
    int type = kNone;
    CString text;
  };

  CUTokeniser();

  // Each replaces a set of characters, for the lines to come.
  void SetSeparators(std::string_view characters);
  void SetBlanks(std::string_view characters);
  void SetQuotes(std::string_view characters);
  void SetCommentStarters(std::string_view characters);

  // Tokens of the last line go. A line beyond the range of an int is cut there.
  void SetLine(CString line);
  const CString& GetLine() const { return line_; }
  const std::vector<Token>& GetTokens() const { return tokens_; }

 private:
  Token NextToken(bool first);
  Token CommentFrom(std::size_t start);
  Token QuotedFrom(std::size_t quote);
  Token WordFrom(std::size_t start);
  void SkipBlanks();
  void RebuildSets();
  char At(std::size_t position) const { return line_[position]; }
  bool Is(const CString& set, std::size_t position) const { return set.find(At(position)) != CString::npos; }

  CString separators_ = ",|";
  CString blanks_ = " \t=\n";
  CString quotes_ = "\"'";
  CString commentStarters_ = "~!#*/\\";
  CString specials_;  // what may begin something other than a word
  CString stops_;     // what ends a word
  CString line_;
  std::size_t position_ = 0;
  std::vector<Token> tokens_;
};

}  // namespace tallyscope
