// SPDX-License-Identifier: MIT
#include "host/Sentences.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace tallyscope {

namespace {

constexpr std::size_t kNamesShown = 12;

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

}  // namespace

CString Counted(long long count, std::string_view one, std::string_view many) {
  return std::to_string(count) + " " + CString(count == 1 ? one : many);
}

CString Shortened(std::string_view text) {
  constexpr std::size_t kLength = 40;
  CString shown;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool startsCharacter = (byte & 0xC0) != 0x80;
    if (i >= kLength && startsCharacter) return shown + "...";
    shown += byte < 0x20 || byte == 0x7F ? ' ' : text[i];
  }
  return shown;
}

CString Quoted(std::string_view text) {
  return "'" + Shortened(text) + "'";
}

CString SuggestNames(std::string_view missing, const std::vector<CString>& names) {
  constexpr std::size_t kLongest = 200;
  const CString wanted = Lower(missing.substr(0, kLongest));
  const std::size_t allowed = wanted.size() < 3 ? 0 : wanted.size() < 5 ? 1 : 2;
  std::vector<CString> near;
  for (const auto& name : names) {
    const CString lower = Lower(std::string_view(name).substr(0, kLongest));
    const bool contained = wanted.size() > 2 && lower.find(wanted) != CString::npos;
    if (near.size() < 5 && (contained || GetDistance(wanted, lower) <= allowed)) near.push_back(name);
  }
  if (!near.empty()) return "; did you mean " + Join(near, " or ") + "?";
  if (names.size() <= kNamesShown) return "; it has " + Join(names, " and ") + ".";
  near.assign(names.begin(), names.begin() + kNamesShown);
  return "; it has " + Join(near, ", ") + " and " + std::to_string(names.size() - kNamesShown) + " more.";
}

}  // namespace tallyscope
