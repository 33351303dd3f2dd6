// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "spatial/ModelVariogram.h"
#include "spatial/NestType.h"

namespace tallyscope {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Nugget 2, sill 10, range 500, unless a type has no such thing.
CModelVariogram Made(int type) {
  const NestShape shape = {.nugget = 2, .sill = 10, .primaryRange = 500};
  switch (type) {
    case 0:
      return CModelVariogram::PureNugget(2);
    case 1:
      return CModelVariogram::Linear({.nugget = 2, .sill = 0.25, .primaryRange = 500});
    case 2:
      return CModelVariogram::Spherical(shape);
    case 3:
      return CModelVariogram::Exponential(shape);
    case 4:
      return CModelVariogram::Gaussian(shape);
    case 5:
      return CModelVariogram::PowerLaw({.nugget = 2, .sill = 3, .primaryRange = 500}, 1.5);
    case 6:
      return CModelVariogram::HoleEffect(shape);
    default:
      return CModelVariogram::DampedHoleEffect(shape, 1000);
  }
}

TEST(ModelVariogram, EachTypeHasItsCurve) {
  struct Case {
    int type;
    double distance;
    double value;
  };
  const double e = std::numbers::e;
  for (const auto& [type, distance, value] : {
           Case{0, 0, 0},    Case{0, 1e-300, 2},
           Case{1, 0, 2},    Case{1, 100, 27},
           Case{2, 0, 2},    Case{2, 250, 8.875},  // 1.5 / 2 - 0.5 / 8
           Case{2, 500, 12}, Case{2, 1e300, 12},
           Case{3, 0, 2},    Case{3, 500 / 3.0, 12 - 10 / e},
           Case{4, 0, 2},    Case{4, 500 / std::sqrt(3.0), 12 - 10 / e},
           Case{5, 0, 2},    Case{5, 4, 26},
           Case{6, 0, 2},    Case{6, 250, 12},
           Case{6, 500, 22}, Case{6, 1000, 2},
           Case{7, 0, 2},    Case{7, 500, 12 + 10 * std::exp(-1.5)},
           Case{8, 100, 0},  Case{-1, 100, 0},
       }) {
    CModelVariogram nest = Made(type);
    nest.type = type;
    EXPECT_NEAR(nest.Evaluate(distance), value, 1e-14 * value) << nest.GetTypeName(type) << " at " << distance;
    EXPECT_EQ(nest.Evaluate(-distance), nest.Evaluate(distance)) << nest.GetTypeName(type);
  }
}

TEST(ModelVariogram, SphericalMeetsItsSillAtEveryRange) {
  for (double range = 1.4; range < 2; range += 0.0007) {
    const auto nest = CModelVariogram::Spherical({.nugget = 0.1, .sill = 0.7, .primaryRange = range});
    EXPECT_EQ(nest.Evaluate(range), 0.1 + 0.7) << range;
  }
}

TEST(ModelVariogram, AnyNumbersAreWithstood) {
  for (int type = 0; type < 8; ++type) {
    for (const double number : {0.0, -1.0, 1e308, kInfinity, std::nan("")}) {
      auto nest = Made(type);
      nest.primaryRange = nest.dampedRange = nest.power = number;
      for (const double distance : {0.0, 1.0, number}) nest.Evaluate(distance);
      EXPECT_FALSE(nest.GetDescription().empty());
    }
  }
  auto spherical = Made(2);
  spherical.primaryRange = 0;
  EXPECT_TRUE(std::isnan(spherical.Evaluate(0)));
  EXPECT_EQ(spherical.Evaluate(1), 12);
}

TEST(ModelVariogram, NamesAndDescriptions) {
  struct Case {
    const char* name;
    const char* description;
  };
  const Case cases[] = {
      {"Pure Nugget", "Nugget = 2"},
      {"Linear", "Slope = 0.25"},
      {"Spherical", "Sill = 10, Range = 500"},
      {"Exponential", "Sill = 10, Range = 500"},
      {"Gaussian", "Sill = 10, Range = 500"},
      {"Power law", "Power = 1.5"},
      {"Hole effect", "Sill = 10, Range = 500"},
      {"Damped hole effect", "Sill = 10, Range = 500, DampRange = 1000"},
  };
  for (int type = 0; type < 8; ++type) {
    EXPECT_EQ(CModelVariogram::GetTypeName(type), cases[type].name);
    EXPECT_EQ(Made(type).GetDescription(), cases[type].description);
    EXPECT_EQ(Made(type).type, type);
  }
  for (const int type : {-1, 8, std::numeric_limits<int>::min()}) EXPECT_EQ(CModelVariogram::GetTypeName(type), "");
  EXPECT_EQ(CModelVariogram::PureNugget(1234.56789).GetDescription(), "Nugget = 1234.5679") << "eight digits";
}

TEST(ModelVariogram, IsotropicWhenTheRangesThatCountAgree) {
  auto nest = CModelVariogram::Spherical({.primaryRange = 1, .minorRange = 1, .depthRange = 2});
  EXPECT_TRUE(nest.IsIsotropic(2));
  EXPECT_FALSE(nest.IsIsotropic(3));
  nest.depthRange = 1;
  EXPECT_TRUE(nest.IsIsotropic(3));
  nest.minorRange = 1 + 0.9e-10;
  EXPECT_TRUE(nest.IsIsotropic(2));
  nest.minorRange = 1 + 1.1e-10;
  EXPECT_FALSE(nest.IsIsotropic(2));
  nest.minorRange = 1 - 1.1e-10;
  EXPECT_FALSE(nest.IsIsotropic(3));
  EXPECT_TRUE(nest.IsIsotropic(1));
  nest.type = 0;
  EXPECT_TRUE(nest.IsIsotropic(3));
}

}  // namespace
}  // namespace tallyscope
