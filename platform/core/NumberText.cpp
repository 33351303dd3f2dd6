// SPDX-License-Identifier: MIT
#include "platform/core/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <optional>
#include <utility>

#include <langinfo.h>
#include <locale.h>

namespace tallyscope {

namespace {

std::optional<NumberCharacters>& Chosen() {
  static std::optional<NumberCharacters> chosen;
  return chosen;
}

NumberCharacters FromEnvironment() {
  NumberCharacters characters;
  const locale_t user = newlocale(LC_ALL_MASK, "", nullptr);
  if (user == nullptr) return characters;  // the environment names a locale that is not installed
  characters.decimal = nl_langinfo_l(RADIXCHAR, user);
  characters.thousands = nl_langinfo_l(THOUSEP, user);
  freelocale(user);
  if (characters.decimal.empty()) characters.decimal = ".";
  return characters;
}

locale_t PlainLocale() {
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  return plain;
}

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

}  // namespace

const NumberCharacters& GetNumberCharacters() {
  if (!Chosen()) Chosen() = FromEnvironment();
  return *Chosen();
}

void SetNumberCharacters(NumberCharacters characters) {
  Chosen() = std::move(characters);
}

CString FormatGeneral(double value, int precision) {
  char text[800];  // a double has 767 significant digits at most
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, precision);
  return CString(text, end.ptr);
}

CString FormatFixed(double value, int decimals) {
  char text[1500];  // 309 digits before the point, 1074 behind it at most
  const auto end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, std::clamp(decimals, 0, 1074));
  return CString(text, end.ptr);
}

double ParseLeadingNumber(const CString& text) {
  return strtod_l(text.c_str(), nullptr, PlainLocale());
}

int ParseLeadingInteger(const CString& text) {
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(std::clamp<long long>(std::strtoll(text.c_str(), nullptr, 10), Limits::min(), Limits::max()));
}

CString ToLocale(std::string_view text) {
  const auto& characters = GetNumberCharacters();
  const auto decimal = text.rfind('.');
  CString shown;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == ',') {
      shown += characters.thousands;
    } else if (i == decimal) {
      shown += characters.decimal;
    } else {
      shown += text[i];
    }
  }
  return shown;
}

CString FromLocale(std::string_view text) {
  const auto& characters = GetNumberCharacters();
  CString plain(text);
  if (!characters.thousands.empty()) {
    for (auto at = plain.find(characters.thousands); at != CString::npos; at = plain.find(characters.thousands, at)) {
      plain.erase(at, characters.thousands.size());
    }
  }
  const auto decimal = plain.rfind(characters.decimal);
  if (decimal != CString::npos) plain.replace(decimal, characters.decimal.size(), ".");
  return plain;
}

CString FormatLocale(double value) {
  return FormatLocale(value, 10);
}

CString FormatLocale(double value, int precision) {
  return ToLocale(FormatGeneral(value, precision));
}

double ParseLocale(std::string_view text) {
  return ParseLeadingNumber(FromLocale(text));
}

bool ParseStrict(std::string_view text, double& value) {
  CString plain = FromLocale(text);
  plain.erase(0, plain.find_first_not_of(" \t") == CString::npos ? plain.size() : plain.find_first_not_of(" \t"));
  if (plain.starts_with('.')) plain.insert(0, "0");
  if (plain == "-" || plain == "+") plain += "0";
  char* end = nullptr;
  value = strtod_l(plain.c_str(), &end, PlainLocale());
  while (IsBlank(*end)) ++end;
  return *end == '\0' && end == plain.c_str() + plain.size();
}

}  // namespace tallyscope
