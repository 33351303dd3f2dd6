// SPDX-License-Identifier: MIT
#include "conditioning/ConditioningFile.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/conditioning/ConditioningTesting.h"
#include "tests/support/Scratch.h"

namespace tallyscope {

namespace {

const char* const kHead = "! Qorvane Technology - Data conditioning parameters record\n";

TEST(ConditioningFile, ANumericOneIsWrittenLineByLine) {
  EXPECT_EQ(FormatConditioning(FullRules(1)), CString(kHead) +
                                                  "DataType = NUMERIC\n"
                                                  "! NULL Value\n"
                                                  "NullValue = -999\n"
                                                  "! Values to NULL\n"
                                                  "ConvertValue2Null = 7.5\n"
                                                  "ConvertValue2Null = -1e-05\n"
                                                  "! Value ranges to NULL\n"
                                                  "ConvertValueRange2Null = 10,20\n"
                                                  "ConvertValueRange2Null = -3.25,-1\n"
                                                  "! NULL to background\n"
                                                  "Convert2Background = TRUE,0.5\n"
                                                  "! Capping\n"
                                                  "CapMinimum = TRUE,-4\n"
                                                  "CapMaximum = TRUE,1234.5678\n"
                                                  "! Operators\n"
                                                  "Allow_Operators = TRUE\n"
                                                  "Operator = \"Fill Null\"\n"
                                                  "Operator = \"Moving Average\",\"11\"\n"
                                                  "Operator = \"Progressive Translate (Reverse)\",\"2.5\"\n");
}

TEST(ConditioningFile, OneOfTextsAndAnEmptyOneLeaveOut) {
  auto texts = FullRules(2);
  texts.DefineOperators(0);
  EXPECT_EQ(FormatConditioning(texts), CString(kHead) +
                                           "DataType = STRING\n"
                                           "CaseSensitive = TRUE\n"
                                           "! NULL Value\n"
                                           "NullValue = \"na\"\n"
                                           "! Values to NULL\n"
                                           "ConvertValue2Null = \"none\"\n"
                                           "ConvertValue2Null = \"a, b | c = d # e\"\n"
                                           "! NULL to background\n"
                                           "Convert2Background = TRUE,\"it's blank\"\n"
                                           "! Operators\n"
                                           "Allow_Operators = FALSE\n");
  auto empty = FullRules(0);
  empty.DeclareNULL(0);
  empty.operators.clear();
  EXPECT_EQ(FormatConditioning(empty), CString(kHead) +
                                           "DataType = UNDEFINED\n"
                                           "! Values to NULL\n"
                                           "! NULL to background\n"
                                           "! Operators\n"
                                           "Allow_Operators = TRUE\n");
}

TEST(ConditioningFile, WhatIsWrittenIsReadBack) {
  EXPECT_TRUE(IsIdentical(ParseConditioning(FormatConditioning({})), {}));
  for (const int kind : {CStats_Conditioning::eNumeric, CStats_Conditioning::eString}) {
    const auto stored = FullRules(kind);
    EXPECT_TRUE(ParseConditioning(FormatConditioning(stored)) == stored) << kind;
  }
}

// What the form can't hold comes back as something else.
TEST(ConditioningFile, LossesOfTheForm) {
  CStats_Conditioning undeclared;
  undeclared.SetNULL(-999);
  undeclared.DeclareNULL(0);
  const auto declared = ParseConditioning(FormatConditioning(undeclared));
  EXPECT_TRUE(declared.IsNULLDeclared());
  EXPECT_EQ(declared.nullValue, -1e32);
  CStats_Conditioning empty;
  empty.DefineEmpty();
  EXPECT_TRUE(ParseConditioning(FormatConditioning(empty)).IsString());
  auto banded = FullRules(1);
  banded.operators[2].SetBand(3);
  EXPECT_EQ(ParseConditioning(FormatConditioning(banded)).operators[2].GetBand(), 0);
  CStats_Conditioning digits;
  digits.CapMaximum(1, 0.123456789012);
  EXPECT_EQ(ParseConditioning(FormatConditioning(digits)).capMaximum, 0.123456789);
  CStats_Conditioning unused;
  unused.AddOperator(CStats_Operator::kAgc, "3");
  EXPECT_EQ(ParseConditioning(FormatConditioning(unused)).GetOperatorCount(), 0);
}

TEST(ConditioningFile, LinesAreReadAsTheyCome) {
  using Check = std::function<bool(const CStats_Conditioning&)>;
  struct Case {
    const char* text;
    Check holds;
  };
  const auto isDefault = [](const auto& r) { return IsIdentical(r, {}); };
  for (const Case& c : {
           Case{"", isDefault},
           Case{"! DataType = STRING\n# x\n~ x\n* x\n/ x\n\\ x\n", isDefault},
           Case{"Unknown = 1\nNullValue\nDataType ! STRING\nNullValue = ! 5\n", isDefault},
           Case{"datatype=numeric\r\nnullvalue=-5\r\nCAPMAXIMUM true | 7\r\n",
                [](const auto& r) { return r.nullValue == -5 && r.capMaximumOn && r.capMaximum == 7; }},
           Case{"NullValue = '-7' ! seven", [](const auto& r) { return r.nullValue == -7; }},
           Case{"NullValue = x", [](const auto& r) { return r.nullValue == 0 && r.nullString.empty(); }},
           Case{"DataType = anything\nNullValue = \"\"",
                [](const auto& r) { return r.IsString() && r.nullString.empty(); }},
           Case{"NullValue = 5\nDataType = STRING\nNullValue = 5",
                [](const auto& r) { return r.nullValue == 5 && r.nullString == "5"; }},
           Case{"CaseSensitive = true", [](const auto& r) { return r.IsString() && r.IsCaseSensitive(); }},
           Case{"CaseSensitive = FALSE", [](const auto& r) { return r.IsString() && !r.IsCaseSensitive(); }},
           Case{"ConvertValueRange2Null = 1\nConvertValueRange2Null = 1,\nConvertValueRange2Null = ,2\n"
                "ConvertValueRange2Null = 2,1",
                [](const auto& r) { return r.nullRanges.size() == 1 && r.nullRanges[0].minimum == 2; }},
           Case{"NullValue = 5\nConvert2Background = TRUE,5",
                [](const auto& r) { return r.convertToBackground && r.backgroundValue == 5; }},
           Case{"Convert2Background = yes,5",
                [](const auto& r) { return !r.convertToBackground && r.backgroundValue == 5; }},
           Case{"Convert2Background = TRUE",
                [](const auto& r) { return r.convertToBackground && r.backgroundValue == 0; }},
           Case{"CapMinimum = TRUE,", [](const auto& r) { return r.capMinimumOn && r.capMinimum == 0; }},
           Case{"Operator = AGC,5\nAllow_Operators = FALSE", [](const auto& r) { return r.GetOperatorCount() == 0; }},
           Case{"Allow_Operators = FALSE\nOperator = 'moving average',5\nOperator = None\nOperator = AGC",
                [](const auto& r) {
                  return !r.IsOperatorsUsed() && r.GetOperatorCount() == 2 && r.operators[0].GetValueS() == "5" &&
                         r.operators[1].GetValueS() == "0";
                }},
           Case{"NullValue = 1,5", [](const auto& r) { return r.nullValue == 1; }},
       }) {
    EXPECT_TRUE(c.holds(ParseConditioning(c.text))) << c.text;
  }
}

TEST(ConditioningFile, FilesHoldTheText) {
  const CScratch scratch;
  const CString path = scratch.Path("full.dcf");
  const Status saved = SaveConditioning(path, FullRules(1));
  ASSERT_TRUE(saved.IsGood()) << saved.GetError();
  CString error;
  EXPECT_EQ(ReadAll(path), FormatConditioning(FullRules(1)));
  CStats_Conditioning loaded;
  ASSERT_TRUE(LoadConditioning(path, loaded, error)) << error;
  EXPECT_TRUE(IsIdentical(loaded, ParseConditioning(ReadAll(path)))) << "both ways of reading are one";
}

TEST(ConditioningFile, BothWaysOfReadingEndLinesAlike) {
  const CScratch scratch;
  for (const CString tail : {"", "\n", "\r\n", "\r", "\r\r\n", "\n\r", "\rNullValue = 7\r"}) {
    for (const CString& text : {"DataType = STRING\nNullValue = a" + tail, "Operator = AGC" + tail, tail}) {
      CStats_Conditioning loaded;
      CString error;
      ASSERT_TRUE(LoadConditioning(scratch.Write("a.dcf", text), loaded, error));
      EXPECT_TRUE(IsIdentical(loaded, ParseConditioning(text))) << testing::PrintToString(text);
    }
  }
}

TEST(ConditioningFile, ReadersTellOfLinesThatSayNothing) {
  const CScratch scratch;
  const struct {
    const char* text;
    int good;
    int firstOdd;
    const char* oddText;
  } rows[] = {{"", 0, 0, ""},
              {"! a comment\n\n  # another\n", 0, 0, ""},
              {"DataType = NUMERIC\nNullValue = 5", 2, 0, ""},
              {"x,y,v\n1,2,3\n", 0, 1, "x,y,v"},
              {"! rules\n\nNullValue\nCapMinimum = TRUE,1\nShade = 3\r\n", 1, 3, "NullValue"},
              {"ConvertValueRange2Null = 1,\n", 0, 1, "ConvertValueRange2Null = 1,"},
              {"Operator = Blur\n", 0, 1, "Operator = Blur"}};
  for (const auto& row : rows) {
    CStats_Conditioning rules;
    ConditioningFileLines lines;
    CString error;
    ASSERT_TRUE(LoadConditioning(scratch.Write("a.dcf", row.text), rules, lines, error));
    EXPECT_EQ(lines.good, row.good) << row.text;
    EXPECT_EQ(lines.firstOdd, row.firstOdd) << row.text;
    EXPECT_EQ(lines.oddText, row.oddText);
  }
}

TEST(ConditioningFile, FailuresSayWhyAndChangeNothing) {
  const CScratch scratch;
  auto rules = FullRules(1);
  CString error;
  EXPECT_FALSE(LoadConditioning(scratch.Path("none.dcf"), rules, error));
  EXPECT_NE(error.find("The file does not exist."), CString::npos) << error;
  EXPECT_FALSE(LoadConditioning(scratch.folder, rules, error));
  EXPECT_NE(error.find("This is a directory"), CString::npos) << error;
  const auto wide = scratch.Write("wide.dcf", "NullValue = 7\nNullValue = " + CString(2 << 20, '8') + "\n");
  EXPECT_FALSE(LoadConditioning(wide, rules, error));
  EXPECT_NE(error.find("A line of it is longer than 1 MB."), CString::npos) << error;
  EXPECT_TRUE(IsIdentical(rules, FullRules(1)));
  EXPECT_TRUE(SaveConditioning(scratch.Path("no/x.dcf"), rules).GetError().starts_with("An error occurred writing to"));
}

}  // namespace

}  // namespace tallyscope
