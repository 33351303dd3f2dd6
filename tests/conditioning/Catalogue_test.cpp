// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>
#include <set>

#include "conditioning/OperatorCatalogue.h"
#include "conditioning/Stats_Operator.h"

namespace tallyscope {

namespace {

using Op = CStats_Operator;

Op Made(Op::CStats_OperatorType type, const CString& value) {
  Op step;
  Op::CreateOperator(type, value, step);
  return step;
}

Op::CStats_OperatorType Type(int number) {
  return static_cast<Op::CStats_OperatorType>(number);
}

// What files and dialogs rely on: numbers, names and presets.
TEST(Catalogue, HoldsThirteenOperatorsInTheOrderOfTheirNumbers) {
  struct Case {
    const char* name;
    const char* parameter;
    VARTYPE type;
    const char* preset;
    int odd;
  };
  const Case cases[] = {{"Fill Null", "", VT_NULL, "", 0},
                        {"Detrend", "", VT_NULL, "", 0},
                        {"Histogram Equalize", "", VT_NULL, "", 0},
                        {"Power Function", "", VT_R8, "1", 0},
                        {"Log Function", "Linear Cutoff", VT_R8, "1", 0},
                        {"AGC", "Width", VT_I4, "1", 1},
                        {"Gaussian", "Width", VT_I4, "1", 1},
                        {"Moving Average", "Width", VT_I4, "1", 1},
                        {"Scale", "", VT_R8, "1", 0},
                        {"Translate", "", VT_R8, "1", 0},
                        {"Progressive Translate", "", VT_R8, "1", 0},
                        {"Progressive Translate (Reverse)", "", VT_R8, "1", 0},
                        {"Horizontal Difference", "Order", VT_I4, "4", 0}};
  ASSERT_EQ(GetOperatorRows().size(), std::size(cases));
  for (int number = 0; number < 13; ++number) {
    const auto& c = cases[number];
    SCOPED_TRACE(c.name);
    EXPECT_EQ(GetOperatorRows()[static_cast<std::size_t>(number)].type, number);
    EXPECT_EQ(Op::GetOperatorName(Type(number)), c.name);
    EXPECT_EQ(Op::GetOperatorTypeFromName(c.name), number);
    EXPECT_EQ(Op::GetOperatorParamName(Type(number)), c.parameter);
    EXPECT_EQ(Op::GetOperatorParamType(Type(number)), c.type);
    EXPECT_EQ(Op::GetOperatorHasParam(Type(number)), c.type == VT_NULL ? 0 : 1);
    EXPECT_EQ(Op::IsOperatorParamOddValueOnly(Type(number)), c.odd);
    CString preset = "unset";
    Op::GetOperatorParamDefaultValue(Type(number), preset);
    EXPECT_EQ(preset, c.preset);
    EXPECT_EQ(Made(Type(number), preset).GetValueS(), preset) << "the preset reads back";
    EXPECT_EQ(Made(Type(number), preset).GetValue().GetType(), c.type);
  }
}

TEST(Catalogue, AnUnknownTypeHasNothing) {
  for (const int number : {-1, 13, -999, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    EXPECT_EQ(Op::GetOperatorName(Type(number)), "");
    EXPECT_EQ(Op::GetOperatorParamName(Type(number)), "");
    EXPECT_EQ(Op::GetOperatorHasParam(Type(number)), 0);
    EXPECT_EQ(Op::GetOperatorParamType(Type(number)), VT_NULL);
    CString preset = "untouched";
    Op::GetOperatorParamDefaultValue(Type(number), preset);
    EXPECT_EQ(preset, "untouched");
    Op step = Made(Op::kScale, "3");
    Op::CreateOperator(Type(number), "5", step);
    EXPECT_EQ(step.GetType(), number);
    EXPECT_EQ(step.GetValue().GetReal(), 3) << "the parameter stays";
    EXPECT_EQ(step.GetValueS(), "");
  }
}

TEST(Catalogue, NamesAreFoundInAnyCase) {
  EXPECT_EQ(Op::GetOperatorTypeFromName("progressive translate"), Op::kProgressiveTranslate);
  EXPECT_EQ(Op::GetOperatorTypeFromName("PROGRESSIVE TRANSLATE (reverse)"), Op::kProgressiveTranslateReverse);
  for (const char* name : {"", "Fill", "Fill Null ", "Moving  Average"}) {
    EXPECT_EQ(Op::GetOperatorTypeFromName(name), Op::kNone) << name;
  }
}

TEST(Catalogue, ListsByScope) {
  struct Case {
    int scope, progressive;
    std::vector<int> types;
  };
  for (const Case& c :
       {Case{0, 0, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 12}}, Case{0, 1, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}},
        Case{1, 0, {0, 1, 2, 5, 6, 7, 12}}, Case{1, 1, {0, 1, 2, 5, 6, 7, 12}}, Case{2, 1, {}}, Case{-1, 1, {}}}) {
    std::vector<CString> names = {"old"};
    std::vector<Op::CStats_OperatorType> types = {Op::kAgc};
    Op::GetOperatorList(names, types, c.scope, c.progressive);
    EXPECT_EQ(std::vector<int>(types.begin(), types.end()), c.types) << c.scope;
    ASSERT_EQ(names.size(), types.size());
    for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(names[i], Op::GetOperatorName(types[i]));
  }
}

TEST(Catalogue, ParametersAreReadFromTextsOfAnyKind) {
  struct Case {
    Op::CStats_OperatorType type;
    const char* text;
    const char* shown;
  };
  for (const Case& c :
       {Case{Op::kScale, " 2.5e-3x", "0.0025"}, Case{Op::kScale, "1,5", "1"}, Case{Op::kScale, "none", "0"},
        Case{Op::kScale, "0.12345678901", "0.123456789"}, Case{Op::kAgc, "11.9", "11"}, Case{Op::kAgc, " -3 ", "-3"},
        Case{Op::kAgc, "", "0"}, Case{Op::kAgc, "99999999999999999999", "2147483647"}, Case{Op::kDetrend, "7", ""}}) {
    EXPECT_EQ(Made(c.type, c.text).GetValueS(), c.shown) << c.text;
  }
}

TEST(Catalogue, OperatorsAreEqualByTypeAndParameter) {
  Op banded = Made(Op::kScale, "2");
  banded.SetBand(3);
  banded.SetBandCount(5);
  EXPECT_TRUE(banded == Made(Op::kScale, "2"));
  EXPECT_FALSE(banded == Made(Op::kScale, "2.0000000001"));
  EXPECT_FALSE(banded == Made(Op::kTranslate, "2"));
  EXPECT_EQ(Op().GetType(), Op::kNone);
  EXPECT_EQ(Op().GetBandCount(), 1);
}

}  // namespace

}  // namespace tallyscope
