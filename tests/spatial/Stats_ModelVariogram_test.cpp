// SPDX-License-Identifier: MIT
#include "spatial/Stats_ModelVariogram.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "spatial/Stats_VariogramData.h"

namespace tallyscope {
namespace {

CStats_ModelVariogram MakeModel(double nugget, std::vector<CModelVariogram> nests, int dimension) {
  CStats_ModelVariogram model;
  model.SetIsotropicNugget(nugget);
  model.nests = std::move(nests);
  model.Update(dimension);
  return model;
}

// A curve that is the distance itself, so that a model of it shows the transform.
CStats_ModelVariogram MakeRuler(const NestShape& shape, int dimension) {
  NestShape unit = shape;
  unit.sill = 1;
  return MakeModel(0, {CModelVariogram::Linear(unit)}, dimension);
}

Point3 Along(double bearing, double dip) {
  const double radians = std::numbers::pi / 180;
  return {std::sin(bearing * radians) * std::cos(dip * radians), std::cos(bearing * radians) * std::cos(dip * radians),
          -std::sin(dip * radians)};
}

TEST(Stats_ModelVariogram, EqualRangesMakeARotation) {
  const auto model =
      MakeRuler({.primaryRange = 80, .minorRange = 80, .depthRange = 80, .strike = 37, .plunge = -21, .dip = 140}, 3);
  const auto& m = model.transforms.front();
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      const double product = m[i][0] * m[j][0] + m[i][1] * m[j][1] + m[i][2] * m[j][2];
      EXPECT_NEAR(product, i == j ? 1 : 0, 1e-15) << i << ", " << j;
    }
  }
  EXPECT_NEAR(model.GetVariogram({1, 2, 3}, {4, -2, 15}), 13, 1e-13);
}

// Along the principal axis distances count as they are; across it they count as much more as the ranges are shorter.
TEST(Stats_ModelVariogram, AxesLieWhereTheAnglesSay) {
  struct Case {
    const char* what;
    double strike, plunge, dip;
    Point3 primary, minor, depth;
  };
  const Case cases[] = {
      {"north", 0, 0, 0, {0, 1, 0}, {1, 0, 0}, {0, 0, 1}},
      {"east", 90, 0, 0, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
      {"north-east", 45, 0, 0, Along(45, 0), Along(135, 0), {0, 0, 1}},
      {"down", 0, 90, 0, {0, 0, -1}, {1, 0, 0}, {0, 1, 0}},
      {"plunging south", 180, 30, 0, Along(180, 30), {1, 0, 0}, Along(0, 60)},
      {"rolled over", 0, 0, 90, {0, 1, 0}, {0, 0, 1}, {1, 0, 0}},
      {"the right-hand side rolled down", 0, 0, 45, {0, 1, 0}, Along(90, 45), Along(90, -45)},
  };
  for (const auto& c : cases) {
    const auto model = MakeRuler(
        {.primaryRange = 100, .minorRange = 50, .depthRange = 10, .strike = c.strike, .plunge = c.plunge, .dip = c.dip},
        3);
    const Point3 origin{};
    EXPECT_NEAR(model.GetVariogram(origin, c.primary), 1, 1e-14) << c.what;
    EXPECT_NEAR(model.GetVariogram(origin, c.minor), 2, 1e-14) << c.what;
    EXPECT_NEAR(model.GetVariogram(origin, c.depth), 10, 1e-13) << c.what;
    EXPECT_NEAR(model.GetVariogram(c.strike, c.plunge, 7), 7, 1e-13) << c.what;
  }
}

// gstat's ranges are not practical ones: a third of ours for "Exp", 1 / sqrt(3) for "Gau". For each case
//   Rscript -e 'library(gstat); options(digits = 15); variogramLine(vgm(10, "Sph", 500, nugget = 2, anis = c(30, 0.5)),
//     dist_vector = c(60, 250, 400), dir = c(sin(b * pi / 180), cos(b * pi / 180), 0))$gamma'
TEST(Stats_ModelVariogram, AgreesWithGstat) {
  struct Case {
    CModelVariogram nest;
    double bearing;
    double gamma[3];
  };
  const NestShape shape = {.sill = 10, .primaryRange = 500, .minorRange = 250, .strike = 30};
  const NestShape narrow = {.sill = 10, .primaryRange = 500, .minorRange = 125, .strike = 75};
  for (const auto& [nest, bearing, gamma] :
       {Case{CModelVariogram::Spherical(shape), 0, {4.36117430004648, 10.47467216825377, 12}},
        Case{CModelVariogram::Spherical(shape), 120, {5.53088, 12, 12}},
        Case{CModelVariogram::Exponential(narrow), 10, {9.3123595550786, 11.9580839966473, 11.9984303320663}},
        Case{CModelVariogram::Gaussian(narrow), 250, {2.46982762643504, 7.66323489061380, 10.82200158895549}}}) {
    const auto model = MakeModel(2, {nest}, 2);
    const double distances[] = {60, 250, 400};
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_NEAR(model.GetVariogram(bearing, 0, distances[i]), gamma[i], 1e-13 * gamma[i]) << bearing;
    }
  }
}

