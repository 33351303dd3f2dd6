// SPDX-License-Identifier: MIT
#include "host/NumberScan.h"

#include <locale.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>
#include <system_error>

namespace tallyscope {

namespace {

// Where a number is out of the range of a double, from_chars doesn't say on which side: strtod does.
bool ParseOutOfRange(const char* first, const char* last, double& value) {
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  value = strtod_l(std::string(first, last).c_str(), nullptr, plain);
  return std::isfinite(value);
}

bool StartsNumber(const char* p, const char* end) {
  if (p != end && *p == '-') ++p;
  if (p != end && *p == '.') ++p;
  return p != end && *p >= '0' && *p <= '9';
}

}  // namespace

const char* ScanNumber(const char* p, const char* end, double& value) {
  if (!StartsNumber(p, end)) return nullptr;
  const auto [last, fault] = std::from_chars(p, end, value);
  if (fault == std::errc()) return last;
  return fault == std::errc::result_out_of_range && ParseOutOfRange(p, last, value) ? last : nullptr;
}

bool ParseNumber(std::string_view text, char decimal, double& value) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  if (decimal == '.') return ScanNumber(text.data(), text.data() + text.size(), value) == text.data() + text.size();
  if (text.find('.') != std::string_view::npos) return false;
  std::string pointed(text);
  std::replace(pointed.begin(), pointed.end(), decimal, '.');
  const char* end = pointed.data() + pointed.size();
  return ScanNumber(pointed.data(), end, value) == end;
}

}  // namespace tallyscope
