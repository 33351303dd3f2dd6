// SPDX-License-Identifier: MIT
#include "platform/core/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>

namespace tallyscope {

namespace {

// The user's characters for a test; the process locale is set by the suite's main, and must not matter.
class NumberText : public testing::Test {
 protected:
  void TearDown() override { SetNumberCharacters({".", ","}); }
};

const NumberCharacters kEnglish{".", ","};
const NumberCharacters kGerman{",", "."};
const NumberCharacters kFrench{",", "\u202f"};
const NumberCharacters kPersian{"\u066b", "\u066c"};
const NumberCharacters kPlainComma{",", ""};

TEST_F(NumberText, FormatsLikePrintfWithAPoint) {
  struct Case {
    double value;
    int precision;
    const char* text;
  };
  const double inf = std::numeric_limits<double>::infinity();
  for (const auto& c :
       {Case{0, 10, "0"}, Case{-0.0, 10, "-0"}, Case{0.1, 10, "0.1"}, Case{1.0 / 3, 15, "0.333333333333333"},
        Case{1234567.891, 8, "1234567.9"}, Case{1e15, 15, "1e+15"}, Case{123456, 6, "123456"},
        Case{1234567, 6, "1.23457e+06"}, Case{0.0001, 6, "0.0001"}, Case{0.00001, 6, "1e-05"}, Case{2.5, 0, "2"},
        Case{inf, 10, "inf"}, Case{-inf, 10, "-inf"}, Case{1e-320, 6, "9.99989e-321"}}) {
    EXPECT_EQ(FormatGeneral(c.value, c.precision), c.text);
  }
  EXPECT_EQ(ParseLeadingNumber(FormatGeneral(std::numeric_limits<double>::denorm_min(), 800)),
            std::numeric_limits<double>::denorm_min());
}

TEST_F(NumberText, ReadsTheNumberThatATextStartsWith) {
  EXPECT_EQ(ParseLeadingNumber("1.5 m"), 1.5);
  EXPECT_EQ(ParseLeadingNumber("1,5"), 1);
  EXPECT_EQ(ParseLeadingNumber("-2e3x"), -2000);
  EXPECT_EQ(ParseLeadingNumber("x1"), 0);
  EXPECT_EQ(ParseLeadingNumber(""), 0);
}

TEST_F(NumberText, ConvertsBothWays) {
  struct Case {
    NumberCharacters user;
    const char* plain;
    const char* shown;
    const char* back;  // from shown
  };
  for (const auto& c :
       {Case{kEnglish, "1,234.5", "1,234.5", "1234.5"}, Case{kGerman, "1,234.5", "1.234,5", "1234.5"},
        Case{kGerman, "1,234,567", "1.234.567", "1234567"}, Case{kGerman, "1.2.3", "1.2,3", "12.3"},
        Case{kFrench, "1,234.5", "1\u202f234,5", "1234.5"}, Case{kPersian, "1,234.5", "1\u066c234\u066b5", "1234.5"},
        Case{kPlainComma, "1,234.5", "1234,5", "1234.5"}, Case{kGerman, "", "", ""}}) {
    SetNumberCharacters(c.user);
    EXPECT_EQ(ToLocale(c.plain), c.shown);
    EXPECT_EQ(FromLocale(c.shown), c.back);
  }
  SetNumberCharacters(kGerman);
  EXPECT_EQ(FromLocale("1,2,3"), "1,2.3") << "the last decimal character only";
}

TEST_F(NumberText, ShowsAndReadsNumbers) {
  SetNumberCharacters(kGerman);
  EXPECT_EQ(FormatLocale(1.0 / 3), "0,3333333333");
  EXPECT_EQ(FormatLocale(1.0 / 3, 15), "0,333333333333333");
  EXPECT_EQ(FormatLocale(-1e32), "-1e+32");
  EXPECT_EQ(ParseLocale("1.234,5 t"), 1234.5);
  for (const double value : {0.1, -12345.678, 1e-300, 6.02214076e23}) {
    double read = 0;
    EXPECT_TRUE(ParseStrict(FormatLocale(value, 17), read));
    EXPECT_EQ(read, value);
  }
}

TEST_F(NumberText, StrictReadingIsLenientToTyping) {
  struct Case {
    NumberCharacters user;
    const char* text;
    bool accepted;
    double value;
  };
  for (const auto& c : {Case{kEnglish, "", true, 0},
                        Case{kEnglish, "  \t", true, 0},
                        Case{kEnglish, ".", true, 0},
                        Case{kEnglish, "-", true, 0},
                        Case{kEnglish, "+", true, 0},
                        Case{kEnglish, ".5", true, 0.5},
                        Case{kEnglish, "-.5", true, -0.5},
                        Case{kEnglish, " \t12 \t", true, 12},
                        Case{kEnglish, "1,234.5", true, 1234.5},
                        Case{kEnglish, "1e3", true, 1000},
                        Case{kEnglish, "1x", false, 1},
                        Case{kEnglish, "x", false, 0},
                        Case{kEnglish, "1 2", false, 1},
                        Case{kEnglish, "1.2.3", false, 1.2},
                        Case{kEnglish, "--1", false, 0},
                        Case{kEnglish, "1e", false, 1},
                        Case{kGerman, "1,5", true, 1.5},
                        Case{kGerman, ",", true, 0},
                        Case{kGerman, ",5", true, 0.5},
                        Case{kGerman, "1.234,5", true, 1234.5},
                        Case{kGerman, "1.5", true, 15},
                        Case{kPersian, "1\u066b5", true, 1.5}}) {
    SetNumberCharacters(c.user);
    double value = 42;
    EXPECT_EQ(ParseStrict(c.text, value), c.accepted) << c.text;
    EXPECT_EQ(value, c.value) << c.text;
  }
  double value = 0;
  EXPECT_FALSE(ParseStrict(std::string_view("1\0002", 3), value)) << "a NUL ends no text";
}

TEST(NumberTextDeathTest, TakesTheCharactersOfTheUsersEnvironment) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a fresh process, which has chosen no characters yet
  const auto decimalIn = [](const char* locale) {
    setenv("LC_ALL", locale, 1);
    std::exit(GetNumberCharacters().decimal == "," ? 7 : 8);
  };
  EXPECT_EXIT(decimalIn("de_DE.UTF-8"), testing::ExitedWithCode(7), "");
  EXPECT_EXIT(decimalIn("C"), testing::ExitedWithCode(8), "");
  EXPECT_EXIT(decimalIn("no_SUCH.locale"), testing::ExitedWithCode(8), "");
}

}  // namespace

}  // namespace tallyscope