TEST(Stats_ModelVariogram, AnAxisWithoutARangeIsFarAway) {
  const auto model = MakeModel(1, {CModelVariogram::Spherical({.sill = 10, .primaryRange = 1000})}, 2);
  EXPECT_EQ(model.GetVariogram(90, 0, 1e-3), 11) << "across";
  EXPECT_NEAR(model.GetVariogram(0, 0, 500), 1 + 6.875, 1e-5) << "along, where the rounding of the bearing counts";
  const auto ratios = MakeRuler({.primaryRange = 0, .minorRange = 4, .depthRange = 0.5}, 3);
  EXPECT_NEAR(ratios.GetVariogram({}, {8, 0, 0}), 2, 1e-15)
      << "without a principal range the others scale by themselves";
  EXPECT_NEAR(ratios.GetVariogram({}, {0, 0, 8}), 16, 1e-15);
}

TEST(Stats_ModelVariogram, TotalsCountANestsNuggetTwice) {
  auto model = MakeModel(2,
                         {CModelVariogram::Spherical({.nugget = 0.5, .sill = 10, .primaryRange = 500}),
                          CModelVariogram::Linear({.nugget = 0.25, .sill = 0.125, .primaryRange = 1000}),
                          CModelVariogram::PowerLaw({.sill = 3, .primaryRange = 4}, 1.5)},
                         2);
  EXPECT_EQ(model.totalNugget, 2.75);
  EXPECT_EQ(model.totalSill, 2.75 + 0.5 + 10 + 0.25 + 125 + 24);
  for (const auto& nest : model.nests) EXPECT_EQ(nest.totalSill, model.totalSill);

  model.AddNest().nugget = 1;
  EXPECT_TRUE(std::isfinite(model.GetVariogram({}, {1, 0, 0}))) << "a nest before its Update";
  model.Update(3);
  EXPECT_EQ(model.totalNugget, 3.75);
  EXPECT_EQ(model.transforms.size(), 4u);
  EXPECT_EQ(model.dimension, 3);
  model.Reset();
  EXPECT_TRUE(model.IsEmpty());
  model.Update(2);
  EXPECT_EQ(model.totalSill, 0);
  EXPECT_TRUE(model.transforms.empty());
}

TEST(Stats_ModelVariogram, EqualPointsGiveTheTotals) {
  const auto model = MakeModel(
      2, {CModelVariogram::Spherical({.nugget = 0.5, .sill = 10, .primaryRange = 500, .minorRange = 500})}, 2);
  EXPECT_EQ(model.GetVariogram({5, 5, 5}, {5, 5, 5}), 2.5);
  EXPECT_EQ(model.GetCovariance({5, 5, 5}, {5, 5, 5 + 0.9e-10}), 13);
  EXPECT_NEAR(model.GetVariogram(0, 0, 1e-9), 2.5, 1e-9);
  EXPECT_NEAR(model.GetCovariance(0, 0, 250), 10 - 6.875, 1e-13) << "the nuggets cancel";
  EXPECT_EQ(model.GetCovariance(0, 0, 501), 0);

  const auto empty = MakeModel(3, {}, 2);
  EXPECT_EQ(empty.GetVariogram(0, 0, 10), 3);
  EXPECT_EQ(empty.GetCovariance(0, 0, 10), 0);
}

