// SPDX-License-Identifier: MIT
#include "files/UTokeniser.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tallyscope {

namespace {

constexpr std::size_t kMostOfLine = std::numeric_limits<int>::max();

}  // namespace

CUTokeniser::CUTokeniser() {
  RebuildSets();
}

void CUTokeniser::SetSeparators(std::string_view characters) {
  separators_ = characters;
  RebuildSets();
}

void CUTokeniser::SetBlanks(std::string_view characters) {
  blanks_ = characters;
  RebuildSets();
}

void CUTokeniser::SetQuotes(std::string_view characters) {
  quotes_ = characters;
  RebuildSets();
}

void CUTokeniser::SetCommentStarters(std::string_view characters) {
  commentStarters_ = characters;
  RebuildSets();
}

void CUTokeniser::RebuildSets() {
  specials_ = separators_ + quotes_ + commentStarters_;
  stops_ = blanks_ + specials_;
}

void CUTokeniser::SetLine(CString line) {
  line_ = std::move(line);
  if (line_.size() > kMostOfLine) line_.resize(kMostOfLine);  // a token's place is an int
  tokens_.clear();
  position_ = 0;
  for (bool first = true; position_ < line_.size(); first = false) {
    Token token = NextToken(first);
    if (token.type == kNone) continue;
    token.text = line_.substr(static_cast<std::size_t>(token.start), static_cast<std::size_t>(token.length));
    tokens_.push_back(std::move(token));
  }
}

void CUTokeniser::SkipBlanks() {
  position_ = std::min(line_.find_first_not_of(blanks_, position_), line_.size());
}

CUTokeniser::Token CUTokeniser::CommentFrom(std::size_t start) {
  position_ = line_.size();
  return {static_cast<int>(start), static_cast<int>(line_.size() - start), kComment, {}};
}

CUTokeniser::Token CUTokeniser::QuotedFrom(std::size_t quote) {
  const std::size_t start = quote + 1;
  const std::size_t closing = line_.find(At(quote), start);
  const std::size_t end = std::min(closing, line_.size());
  position_ = std::min(end + 1, line_.size());
  SkipBlanks();
  return {static_cast<int>(start), static_cast<int>(end - start), kQuoted, {}};
}

CUTokeniser::Token CUTokeniser::WordFrom(std::size_t start) {
  const std::size_t end = std::min(line_.find_first_of(stops_, start), line_.size());
  position_ = end;
  if (end < line_.size() && !Is(specials_, end)) SkipBlanks();
  return {static_cast<int>(start), static_cast<int>(end - start), kWord, {}};
}

CUTokeniser::Token CUTokeniser::NextToken(bool first) {
  bool separated = false;
  if (!first) {
    if (Is(commentStarters_, position_)) return CommentFrom(position_);
    if (!Is(quotes_, position_) && Is(specials_, position_)) {
      ++position_;
      separated = true;
    }
  }
  SkipBlanks();
  const std::size_t start = position_;
  if (start == line_.size()) return {static_cast<int>(start), 0, separated ? kWord : kNone, {}};
  if (!separated && Is(commentStarters_, start)) return CommentFrom(start);
  if (Is(quotes_, start)) return QuotedFrom(start);
  if (Is(specials_, start)) return {static_cast<int>(start), 0, kWord, {}};
  return WordFrom(start);
}

}  // namespace tallyscope
