// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <type_traits>

#include "conditioning/Stats_Conditioning.h"

namespace tallyscope {

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

using Settings = std::function<void(CStats_Conditioning&)>;

CStats_Conditioning Made(const Settings& set) {
  CStats_Conditioning rules;
  set(rules);
  return rules;
}

// A host may build on the rules, but holds them as values.
static_assert(std::is_polymorphic_v<CStats_Conditioning> && !std::has_virtual_destructor_v<CStats_Conditioning>);

struct NumberCase {
  const char* name;
  Settings set;
  double in;
  double out;
  int valid;
};

void Nulls(CStats_Conditioning& rules) {
  rules.SetNULL(-999);
  rules.AddNULLValue(7);
  rules.AddNULLRange(10, 20);
  rules.AddNULLRange(40, 30);  // holds nothing
}

void NullsToBackground(CStats_Conditioning& rules) {
  Nulls(rules);
  rules.Convert2Bkgd(1, 50);
  rules.CapMaximum(1, 45);
}

void Undeclared(CStats_Conditioning& rules) {
  Nulls(rules);
  rules.DeclareNULL(0);
  rules.CapMinimum(1, 0);
}

void UndeclaredToBackground(CStats_Conditioning& rules) {
  Undeclared(rules);
  rules.Convert2Bkgd(1, -5);
}

void Crossed(CStats_Conditioning& rules) {
  rules.CapMinimum(1, 10);
  rules.CapMaximum(1, 5);
}

const NumberCase kNumbers[] = {
    {"default", [](auto&) {}, -1e32, -1e32, 0},
    {"default, inside the tolerance", [](auto&) {}, -1e32 + 0.9e26, -1e32 + 0.9e26, 0},
    {"default, beyond the tolerance", [](auto&) {}, -1e32 + 2e26, -1e32 + 2e26, 1},
    {"default, zero", [](auto&) {}, 0, 0, 1},
    {"default, an infinity is near every number", [](auto&) {}, kInf, kInf, 0},
    {"a declared null keeps its bits", Nulls, -999.0005, -999.0005, 0},
    {"a listed null becomes the declared one", Nulls, 7.000001, -999, 0},
    {"one in a range too", Nulls, 15, -999, 0},
    {"both ends belong to a range", Nulls, 20, -999, 0},
    {"a range has no tolerance", Nulls, 20.000001, 20.000001, 1},
    {"crossed bounds hold nothing", Nulls, 35, 35, 1},
    {"background passes through the caps", NullsToBackground, -999, 45, 1},
    {"and so for one of a range", NullsToBackground, 12, 45, 1},
    {"without a declared null lists mean nothing", Undeclared, 7, 7, 1},
    {"nor does the value", Undeclared, -999, 0, 1},
    {"lists go to the background all the same", UndeclaredToBackground, 7, 0, 1},
    {"but not the undeclared null", UndeclaredToBackground, -998, 0, 1},
    {"of crossed caps the maximum wins, low", Crossed, 1, 5, 1},
    {"of crossed caps the maximum wins, high", Crossed, 20, 5, 1},
    {"zero matches zero alone", [](auto& r) { r.SetNULL(0.0); }, 1e-300, 1e-300, 1},
    {"minus zero is zero", [](auto& r) { r.SetNULL(0.0); }, -0.0, -0.0, 0},
    {"NaN matches nothing", [](auto& r) { r.SetNULL(kNan); }, kNan, kNan, 1},
};

TEST(Rules, OnNumbers) {
  for (const auto& c : kNumbers) {
    SCOPED_TRACE(c.name);
    const auto rules = Made(c.set);
    double value = c.in;
    EXPECT_EQ(rules.ProcessValue(value), c.valid);
    const auto isSame = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    EXPECT_TRUE(isSame(value, c.out)) << value;
    EXPECT_TRUE(isSame(rules.ConvertValue(c.in), c.out));
    EXPECT_EQ(rules.IsNull(c.in, true), 1 - c.valid);
  }
}

TEST(Rules, IsNullWithoutRulesAsksForTheDeclaredNullAlone) {
  const auto rules = Made(NullsToBackground);
  EXPECT_EQ(rules.IsNull(-999.0, false), 1);
  EXPECT_EQ(rules.IsNull(-999.0, true), 0) << "it becomes the background";
  EXPECT_EQ(rules.IsNull(7.0, false), 0);
  const auto undeclared = Made(Undeclared);
  for (const double value : {-999.0, 7.0, 15.0, 0.0}) EXPECT_EQ(undeclared.IsNull(value, false), 0);
  EXPECT_EQ(undeclared.IsNull(CString(), true), 0);
}

TEST(Rules, TellWhichOfThemTookAValue) {
  struct Case {
    double in;
    ConditioningOutcome::eMatch match;
    bool toBackground, below, above;
  };
  auto rules = Made(NullsToBackground);
  rules.AddNULLValue(15);  // also in a range: the list comes first
  rules.CapMinimum(1, 0);
  for (const Case& c : {Case{-999, ConditioningOutcome::eDeclared, true, false, true},
                        Case{15, ConditioningOutcome::eListed, true, false, true},
                        Case{16, ConditioningOutcome::eInRange, true, false, true},
                        Case{-3, ConditioningOutcome::eNone, false, true, false},
                        Case{46, ConditioningOutcome::eNone, false, false, true},
                        Case{45, ConditioningOutcome::eNone, false, false, false}}) {
    double value = c.in;
    const auto outcome = rules.ApplyRules(value);
    EXPECT_EQ(outcome.match, c.match) << c.in;
    EXPECT_EQ(outcome.toBackground, c.toBackground) << c.in;
    EXPECT_EQ(outcome.cappedBelow, c.below) << c.in;
    EXPECT_EQ(outcome.cappedAbove, c.above) << c.in;
    EXPECT_FALSE(outcome.isNull) << c.in;
  }
}

TEST(Rules, ABackgroundThatIsTheNullSwitchesItselfOff) {
  struct Case {
    const char* name;
    Settings set;
    bool on;
  };
  for (const Case& c : {
           Case{"the null's value", [](auto& r) { r.SetNULL(5), r.Convert2Bkgd(1, 5 + 1e-10); }, false},
           Case{"near it", [](auto& r) { r.SetNULL(5), r.Convert2Bkgd(1, 5 + 1e-8); }, true},
           Case{"the null comes later", [](auto& r) { r.Convert2Bkgd(1, 5), r.SetNULL(5); }, true},
           Case{"no null", [](auto& r) { r.SetNULL(5), r.DeclareNULL(0), r.Convert2Bkgd(1, 5); }, true},
           Case{"off", [](auto& r) { r.Convert2Bkgd(0, 5); }, false},
           Case{"off without a null", [](auto& r) { r.DeclareNULL(0), r.Convert2Bkgd(0, 5); }, false},
           Case{"a text", [](auto& r) { r.SetNULL("na"), r.Convert2Bkgd(1, "NA"); }, false},
           Case{"by case", [](auto& r) { r.DefineString(1), r.SetNULL("na"), r.Convert2Bkgd(1, "NA"); }, true},
       }) {
    EXPECT_EQ(Made(c.set).convertToBackground, c.on) << c.name;
  }
}

TEST(Rules, OnTexts) {
  const auto listed = [](int sensitive) {
    return [sensitive](CStats_Conditioning& rules) {
      rules.DefineString(sensitive);
      rules.AddNULLValue("none");
      rules.AddNULLRange(-1e9, 1e9);
      rules.CapMaximum(1, 0);
    };
  };
  struct Case {
    const char* name;
    Settings set;
    const char* in;
    const char* out;
    int valid;
  };
  for (const Case& c : {
           Case{"an empty text is the default null", listed(0), "", "", 0},
           Case{"a listed text, in any case", listed(0), "None", "", 0},
           Case{"ranges and caps don't apply", listed(0), "5", "5", 1},
           Case{"by case", listed(1), "None", "None", 1},
           Case{"only ASCII letters fold", [](auto& r) { r.SetNULL("\xc3\xa4"); }, "\xc3\x84", "\xc3\x84", 1},
           Case{"to the background", [](auto& r) { r.SetNULL("x"), r.Convert2Bkgd(1, "bg"); }, "X", "bg", 1},
           Case{"undeclared", [](auto& r) { r.AddNULLValue("a"), r.DeclareNULL(0); }, "a", "a", 1},
           Case{"undeclared, to the background",
                [](auto& r) { r.DeclareNULL(0), r.AddNULLValue("a"), r.Convert2Bkgd(1, "bg"); }, "A", "bg", 1},
           Case{"undeclared, the null itself", [](auto& r) { r.DeclareNULL(0), r.Convert2Bkgd(1, "bg"); }, "", "", 1},
       }) {
    SCOPED_TRACE(c.name);
    const auto rules = Made(c.set);
    CString text = c.in;
    EXPECT_EQ(rules.ProcessValue(text), c.valid);
    EXPECT_EQ(text, c.out);
    EXPECT_EQ(rules.ConvertValue(CString(c.in)), c.out);
    EXPECT_EQ(rules.IsNull(CString(c.in), true), 1 - c.valid);
  }
}

// A host that derives decides for both questions.
TEST(Rules, IsNullAsksTheVirtualRules) {
  class CNegativeIsNull : public CStats_Conditioning {
   public:
    using CStats_Conditioning::ProcessValue;
    int ProcessValue(double& value) const override { return value < 0 ? 0 : 1; }
  };
  EXPECT_EQ(CNegativeIsNull().IsNull(-1.0, true), 1);
}

TEST(Rules, EqualityLooksAtWhatTheKindUses) {
  struct Case {
    const char* name;
    Settings change;
    bool empty, numeric, string;  // still equal, for each kind
  };
  for (const Case& c : {
           Case{"null", [](auto& r) { r.SetNULL(-5); }, true, false, true},
           Case{"null by less than 1e-10", [](auto& r) { r.SetNULL(-1e32 * (1 + 1e-11)); }, true, true, true},
           Case{"null text", [](auto& r) { r.SetNULL("x"); }, true, true, false},
           Case{"declared", [](auto& r) { r.DeclareNULL(0); }, true, false, false},
           Case{"list", [](auto& r) { r.AddNULLValue(1); }, true, false, true},
           Case{"list of texts", [](auto& r) { r.AddNULLValue("x"); }, true, true, false},
           Case{"range", [](auto& r) { r.AddNULLRange(1, 2); }, true, false, true},
           Case{"background", [](auto& r) { r.backgroundValue = 1; }, true, false, true},
           Case{"background text", [](auto& r) { r.backgroundString = "x"; }, true, true, false},
           Case{"background on", [](auto& r) { r.convertToBackground = true; }, true, false, false},
           Case{"minimum", [](auto& r) { r.CapMinimum(0, 1); }, true, false, true},
           Case{"maximum on", [](auto& r) { r.CapMaximum(1, 100); }, true, false, true},
           Case{"case", [](auto& r) { r.caseSensitive = true; }, true, true, false},
           Case{"chain", [](auto& r) { r.AddOperator(CStats_Operator::kAgc, "3"); }, false, false, false},
           Case{"chain used", [](auto& r) { r.DefineOperators(1); }, false, false, false},
       }) {
    const bool expected[] = {c.empty, c.numeric, c.string};
    for (const int kind : {CStats_Conditioning::eEmpty, CStats_Conditioning::eNumeric, CStats_Conditioning::eString}) {
      CStats_Conditioning plain;
      plain.kind = kind;
      CStats_Conditioning changed = plain;
      EXPECT_TRUE(changed == plain);
      c.change(changed);
      EXPECT_EQ(changed == plain, expected[kind]) << c.name << ", kind " << kind;
    }
  }
  EXPECT_FALSE(Made([](auto& r) { r.DefineEmpty(); }) == CStats_Conditioning());
  const auto nan = Made([](auto& r) { r.SetNULL(kNan); });
  EXPECT_TRUE(nan == nan);  // NOLINT: identity is equal
  EXPECT_FALSE(nan == CStats_Conditioning(nan));
}

TEST(Rules, TextsAreEqualByTheLeftOperandsCase) {
  const auto upper = Made([](auto& r) { r.DefineString(0), r.SetNULL("NA"), r.AddNULLValue("NONE"); });
  const auto lower = Made([](auto& r) { r.DefineString(0), r.SetNULL("na"), r.AddNULLValue("none"); });
  EXPECT_TRUE(upper == lower);
  const auto strict = Made([](auto& r) { r.DefineString(1), r.SetNULL("NA"), r.AddNULLValue("NONE"); });
  const auto strictLower = Made([](auto& r) { r.DefineString(1), r.SetNULL("na"), r.AddNULLValue("none"); });
  EXPECT_FALSE(strict == strictLower);
}

}  // namespace

}  // namespace tallyscope
