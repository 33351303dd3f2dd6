// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "conditioning/OperatorCatalogue.h"
#include "conditioning/Stats_Conditioning.h"
#include "statistics/bvector.h"

namespace tallyscope {

namespace {

using Op = CStats_Operator;
using Band = std::vector<std::optional<float>>;
constexpr auto kNull = std::nullopt;
constexpr float kBandNull = -1e32f;

struct Step {
  Op::CStats_OperatorType type;
  const char* value;
};

CStats_Conditioning Chain(const std::vector<Step>& steps) {
  CStats_Conditioning rules;
  rules.DefineOperators(1);
  for (const auto& step : steps) rules.AddOperator(step.type, step.value);
  return rules;
}

// The chain over a band in place; every null that comes out holds the band's null value, if any step ran.
Band RunOver(const CStats_Conditioning& rules, const Band& band) {
  std::vector<float> samples;
  bvector nulls(static_cast<int>(band.size()));
  for (const auto& sample : band) {
    nulls.Set(static_cast<int>(samples.size()), !sample);
    samples.push_back(sample.value_or(77.0f));
  }
  EXPECT_EQ(rules.ProcessOperations(samples.data(), &nulls, static_cast<int>(band.size())), 1);
  const bool runs = std::any_of(rules.operators.begin(), rules.operators.end(),
                                [](const Op& step) { return FindOperatorRow(step.GetType()) != nullptr; });
  Band result;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const bool isNull = nulls.Get(static_cast<int>(i));
    if (isNull && runs) {
      EXPECT_EQ(samples[i], kBandNull) << i;
    }
    result.push_back(isNull ? Band::value_type() : Band::value_type(samples[i]));
  }
  return result;
}

float Narrow(double value) {
  return static_cast<float>(value);
}

TEST(Chain, EachOperatorIsSetUpAsItsRowSays) {
  const double tap = std::pow(2, -std::pow(1 / 0.75, 2));  // of a Gaussian of width 3, beside the centre
  const double log25 = std::log10(25.0);
  struct Case {
    Step step;
    Band in, out;
  };
  for (const Case& c : {
           Case{{Op::kFillNull, ""}, {3, kNull}, {3, 3}},
           Case{{Op::kDetrend, ""}, {1, 3, 5, 7}, {0, 0, 0, 0}},
           Case{{Op::kHistogramEqualize, ""}, {5, 5, kNull, 5}, {0, 0, kNull, 0}},
           Case{{Op::kPowerFunction, "2"}, {-3, kNull, 0}, {9, kNull, 0}},
           Case{{Op::kLogFunction, "0"}, {0.5f, 1, -10, kNull}, {0.5f, 1, -2, kNull}},
           Case{{Op::kLogFunction, "25"}, {1, -1, 10}, {Narrow(log25 * 10 / 25), Narrow(log25 * -10 / 25), 2}},
           Case{{Op::kAgc, "1"}, {4, -2, kNull, 0}, {1, -1, kNull, kNull}},
           Case{{Op::kGaussian, "3"}, {1, 2, 4}, {1, Narrow((1 * tap + 2 + 4 * tap) / (tap + 1 + tap)), 4}},
           Case{{Op::kMovingAverage, "3"}, {1, 2, kNull, 4, 5}, {1, 1.5f, kNull, 4.5f, 5}},
           Case{{Op::kMovingAverage, "2147483647"}, {1, 2, 6, 4, 5}, {1, 3, 3.6f, 5, 5}},
           Case{{Op::kAgc, "2147483647"}, {3, -3, kNull}, {1, -1, kNull}},
           Case{{Op::kScale, "-2.5"}, {2, kNull}, {-5, kNull}},
           Case{{Op::kTranslate, "0.5"}, {2, kNull}, {2.5f, kNull}},
           Case{{Op::kHorizontalDifference, "1"}, {1, 2, 6, kNull}, {kNull, 2.5f, kNull, kNull}},
           Case{{Op::kHorizontalDifference, "0"}, {1, 2, 6, 7}, {kNull, 2.5f, 2.5f, kNull}},
           Case{{Op::kHorizontalDifference, "20"},
                {1, 0, 0, 0, 0, 0, 0, 0, 0},
                {kNull, kNull, kNull, kNull, 1, kNull, kNull, kNull, kNull}},
       }) {
    SCOPED_TRACE(Op::GetOperatorName(c.step.type) + " " + c.step.value);
    const Band out = RunOver(Chain({c.step}), c.in);
    ASSERT_EQ(out.size(), c.out.size());
    for (std::size_t i = 0; i < out.size(); ++i) {
      ASSERT_EQ(out[i].has_value(), c.out[i].has_value()) << i;
      if (!out[i]) continue;
      if (c.step.type == Op::kHistogramEqualize) {
        EXPECT_EQ(out[i], out[0]) << "equal samples stay equal";
        EXPECT_TRUE(*out[i] >= 0 && *out[i] <= 1);
      } else if (c.step.type == Op::kDetrend) {
        EXPECT_NEAR(*out[i], *c.out[i], 1e-6) << i;
      } else {
        EXPECT_EQ(*out[i], *c.out[i]) << i;
      }
    }
  }
}

TEST(Chain, ProgressiveTranslatesGrowFromBandToBand) {
  struct Case {
    int band, count;
    float forward, reverse;
  };
  for (const Case& c : {Case{2, 5, 20, 20}, Case{0, 5, 0, 40}, Case{4, 5, 40, 0}, Case{0, 1, 0, 0}}) {
    auto forward = Chain({{Op::kProgressiveTranslate, "10"}});
    auto reverse = Chain({{Op::kProgressiveTranslateReverse, "10"}});
    for (auto* rules : {&forward, &reverse}) {
      rules->operators[0].SetBand(c.band);
      rules->operators[0].SetBandCount(c.count);
    }
    EXPECT_EQ(RunOver(forward, {1, kNull}), (Band{1 + c.forward, kNull}));
    EXPECT_EQ(RunOver(reverse, {1, kNull}), (Band{1 + c.reverse, kNull}));
  }
  auto far = Chain({{Op::kProgressiveTranslate, "1"}, {Op::kProgressiveTranslateReverse, "1"}});
  far.operators[0].SetBand(std::numeric_limits<int>::max());
  far.operators[1].SetBand(std::numeric_limits<int>::max());
  far.operators[1].SetBandCount(std::numeric_limits<int>::min());
  EXPECT_TRUE(std::isfinite(*RunOver(far, {1})[0])) << "bands from outside are any number";
}

TEST(Chain, OperatorsRunInTheirOrder) {
  EXPECT_EQ(RunOver(Chain({{Op::kScale, "2"}, {Op::kTranslate, "1"}}), {3}), (Band{7}));
  EXPECT_EQ(RunOver(Chain({{Op::kTranslate, "1"}, {Op::kScale, "2"}}), {3}), (Band{8}));
  // Two filters in a row, between steps that run in place.
  const auto chain = Chain({{Op::kScale, "2"},
                            {Op::kMovingAverage, "3"},
                            {Op::kHorizontalDifference, "1"},
                            {Op::kTranslate, "1"},
                            {Op::kFillNull, ""}});
  const Band out = RunOver(chain, {1, 2, 6, 4, 5});  // 2 4 12 8 10; 2 6 8 10 10; - 3 2 1 -; - 4 3 2 -
  ASSERT_EQ(out.size(), 5u);
  EXPECT_EQ(out[1], 4);
  EXPECT_EQ(out[2], 3);
  EXPECT_EQ(out[3], 2);
  EXPECT_TRUE(out[0] && out[4]);
}

TEST(Chain, WhatCannotRunPassesTheBandOn) {
  for (const auto& step : {Step{Op::kMovingAverage, "4"}, Step{Op::kGaussian, "0"}, Step{Op::kGaussian, "-3"},
                           Step{static_cast<Op::CStats_OperatorType>(13), ""}, Step{Op::kNone, ""}}) {
    EXPECT_EQ(RunOver(Chain({step}), {1, kNull, 3}), (Band{1, kNull, 3})) << step.type << " " << step.value;
    EXPECT_EQ(RunOver(Chain({{Op::kScale, "2"}, step, {Op::kTranslate, "1"}}), {1, kNull, 3}), (Band{3, kNull, 7}));
  }
}

TEST(Chain, IsLeftAloneUnlessItIsUsed) {
  auto unused = Chain({{Op::kScale, "2"}});
  unused.DefineOperators(0);
  for (const auto& rules : {unused, Chain({})}) {
    float samples[] = {1, 2};
    bvector nulls(2);
    nulls.Set(1, true);
    EXPECT_EQ(rules.ProcessOperations(samples, &nulls, 2), 0);
    EXPECT_EQ(samples[1], 2);
    std::vector<COleVariant> values = {COleVariant(1), COleVariant("x")};
    EXPECT_EQ(rules.ProcessOperations(values), 0);
    EXPECT_EQ(values[0].GetType(), VT_I4);
    EXPECT_EQ(values[1].GetText(), "x");
  }
}

TEST(Chain, TakesShortBands) {
  for (const auto& row : GetOperatorRows()) {
    SCOPED_TRACE(Op::GetOperatorName(row.type));
    const auto chain = Chain({{row.type, row.parameterType == VT_I4 ? "3" : row.preset}});
    float sample = 2;
    bvector none(0);
    EXPECT_EQ(chain.ProcessOperations(&sample, &none, 0), 1);
    EXPECT_EQ(sample, 2) << "nothing to process";
    for (const Band& band : {Band{2}, Band{kNull}, Band{kNull, kNull, kNull}}) {
      const Band out = RunOver(chain, band);
      if (row.type == Op::kFillNull) {
        for (const auto& filled : out) EXPECT_TRUE(filled.has_value());
      } else if (!band[0]) {
        EXPECT_EQ(out, band);
      }
    }
    std::vector<COleVariant> empty;
    EXPECT_EQ(chain.ProcessOperations(empty), 1);
  }
}

TEST(Chain, WithoutAMaskNothingIsNull) {
  float samples[] = {1, 2, 6};
  EXPECT_EQ(Chain({{Op::kMovingAverage, "3"}}).ProcessOperations(samples, nullptr, 3), 1);
  EXPECT_EQ(samples[1], 3);
  EXPECT_EQ(Chain({{Op::kHorizontalDifference, "1"}}).ProcessOperations(samples, nullptr, 3), 1);
  EXPECT_EQ(samples[0], kBandNull);
}

TEST(Chain, VariantsOfAnyTypeComeOutAsNumbersOrNulls) {
  std::vector<COleVariant> values;
  for (const auto type : {VT_I1, VT_I2, VT_I4, VT_UI1, VT_UI2, VT_UI4, VT_INT, VT_UINT}) values.emplace_back(3, type);
  for (const char* text : {" 1.5e1 m", "x"}) values.emplace_back(text);
  values.insert(values.end(), {COleVariant("12", VT_LPSTR), COleVariant(4.5f), COleVariant(0.1), COleVariant(-1e32)});
  const double numbers[] = {3,
                            3,
                            3,
                            3,
                            3,
                            3,
                            3,
                            3,
                            15,
                            0,
                            12,
                            4.5,
                            static_cast<double>(0.1f),
                            static_cast<double>(-1e32f)};  // whether it is null is told by the type alone
  values.insert(values.end(), {COleVariant(), COleVariant::Null(), COleVariant(1, VT_BOOL), COleVariant(1.0, VT_DATE),
                               COleVariant(1, VT_CY), COleVariant(1, VT_ERROR), COleVariant(0, VARTYPE{9999})});
  ASSERT_EQ(Chain({{Op::kScale, "1"}}).ProcessOperations(values), 1);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const bool isNumber = i < std::size(numbers);
    ASSERT_EQ(values[i].GetType(), isNumber ? VT_R8 : VT_NULL) << i;
    EXPECT_TRUE(!isNumber || values[i].GetReal() == numbers[i]) << i;
  }
  std::vector<COleVariant> empty(4);
  ASSERT_EQ(Chain({{Op::kFillNull, ""}}).ProcessOperations(empty), 1);
  for (const auto& value : empty) EXPECT_EQ(value.GetType(), VT_R8) << "filled";
}

// A host that derives can refuse; the numbers have become VT_R8 by then.
TEST(Chain, VariantsGoThroughTheVirtualChain) {
  class CRefusing : public CStats_Conditioning {
   public:
    using CStats_Conditioning::ProcessOperations;
    int ProcessOperations(float*, bvector*, int) const override { return 0; }
  };
  CRefusing rules;
  rules.DefineOperators(1);
  rules.AddOperator(Op::kScale, "2");
  std::vector<COleVariant> values = {COleVariant(3), COleVariant("4"), COleVariant()};
  EXPECT_EQ(rules.ProcessOperations(values), 0);
  EXPECT_TRUE(values[0] == COleVariant(3.0));
  EXPECT_TRUE(values[1] == COleVariant("4"));
  EXPECT_EQ(values[2].GetType(), VT_EMPTY);
}

}  // namespace

}  // namespace tallyscope
