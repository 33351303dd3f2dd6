// SPDX-License-Identifier: MIT
#include "spatial/ModelVariogramFile.h"

#include <gtest/gtest.h>

#include <cmath>

#include "spatial/NestType.h"
#include "spatial/Stats_ModelVariogram.h"
#include "tests/support/Scratch.h"

namespace tallyscope {
namespace {

CStats_ModelVariogram Load(const std::string& text) {
  const CScratch scratch;
  CStats_ModelVariogram model;
  model.SetIsotropicNugget(77);
  model.AddNest();
  CString error;
  EXPECT_TRUE(LoadFromFile(model, scratch.Write("model.mvf", text), error)) << error;
  EXPECT_EQ(model.transforms.size(), model.nests.size());
  return model;
}

TEST(ModelVariogramFile, TextOfAModel) {
  CStats_ModelVariogram model;
  model.SetIsotropicNugget(2);
  model.AddNest() = CModelVariogram::Spherical({.sill = 10, .primaryRange = 500, .minorRange = 250.5, .strike = 30});
  model.AddNest() = CModelVariogram::Linear({.nugget = 0.1, .sill = 1.0 / 3, .primaryRange = 1e10});
  model.AddNest() = CModelVariogram::PowerLaw({.sill = 3e-7, .depthRange = 5, .plunge = -12.5}, 1.5);
  model.AddNest() = CModelVariogram::DampedHoleEffect({.sill = 4, .primaryRange = 60, .dip = 0.25}, 123456789012.0);
  model.AddNest() = CModelVariogram::PureNugget(0.5);
  EXPECT_EQ(FormatModel(model),
            "! Qorvane Tallyscope - Model Variogram\n"
            "\n"
            "Model Begin\n"
            "\tIsotropicNugget = 2\n"
            "\tNest Begin\n"
            "\t\tType = \"Spherical\"\n"
            "\t\tNugget = 0\n"
            "\t\tPositiveVariance = 10\n"
            "\t\tPrimaryRange = 500\n"
            "\t\tMinorRange = 250.5\n"
            "\t\tDepthRange = 0\n"
            "\t\tStrike = 30\n"
            "\t\tPlunge = 0\n"
            "\t\tDip = 0\n"
            "\tNest End\n"
            "\tNest Begin\n"
            "\t\tType = \"Linear\"\n"
            "\t\tNugget = 0.1\n"
            "\t\tSlope = 0.3333333333\n"
            "\t\tPrimaryRange = 1e+10\n"
            "\t\tMinorRange = 0\n"
            "\t\tDepthRange = 0\n"
            "\t\tStrike = 0\n"
            "\t\tPlunge = 0\n"
            "\t\tDip = 0\n"
            "\tNest End\n"
            "\tNest Begin\n"
            "\t\tType = \"Power law\"\n"
            "\t\tNugget = 0\n"
            "\t\tPositiveVariance = 3e-07\n"
            "\t\tPower = 1.5\n"
            "\t\tPrimaryRange = 1\n"
            "\t\tMinorRange = 0\n"
            "\t\tDepthRange = 5\n"
            "\t\tStrike = 0\n"
            "\t\tPlunge = -12.5\n"
            "\t\tDip = 0\n"
            "\tNest End\n"
            "\tNest Begin\n"
            "\t\tType = \"Damped hole effect\"\n"
            "\t\tNugget = 0\n"
            "\t\tPositiveVariance = 4\n"
            "\t\tDampedRange = 1.23456789e+11\n"
            "\t\tPrimaryRange = 60\n"
            "\t\tMinorRange = 0\n"
            "\t\tDepthRange = 0\n"
            "\t\tStrike = 0\n"
            "\t\tPlunge = 0\n"
            "\t\tDip = 0.25\n"
            "\tNest End\n"
            "\tNest Begin\n"
            "\t\tType = \"Pure Nugget\"\n"
            "\t\tNugget = 0.5\n"
            "\t\tPositiveVariance = 0\n"
            "\t\tPrimaryRange = 1\n"
            "\t\tMinorRange = 0\n"
            "\t\tDepthRange = 0\n"
            "\t\tStrike = 0\n"
            "\t\tPlunge = 0\n"
            "\t\tDip = 0\n"
            "\tNest End\n"
            "Model End\n");
}

TEST(ModelVariogramFile, WhatIsWrittenIsReadToTenDigits) {
  constexpr double CModelVariogram::*kMembers[] = {&CModelVariogram::nugget,       &CModelVariogram::sill,
                                                   &CModelVariogram::primaryRange, &CModelVariogram::minorRange,
                                                   &CModelVariogram::depthRange,   &CModelVariogram::strike,
                                                   &CModelVariogram::plunge,       &CModelVariogram::dip};
  CStats_ModelVariogram model;
  model.SetIsotropicNugget(std::sqrt(2.0));
  for (int type = 0; type < static_cast<int>(GetNestTypes().size()); ++type) {
    auto& nest = model.AddNest();
    nest.type = type;
    double value = 1e-3 / 7;
    for (const auto member : kMembers) nest.*member = value *= -11.3;
    if (type == 5) nest.power = 1.0 / 3;
    if (type == 7) nest.dampedRange = 1e20 / 3;
  }
  const CScratch scratch;
  CString error;
  const Status saved = SaveToFile(model, scratch.Path("model.mvf"));
  ASSERT_TRUE(saved.IsGood()) << saved.GetError();
  EXPECT_EQ(scratch.List(), std::vector<std::string>{"model.mvf"});
  CStats_ModelVariogram again;
  ASSERT_TRUE(LoadFromFile(again, scratch.Path("model.mvf"), error)) << error;
  const auto expectNear = [](double a, double b) { EXPECT_NEAR(a, b, 5e-10 * std::abs(b)); };
  expectNear(again.isotropicNugget.nugget, model.isotropicNugget.nugget);
  ASSERT_EQ(again.nests.size(), model.nests.size());
  for (std::size_t i = 0; i < model.nests.size(); ++i) {
    EXPECT_EQ(again.nests[i].type, model.nests[i].type);
    for (const auto member : kMembers) expectNear(again.nests[i].*member, model.nests[i].*member);
    expectNear(again.nests[i].power, model.nests[i].power);
    expectNear(again.nests[i].dampedRange, model.nests[i].dampedRange);
  }
  EXPECT_EQ(FormatModel(again), FormatModel(model));
}

TEST(ModelVariogramFile, SpellingsThatMeanTheSame) {
  const std::string written = FormatModel(Load("Nest Begin\nType = \"Linear\"\nSlope = 2.5\nStrike = 40\n"));
  for (const char* text : {
           "NEST begin\ntype linear\nslope 2.5\nSTRIKE=40",
           "Nest\tBegin\r\nType = 'LINEAR'\r\nPositiveVariance = 2.5\r\nAzimuth = 40\r\n",
           "\"Nest\" \"Begin\"\n\"Type\" Linear\n'Slope' = 2.5e0 ! per metre\n  Strike ==== 40deg",
           "# a note\n* another\n\nNest Begin\nType = Linear\nType = Cubic\nSlope = 2.5\nStrike = 1\nStrike = 40\nNest "
           "End",
       }) {
    EXPECT_EQ(FormatModel(Load(text)), written) << text;
  }
}

TEST(ModelVariogramFile, LinesThatSayNothingAreSkipped) {
  const auto isDefault = [](const CModelVariogram& nest) {
    return nest.type == 0 && nest.nugget == 0 && nest.sill == 0 && nest.primaryRange == 1 && nest.power == 2;
  };
  for (const char* text : {"", "\n\n", "Model Begin\nModel End\n", "Sill = 5\nNugget = 3\nType = Spherical\nSlope = 1",
                           "Nest\nNest End\nNest \"\"", "IsotropicNugget", "IsotropicNugget = \"5\"", "! Nest Begin",
                           "IsotropicNugget = ! 5", "IsotropicNugget, , 5"}) {
    const auto model = Load(text);
    EXPECT_TRUE(model.IsEmpty()) << text;
  }
  for (const char* text :
       {"Type", "Type = Cubic", "Type = Pure Spherical", "Nugget", "Nugget = \"3\"", "Nugget = '3'",
        "Nugget = ", "Nugget | | 3", "Sill = 3", "\"\" = 3", "=", "\"PositiveVariance", "Nuggets = 3"}) {
    const auto model = Load(CString("Nest Begin\n") + text + "\n");
    ASSERT_EQ(model.nests.size(), 1u) << text;
    EXPECT_TRUE(isDefault(model.nests.front())) << text;
  }
  const auto words = Load("IsotropicNugget = 5\nIsotropicNugget = many\nNest Begin\nPower = none\nDip = nan");
  EXPECT_EQ(words.isotropicNugget.nugget, 0) << "a word reads as 0, and the last line wins";
  EXPECT_EQ(words.nests.front().power, 0);
  EXPECT_TRUE(std::isnan(words.nests.front().dip));
}

TEST(ModelVariogramFile, TellsItsFirstOddLine) {
  const CScratch scratch;
  struct Row {
    const char* text;
    int good;
    int odd;
    const char* oddText;
  };
  for (const Row& row : {
           Row{"", 0, 0, ""},
           Row{"! a comment\n\n  # another\n", 0, 0, ""},
           Row{"x,y,zinc\n1,2,3\n", 0, 1, "x,y,zinc"},
           Row{"\n\nDip,Strike\n3,4\n", 0, 3, "Dip,Strike"},
           Row{"Model Begin\nIsotropicNugget = 2\nNest Begin\n\tDip = 3\nNest End\nModel End\n", 6, 0, ""},
           Row{"Nest Begin\nType = Cubic\nSill = 3\n", 1, 2, "Type = Cubic"},
           Row{"Nest Begin\r\nNugget\r\n", 1, 2, "Nugget"},
           Row{"Model Begin\nIsotropicNugget = '2'", 1, 2, "IsotropicNugget = '2'"},
       }) {
    CStats_ModelVariogram model;
    ModelFileLines lines;
    CString error;
    ASSERT_TRUE(LoadFromFile(model, scratch.Write("model.mvf", row.text), lines, error)) << error;
    EXPECT_EQ(lines.good, row.good) << row.text;
    EXPECT_EQ(lines.firstOdd, row.odd) << row.text;
    EXPECT_EQ(lines.oddText, row.oddText) << row.text;
  }
}

// The system lets this file be opened, but not read.
TEST(ModelVariogramFile, AReadErrorIsNoEmptyModel) {
  CStats_ModelVariogram model;
  model.SetIsotropicNugget(5);
  model.AddNest();
  CString error;
  EXPECT_FALSE(LoadFromFile(model, "/proc/self/mem", error));
  EXPECT_TRUE(error.starts_with("An error occurred reading from the file \"/proc/self/mem\".\n")) << error;
  EXPECT_EQ(model.isotropicNugget.nugget, 5);
  EXPECT_EQ(model.nests.size(), 1u);
}

TEST(ModelVariogramFile, AFileThatDoesNotOpenChangesNothing) {
  const CScratch scratch;
  CStats_ModelVariogram model;
  model.SetIsotropicNugget(5);
  CString error;
  EXPECT_FALSE(LoadFromFile(model, scratch.Path("none.mvf"), error));
  EXPECT_EQ(error, "An error occurred reading from the file \"" +
                       std::filesystem::absolute(scratch.Path("none.mvf")).string() + "\".\nThe file does not exist.");
  EXPECT_EQ(model.isotropicNugget.nugget, 5);

  const auto kept = scratch.Write("kept", "old");
  EXPECT_TRUE(SaveToFile(model, kept + "/model.mvf").GetError().starts_with("An error occurred writing to the file"));
  EXPECT_EQ(ReadAll(kept), "old");
}

}  // namespace
}  // namespace tallyscope
