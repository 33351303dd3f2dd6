// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <sstream>

#include <nlohmann/json.hpp>

#include "host/Command.h"
#include "host/OpenTable.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Univariate.h"
#include "tests/host/HostTesting.h"

namespace tallyscope {
namespace {

Answer RunBivariate(const std::vector<CString>& arguments) {
  return RunProgram("bivariate", arguments);
}

nlohmann::json RunJson(const CString& file, const CString& key, const CString& ancillary) {
  const Answer answer = RunBivariate({Example(file), key, ancillary, "--json"});
  EXPECT_EQ(answer.code, kExitDone) << answer.err;
  return nlohmann::json::parse(answer.out);
}

// In examples/: Rscript -e 'options(digits = 15); m <- read.csv("meuse.csv"); with(m, print(c(mean(zinc), mean(lead),
//   cov(zinc, lead), cor(zinc, lead), coef(lm(lead ~ zinc)), coef(lm(zinc ~ lead)))))'
TEST(BivariateCommand, FiguresOfMeuseAreThoseOfR) {
  const auto json = RunJson("meuse.csv", "zinc", "lead");
  EXPECT_EQ(json["key"], "zinc");
  EXPECT_EQ(json["ancillary"], "lead");
  EXPECT_EQ(json["valid"], 155);
  const std::pair<double, double> figures[] = {
      {json["xMean"], 469.716129032258},      {json["yMean"], 153.361290322581},
      {json["covariance"], 39011.2395894428}, {json["correlation"], 0.954691311845083},
      {json["yOnX"][1], 17.3676882672899},    {json["yOnX"][0], 0.289522955780706},
      {json["xOnY"][1], -13.0743429316292},   {json["xOnY"][0], 3.14805953280899},
  };
  for (const auto& [figure, expected] : figures) EXPECT_NEAR(figure, expected, 1e-11 * std::abs(expected));
}

TEST(BivariateCommand, JsonReadsBackToTheSameDoubles) {
  const auto json = RunJson("walker.csv", "V", "U");
  auto opened = OpenTable(Example("walker.csv"), {}, nullptr);
  ASSERT_TRUE(opened.table) << opened.error;
  CStats_Univariate x;
  CStats_Univariate y;
  CStats_Bivariate pair;
  for (auto* field : {&x, &y}) {
    field->Add(opened.table.get(), opened.table->FindDim(field == &x ? "V" : "U"));
    field->Calculate(8, nullptr);
    pair.Add(opened.table.get(), field->GetItemDim(0));
  }
  ASSERT_TRUE(pair.Calculate(15, nullptr));
  EXPECT_EQ(json["total"], 470);
  EXPECT_EQ(json["valid"], 275);
  EXPECT_EQ(json["invalid"], 195);
  EXPECT_EQ(json["xMinimum"], pair.xMinimum);
  EXPECT_EQ(json["yMinimum"], pair.yMinimum);
  EXPECT_EQ(json["xMaximum"], pair.xMaximum);
  EXPECT_EQ(json["yMaximum"], pair.yMaximum);
  EXPECT_EQ(json["inertia"], pair.inertia);
  EXPECT_EQ(json["vertical"], false);
  EXPECT_EQ(json["displayLine"], nlohmann::json(pair.displayLine));
  EXPECT_EQ(json["rankCorrelation"], pair.rankCorrelation);
  EXPECT_EQ(json["expectationX"], nlohmann::json(pair.expectationX));
  EXPECT_EQ(json["expectationYGivenX"], nlohmann::json(pair.expectationYGivenX));
  EXPECT_EQ(json["expectationXGivenY"], nlohmann::json(pair.expectationXGivenY));
  EXPECT_EQ(json["expectationY"], nlohmann::json(pair.expectationY));
  ASSERT_EQ(json["qq"].size(), 19u);
  EXPECT_EQ(json["qq"][9][0], x.binnedMedian) << "50 %";
  EXPECT_EQ(json["qq"][14][1], y.binnedUpperQuartile) << "75 %";
}

TEST(BivariateCommand, AxesAreFieldsToo) {
  EXPECT_EQ(RunJson("meuse.csv", "x", "zinc")["valid"], 155);
  const auto same = RunJson("quakes.csv", "depth", "depth");
  EXPECT_EQ(same["inertia"], 0);
}

TEST(BivariateCommand, TextShowsEveryFigure) {
  const Answer answer = RunBivariate({Example("jura.csv"), "Ni", "Cr"});
  EXPECT_EQ(answer.code, kExitDone);
  for (const char* words : {"259 stations of 259", "Covariance", "0.6926", "Rank correlation", "Moment of inertia",
                            "Cr = 0.92", "Conditional expectation", "Quantiles", "95 %"}) {
    EXPECT_NE(answer.out.find(words), CString::npos) << words << "\n" << answer.out;
  }
}

TEST(BivariateCommand, RefusalsAreOneSentence) {
  struct Case {
    std::vector<CString> arguments;
    const char* words;
  };
  for (const Case& c : {Case{{Example("meuse.csv"), "zinc", "leed"}, "no field leed"},
                        Case{{Example("meuse.csv"), "Zinc", "lead"}, "no field Zinc"},
                        Case{{Example("none.csv"), "zinc", "lead"}, "none.csv"}}) {
    const Answer answer = RunBivariate(c.arguments);
    EXPECT_EQ(answer.code, kExitBadInput);
    EXPECT_TRUE(answer.out.empty());
    EXPECT_NE(answer.err.find(c.words), CString::npos) << answer.err;
    EXPECT_EQ(answer.err.find('\n'), answer.err.size() - 1) << answer.err;
  }
}

}  // namespace
}  // namespace tallyscope