TEST(Stats_ModelVariogram, OnlyNestsOfTheListHaveAShape) {
  const auto model =
      MakeModel(0, {CModelVariogram::Spherical({.primaryRange = 5, .minorRange = 5, .depthRange = 1})}, 2);
  EXPECT_TRUE(model.IsNestIsotropic(0));
  EXPECT_TRUE(model.IsNestIsotropic(-1));
  EXPECT_TRUE(model.IsNestIsotropic(1));
  EXPECT_FALSE(MakeModel(0, model.nests, 3).IsNestIsotropic(0));
}

TEST(Stats_ModelVariogram, DirectionalCurve) {
  const auto model = MakeModel(
      2,
      {CModelVariogram::Exponential(
          {.sill = 10, .primaryRange = 300, .minorRange = 100, .depthRange = 50, .strike = 30, .plunge = 10})},
      3);
  CStats_VariogramData curve;
  model.GetDirectionalData(curve, 30, 10, 1000);
  ASSERT_EQ(curve.GetSize(), 51);
  EXPECT_EQ(curve.pairCount[0], 1);
  EXPECT_EQ(curve.lag[0], 0);
  EXPECT_EQ(curve.momentOfInertia[0], 2);
  EXPECT_EQ(curve.covariance[0], 12);
  for (std::size_t i = 1; i <= 50; ++i) {
    const double lag = 20.0 * static_cast<double>(i) - 10;
    EXPECT_EQ(curve.pairCount[i], 0);
    EXPECT_DOUBLE_EQ(curve.lag[i], lag);
    EXPECT_NEAR(curve.momentOfInertia[i], 12 - 10 * std::exp(-lag / 100), 1e-12);
    EXPECT_NEAR(curve.covariance[i], 10 * std::exp(-lag / 100), 1e-12);
  }
}

// The mean over directions, once more by points instead of angles.
TEST(Stats_ModelVariogram, AveragedCurve) {
  const NestShape shape = {
      .sill = 10, .primaryRange = 300, .minorRange = 100, .depthRange = 50, .strike = 20, .plunge = 5, .dip = 60};
  CStats_VariogramData curve;
  for (const int dimension : {2, 3}) {
    const auto model = MakeModel(2, {CModelVariogram::Gaussian(shape), CModelVariogram::PureNugget(1)}, dimension);
    model.GetAveragedData(curve, 25, 500);
    ASSERT_EQ(curve.GetSize(), 26);
    EXPECT_EQ(curve.momentOfInertia[0], 3);
    for (std::size_t i = 1; i <= 25; ++i) {
      double sum = 0;
      int directions = 0;
      const int step = dimension == 2 ? 5 : 10;
      for (int bearing = 0; bearing < 360; bearing += step) {
        for (int dip = dimension == 2 ? 0 : -80; dip <= (dimension == 2 ? 0 : 90); dip += 10, ++directions) {
          Point3 p = Along(bearing, dip);
          for (auto& x : p) x *= curve.lag[i];
          sum += model.GetVariogram({}, p);
        }
      }
      EXPECT_EQ(directions, dimension == 2 ? 72 : 648);
      EXPECT_NEAR(curve.momentOfInertia[i], sum / directions, 1e-13 * sum);
      EXPECT_NEAR(curve.covariance[i], 13 - curve.momentOfInertia[i], 1e-12);
    }
  }
  MakeModel(2, {CModelVariogram::Gaussian(shape)}, 1).GetAveragedData(curve, 3, 500);
  EXPECT_EQ(curve.momentOfInertia, (std::vector<double>{2, 0, 0, 0}));
  EXPECT_EQ(curve.lag, (std::vector<double>{0, 0, 0, 0}));
  for (const int count : {0, -7}) {
    MakeModel(2, {}, 2).GetAveragedData(curve, count, 500);
    EXPECT_EQ(curve.GetSize(), 1);
  }
}

}  // namespace
}  // namespace tallyscope
