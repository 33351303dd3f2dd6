// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

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

// Files rely on the numbers and the names.
TEST(Catalogue, EachTypeIsFoundByItsNameAndReadsItsPreset) {
  CString names;
  for (int number = 0; number < static_cast<int>(GetOperatorRows().size()); ++number) {
    SCOPED_TRACE(number);
    EXPECT_EQ(GetOperatorRows()[static_cast<std::size_t>(number)].type, number);
    names += Op::GetOperatorName(Type(number)) + "; ";
    EXPECT_EQ(Op::GetOperatorTypeFromName(Op::GetOperatorName(Type(number))), number);
    CString preset = "unset";
    Op::GetOperatorParamDefaultValue(Type(number), preset);
    EXPECT_EQ(Made(Type(number), preset).GetValueS(), preset);
    EXPECT_EQ(Made(Type(number), preset).GetValue().GetType(), Op::GetOperatorParamType(Type(number)));
    EXPECT_EQ(Op::GetOperatorHasParam(Type(number)), preset.empty() ? 0 : 1);
  }
  EXPECT_EQ(
      names,
      "Fill Null; Detrend; Histogram Equalize; Power Function; Log Function; AGC; Gaussian; Moving Average; Scale; "
      "Translate; Progressive Translate; Progressive Translate (Reverse); Horizontal Difference; ");
}

TEST(Catalogue, AnUnknownTypeHasNothing) {
  for (const int number : {-1, 13, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    EXPECT_EQ(Op::GetOperatorName(Type(number)) + Op::GetOperatorParamName(Type(number)), "");
    EXPECT_EQ(Op::GetOperatorHasParam(Type(number)), 0);
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
  for (const char* name : {"", "Fill", "Fill Null ", "Moving  Average"}) {
    EXPECT_EQ(Op::GetOperatorTypeFromName(name), Op::kNone) << name;
  }
}

TEST(Catalogue, ListsByScope) {
  const struct {
    int scope, progressive;
    std::vector<int> types;
  } cases[] = {{0, 0, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 12}},
               {0, 1, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}},
               {1, 1, {0, 1, 2, 5, 6, 7, 12}},
               {2, 1, {}}};
  for (const auto& c : cases) {
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
