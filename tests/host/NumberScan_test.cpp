// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

#include <locale.h>

#include "host/NumberScan.h"

namespace tallyscope {
namespace {

double Strtod(const std::string& text) {
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  return strtod_l(text.c_str(), nullptr, plain);
}

std::uint64_t Bits(double value) {
  return std::bit_cast<std::uint64_t>(value);
}

// The quick way's answer, with bytes behind the number that must not matter.
const char* ScanPadded(const std::string& text, char* buffer, double& value, char decimal = '.') {
  std::memset(buffer, '7', 128);
  std::memcpy(buffer, text.data(), text.size());
  buffer[text.size()] = ',';
  return ScanPlainNumber(buffer, decimal, value);
}

// 1.5e6 numbers of every length, most of them within the quick way: the same bits as strtod.
TEST(NumberScan, PlainNumbersAreThoseOfStrtod) {
  std::mt19937_64 random(7);
  char buffer[128];
  int plain = 0;
  for (int i = 0; i < 1'500'000; ++i) {
    std::string text = random() % 2 == 0 ? "-" : "";
    const auto digits = [&](std::uint64_t count) {
      while (count-- > 0) text += static_cast<char>('0' + random() % 10);
    };
    digits(random() % 10);
    if (random() % 4 != 0) {
      text += '.';
      digits(random() % 10);
    }
    double value = 0;
    const char* end = ScanPadded(text, buffer, value);
    if (end == nullptr) continue;
    ++plain;
    ASSERT_EQ(end, buffer + text.size()) << text;
    ASSERT_EQ(Bits(value), Bits(Strtod(text))) << text;
  }
  EXPECT_GT(plain, 1'000'000);
}

TEST(NumberScan, PlainNumbersEndWhereTheyShould) {
  struct Case {
    const char* text;
    int length;  // -1: of another kind
    double value;
    char decimal = '.';
  };
  for (const auto& c :
       {Case{"12.5", 4, 12.5}, Case{"-0", 2, -0.0}, Case{".5", 2, 0.5}, Case{"5.", 2, 5}, Case{"", -1, 0},
        Case{"-", -1, 0}, Case{".", -1, 0}, Case{"--5", -1, 0}, Case{"+5", -1, 0}, Case{"1.2.3", 3, 1.2},
        Case{"1e5", 1, 1}, Case{"12345678.12345678", -1, 0}, Case{"12345678.123456", 15, 12345678.123456},
        Case{"123456789", -1, 0}, Case{"1,25", 4, 1.25, ','}, Case{"1.25", 1, 1, ','}}) {
    SCOPED_TRACE(c.text);
    char buffer[128];
    double value = 0;
    const char* end = ScanPadded(c.text, buffer, value, c.decimal);
    EXPECT_EQ(end == nullptr ? -1 : end - buffer, c.length);
    if (end != nullptr) {
      EXPECT_EQ(Bits(value), Bits(c.value));
    }
  }
}

// Decimal texts on which rounding goes wrong easily: halves between two doubles, the ends of the range, long digits.
TEST(NumberScan, HardNumbersAreThoseOfStrtod) {
  const std::string long9 = "0." + std::string(400, '9');
  for (const std::string& text :
       {std::string("9007199254740993"), std::string("9007199254740992.5"),
        std::string("9007199254740993.0000000000000001"), std::string("1.7976931348623157e308"),
        std::string("2.2250738585072014e-308"), std::string("2.2250738585072011e-308"),
        std::string("4.9406564584124654e-324"), std::string("2.4703282292062327e-324"), std::string("1e-5000"),
        std::string("8.5e-17"), std::string("123456789012345678901234567890"), std::string("0.1e-6"),
        std::string("1e23"), std::string("6.0221409e+23"), std::string("0.000000000000000000000000000000000000001"),
        std::string("1.00000000000000011102230246251565404236316680908203125"), long9}) {
    SCOPED_TRACE(text);
    double value = 1;
    ASSERT_TRUE(ParseNumber(text, '.', value));
    EXPECT_EQ(Bits(value), Bits(Strtod(text)));
    std::string comma = text;
    if (comma.find('.') != std::string::npos) comma[comma.find('.')] = ',';
    ASSERT_TRUE(ParseNumber(comma, ',', value));
    EXPECT_EQ(Bits(value), Bits(Strtod(text)));
  }
}

TEST(NumberScan, RandomDoublesComeBack) {
  std::mt19937_64 random(11);
  for (int i = 0; i < 100'000; ++i) {
    const double any = std::bit_cast<double>(random());
    if (!std::isfinite(any)) continue;
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, any, std::chars_format::scientific, 16).ptr;
    double value = 0;
    ASSERT_TRUE(ParseNumber({text, end}, '.', value));
    ASSERT_EQ(Bits(value), Bits(any)) << std::string(text, end);
  }
}

TEST(NumberScan, OtherTextsAreNoNumbers) {
  for (const char* text :
       {"",         "-",  "+",   ".",     "+-5",    "++5", "- 5",   "5 ", "0x10",  "inf", "-inf", "nan",
        "infinity", "1e", "1e+", "1e999", "-1e999", "1,5", "1.2.3", "5-", "1 000", "12%", "e5"}) {
    double value = 0;
    EXPECT_FALSE(ParseNumber(text, '.', value)) << text;
  }
  double value = 0;
  EXPECT_FALSE(ParseNumber("1.5", ',', value));
  EXPECT_FALSE(ParseNumber("1,5,0", ',', value));
}

}  // namespace
}  // namespace tallyscope
