// SPDX-License-Identifier: MIT
#include "host/GeoEas.h"

#include <algorithm>
#include <charconv>

#include "host/NumberScan.h"
#include "host/TextCells.h"
#include "host/TextEncoding.h"

namespace tallyscope {

namespace {

// The programs of the library take values from -1e21 to 1e21 as data, and what lies beyond as missing: 1e31 is customary.
constexpr double kTrimmingLimit = 1e21;
constexpr std::size_t kMaxLine = 4096;

// Takes lines off a text. A line too long for a head ends it.
class CHeadLines {
 public:
  explicit CHeadLines(std::string_view text) : text_(text) {}

  std::size_t at = 0;
  long line = 1;

  std::optional<std::string_view> Next() {
    if (at >= text_.size()) return std::nullopt;
    const auto head = text_.substr(at, kMaxLine);
    const auto length = std::min(head.find_first_of("\r\n"), head.size());
    if (length == kMaxLine) return std::nullopt;
    at += length;
    if (at < text_.size()) at += text_[at] == '\r' && at + 1 < text_.size() && text_[at + 1] == '\n' ? 2 : 1;
    ++line;
    return TrimBlanks(head.substr(0, length));
  }

 private:
  std::string_view text_;
};

// The words of a line that are numbers, up to the first that is none. `rest` is true when there is such a one.
int CountNumbers(std::string_view line, bool& rest) {
  int numbers = 0;
  double value = 0;
  for (line = TrimBlanks(line); !line.empty(); line = TrimBlanks(line)) {
    const auto length = std::min(line.find_first_of(" \t,"), line.size());
    rest = !ParseNumber(line.substr(0, length), '.', value);
    if (rest) return numbers;
    ++numbers;
    line.remove_prefix(std::min(length + (length < line.size() && line[length] == ',' ? 1 : 0), line.size()));
  }
  rest = false;
  return numbers;
}

// The number of variables. Grid files have the size of the grid behind it.
std::optional<std::size_t> ReadCount(std::string_view line) {
  std::size_t count = 0;
  const auto [end, fault] = std::from_chars(line.data(), line.data() + line.size(), count);
  if (fault != std::errc() || count < 1 || count > kMaxColumns) return std::nullopt;
  const std::string_view behind(end, static_cast<std::size_t>(line.data() + line.size() - end));
  bool rest = false;
  if (!behind.empty() && !IsBlank(behind.front())) return std::nullopt;
  CountNumbers(behind, rest);
  return rest || behind.find(',') != std::string_view::npos ? std::nullopt : std::optional(count);
}

bool IsName(std::string_view line) {
  bool rest = false;
  CountNumbers(line, rest);
  return rest;
}

}  // namespace

std::optional<TextLayout> ReadGeoEasHead(std::string_view text) {
  CHeadLines lines(text);
  if (!lines.Next()) return std::nullopt;
  const auto second = lines.Next();
  const auto count = second ? ReadCount(*second) : std::nullopt;
  if (!count) return std::nullopt;
  TextLayout layout;
  for (std::size_t i = 0; i < *count; ++i) {
    const auto name = lines.Next();
    if (!name || !IsName(*name)) return std::nullopt;
    layout.names.push_back(IsUtf8(*name) ? CString(*name) : Latin1ToUtf8(*name));
  }
  layout.at = lines.at;
  layout.line = lines.line;
  layout.nullSize = kTrimmingLimit;
  const auto first = lines.Next();
  bool rest = false;
  // A delimited text of one column may look like this so far, but its rows then hold no numbers.
  if (first && CountNumbers(*first, rest) == 0) return std::nullopt;
  return layout;
}

}  // namespace tallyscope
