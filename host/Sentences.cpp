// SPDX-License-Identifier: MIT
#include "host/Sentences.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <ostream>
#include <utility>

#include "host/TextEncoding.h"

namespace tallyscope {

namespace {

constexpr std::size_t kNamesShown = 12;
constexpr std::size_t kNear = 5;

CString Lower(std::string_view text) {
  CString lower(text);
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
  return lower;
}

// Letters to insert, drop or exchange to get from one text to the other. (Levenshtein 1966, row by row.)
std::size_t GetDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t corner = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t exchange = corner + (a[i] == b[j] ? 0 : 1);
      corner = row[j + 1];
      row[j + 1] = std::min({exchange, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

CString Join(const std::vector<CString>& names, std::string_view last) {
  CString joined;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) joined += i + 1 == names.size() ? last : std::string_view(", ");
    joined += names[i];
  }
  return joined;
}

// The bytes of the character that a text starts with; 0 for what is no UTF-8.
std::size_t GetLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  return length <= text.size() && IsUtf8(text.substr(0, length)) ? length : 0;
}

unsigned Decode(std::string_view character) {
  if (character.size() == 1) return static_cast<unsigned char>(character.front());
  unsigned code = static_cast<unsigned char>(character.front()) & (0x7Fu >> character.size());
  for (const char c : character.substr(1)) code = code << 6 | (static_cast<unsigned char>(c) & 0x3Fu);
  return code;
}

// Whether a terminal acts on it: C0 and C1 controls, line separators, marks and overrides of the direction of writing.
bool IsActive(unsigned code) {
  constexpr std::pair<unsigned, unsigned> kRanges[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0x61C, 0x61C},
                                                       {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}};
  return std::any_of(std::begin(kRanges), std::end(kRanges),
                     [code](const auto& range) { return range.first <= code && code <= range.second; });
}

void AppendSpelled(CString& shown, unsigned code) {
  constexpr char kDigits[] = "0123456789abcdef";
  shown += '\\';
  if (code == '\n' || code == '\r' || code == '\t') {
    shown += code == '\n' ? 'n' : code == '\r' ? 'r' : 't';
    return;
  }
  shown += code < 0x100 ? 'x' : 'u';
  for (int shift = code < 0x100 ? 4 : 12; shift >= 0; shift -= 4) shown += kDigits[code >> shift & 0xF];
}

// Appends the first character of a text as it is shown. Returns its bytes.
std::size_t AppendShown(CString& shown, std::string_view text) {
  const std::size_t length = GetLength(text);
  const auto character = text.substr(0, std::max<std::size_t>(length, 1));
  const unsigned code = length > 0 ? Decode(character) : static_cast<unsigned char>(text.front());
  if (length == 0 || IsActive(code)) {
    AppendSpelled(shown, code);
  } else {
    shown += character;
  }
  return character.size();
}

}  // namespace

CString Shown(std::string_view text) {
  CString shown;
  shown.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) i += AppendShown(shown, text.substr(i));
  return shown;
}

void Say(std::ostream& to, std::string_view sentence) {
  to << Shown(sentence) << "\n";
}

CString OnOneLine(CString message) {
  std::replace(message.begin(), message.end(), '\n', ' ');
  return message;
}

CString Counted(long long count, std::string_view one, std::string_view many) {
  return std::to_string(count) + " " + CString(count == 1 ? one : many);
}

CString Shortened(std::string_view text) {
  constexpr std::size_t kLength = 40;
  CString shown;
  for (std::size_t i = 0; i < text.size();) {
    if (i >= kLength) return shown + "...";
    i += AppendShown(shown, text.substr(i));
  }
  return shown;
}

CString Quoted(std::string_view text) {
  return "'" + Shortened(text) + "'";
}

CString SuggestNear(std::string_view missing, const std::vector<CString>& names) {
  constexpr std::size_t kLongest = 200;
  const CString wanted = Lower(missing.substr(0, kLongest));
  const std::size_t allowed = wanted.size() < 3 ? 0 : wanted.size() < 5 ? 1 : 2;
  std::vector<std::size_t> distances;  // 0 for a name that holds the other
  for (const auto& name : names) {
    const CString lower = Lower(std::string_view(name).substr(0, kLongest));
    const bool contained = wanted.size() > 2 && lower.find(wanted) != CString::npos;
    distances.push_back(contained ? 0 : GetDistance(wanted, lower));
  }
  const std::size_t least = names.empty() ? 0 : *std::min_element(distances.begin(), distances.end());
  std::vector<CString> near;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (near.size() < kNear && distances[i] == least && least <= allowed) near.push_back(names[i]);
  }
  return near.empty() ? CString() : "; did you mean " + Join(near, " or ") + "?";
}

CString SuggestNames(std::string_view missing, const std::vector<CString>& names) {
  const CString near = SuggestNear(missing, names);
  if (!near.empty()) return near;
  if (names.size() <= kNamesShown) return "; it has " + Join(names, " and ") + ".";
  const std::vector<CString> first(names.begin(), names.begin() + kNamesShown);
  return "; it has " + Join(first, ", ") + " and " + std::to_string(names.size() - kNamesShown) + " more.";
}

}  // namespace tallyscope
