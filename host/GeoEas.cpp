// SPDX-License-Identifier: MIT
#include "host/GeoEas.h"

#include <algorithm>
#include <charconv>

#include "host/NullRules.h"
#include "host/NumberScan.h"
#include "host/TextCells.h"
#include "host/TextEncoding.h"
#include "host/TextSource.h"

namespace tallyscope {

namespace {

// The programs of the library take values from -1e21 to 1e21 as data, and what lies beyond as missing: 1e31 is
// customary.
constexpr double kTrimmingLimit = 1e21;
constexpr std::size_t kMaxLine = 4096;

// Takes lines off a text, from byte `at` on. A line too long for a head ends it.
class CHeadLines {
 public:
  CHeadLines(CTextSource& source, std::size_t from) : at(from), source_(source) {}

  std::size_t at;
  long line = 1;

  // Stays until the next one.
  std::optional<std::string_view> Next() {
    const auto head = source_.Look(at, kMaxLine + 1).substr(0, kMaxLine + 1);
    const auto length = std::min(head.find_first_of("\r\n"), head.size());
    if (head.empty() || length >= kMaxLine) return std::nullopt;
    at += length;
    if (length < head.size()) at += head[length] == '\r' && head.substr(length + 1).starts_with('\n') ? 2 : 1;
    ++line;
    return TrimBlanks(head.substr(0, length));
  }

 private:
  CTextSource& source_;
};

struct Words {
  int numbers = 0;
  int others = 0;
};

// The words of a line, parted by blanks and commas.
Words CountWords(std::string_view line) {
  Words words;
  double value = 0;
  while (!line.empty()) {
    const auto length = std::min(line.find_first_of(" \t,"), line.size());
    if (length > 0) ++(ParseNumber(line.substr(0, length), '.', value) ? words.numbers : words.others);
    line.remove_prefix(std::min(length + 1, line.size()));
  }
  return words;
}

// The number of variables. Grid files have the size of the grid behind it.
std::optional<std::size_t> ReadCount(std::string_view line) {
  std::size_t count = 0;
  const auto [end, fault] = std::from_chars(line.data(), line.data() + line.size(), count);
  if (fault != std::errc() || count < 1 || count > kMaxColumns) return std::nullopt;
  const std::string_view behind(end, static_cast<std::size_t>(line.data() + line.size() - end));
  const bool parted = behind.empty() || IsBlank(behind.front());
  if (!parted || behind.find(',') != std::string_view::npos || CountWords(behind).others > 0) return std::nullopt;
  return count;
}

}  // namespace

std::optional<TextLayout> ReadGeoEasHead(CTextSource& source, std::size_t at) {
  CHeadLines lines(source, at);
  if (!lines.Next()) return std::nullopt;
  const auto second = lines.Next();
  const auto count = second ? ReadCount(*second) : std::nullopt;
  if (!count) return std::nullopt;
  TextLayout layout;
  bool named = false;
  for (std::size_t i = 0; i < *count; ++i) {
    const auto name = lines.Next();
    if (!name || CountWords(*name).others == 0 || name->find('"') != std::string_view::npos) return std::nullopt;
    named = named || !CNullRules().IsNullText(*name);  // one of several may be "Na"
    layout.names.push_back(IsUtf8(*name) ? CString(*name) : Latin1ToUtf8(*name));
  }
  if (!named) return std::nullopt;  // a column of numbers and nulls
  layout.at = lines.at;
  layout.line = lines.line;
  layout.nullSize = kTrimmingLimit;
  layout.format = "GeoEAS";
  const auto first = lines.Next();
  // A text of one column may look like this so far, but its rows then hold no numbers.
  if (first && CountWords(*first).numbers == 0) return std::nullopt;
  return layout;
}

}  // namespace tallyscope
