// SPDX-License-Identifier: MIT
// Any number as a dialog shows it, and any text as one types it, in the characters of several languages: what is shown
// reads as the number that it was, and what is taken is what a lenient reading gives. The first byte chooses the
// characters, the second the digits, eight more are the number's bits.
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "fuzz/Demand.h"
#include "platform/core/NumberText.h"

namespace tallyscope {
namespace {

// The last has a narrow blank that takes three bytes.
const std::array<NumberCharacters, 7> kCharacters = {
    {{".", ","}, {",", "."}, {",", ""}, {".", "'"}, {",", " "}, {"\u066b", "\u066c"}, {",", "\u202f"}}};
constexpr int kAllDigits = 17;  // as many as a double needs

bool AreSame(double a, double b) {
  return a == b || (std::isnan(a) && std::isnan(b));
}

std::string Printed(const char* format, int digits, double value) {
  std::array<char, 1600> text{};
  std::snprintf(text.data(), text.size(), format, digits, value);
  return text.data();
}

void CheckNumber(double value, int digits) {
  Demand(FormatGeneral(value, digits) == Printed("%.*g", digits, value), "it is printf's general form");
  Demand(FormatFixed(value, digits) == Printed("%.*f", digits, value), "it is printf's fixed form");
  for (const CString& text : {FormatLocale(value, kAllDigits), ToLocale(FormatFixed(value, digits))}) {
    const CString plain = FromLocale(text);
    double read = 0;
    Demand(ParseStrict(text, read), "what is shown can be typed");
    Demand(AreSame(read, ParseLocale(text)) && AreSame(read, ParseLeadingNumber(plain)), "both readings are the same");
  }
  Demand(AreSame(ParseLocale(FormatLocale(value, kAllDigits)), value), "what is shown is the number");
  Demand(FromLocale(FormatLocale(value)) == FormatGeneral(value, 10), "the characters go both ways");
}

void CheckText(const CString& text) {
  double strict = 0;
  const double lenient = ParseLocale(text);
  if (ParseStrict(text, strict)) Demand(AreSame(strict, lenient), "what is taken is what a lenient reading gives");
  Demand(ParseLeadingInteger(std::to_string(ParseLeadingInteger(text))) == ParseLeadingInteger(text),
         "a whole number reads as itself");
  Demand(FromLocale(text).size() <= text.size(), "plain numbers are no longer than those shown");
}

}  // namespace
}  // namespace tallyscope

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tallyscope;
  if (size < 2 + sizeof(double)) return 0;
  SetNumberCharacters(kCharacters[data[0] % kCharacters.size()]);
  double value = 0;
  std::memcpy(&value, data + 2, sizeof value);
  CheckNumber(value, data[1] % 25);
  const std::size_t text = 2 + sizeof value;
  CheckText(CString(reinterpret_cast<const char*>(data) + text, size - text));
  return 0;
}
