// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "BandTesting.h"
#include "bands/DSPFillNull.h"

namespace tallyscope {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

template <class Surface>
std::vector<double> MakePlane(int columns, int rows, Surface surface) {
  std::vector<double> values;
  for (int j = 0; j < rows; ++j) {
    for (int i = 0; i < columns; ++i) values.push_back(surface(i, j));
  }
  return values;
}

// The sum of squared second differences of a plane.
double Roughness(const std::vector<float>& z, int columns, int rows) {
  const auto at = [&](int i, int j) { return static_cast<double>(z[static_cast<std::size_t>(j * columns + i)]); };
  double sum = 0;
  for (int j = 0; j < rows; ++j) {
    for (int i = 0; i < columns; ++i) {
      if (i > 0 && i + 1 < columns) sum += std::pow(at(i - 1, j) - 2 * at(i, j) + at(i + 1, j), 2);
      if (j > 0 && j + 1 < rows) sum += std::pow(at(i, j - 1) - 2 * at(i, j) + at(i, j + 1), 2);
      if (i + 1 < columns && j + 1 < rows) {
        sum += 2 * std::pow(at(i, j) - at(i + 1, j) - at(i, j + 1) + at(i + 1, j + 1), 2);
      }
    }
  }
  return sum;
}

TEST(DSPPlaneFill, APlaneIsContinued) {
  TestBand band(MakePlane(12, 8, [](int i, int j) { return (i * j) % 5 == 1 ? kNan : 4 + 3 * i - 2 * j; }));
  CDSPFillNull fill;
  fill.pinEnds = false;
  ASSERT_TRUE(RunInPlace(band, {&fill}, 12, 8));
  for (int k = 0; k < 96; ++k)
    EXPECT_NEAR(band.samples[static_cast<std::size_t>(k)], 4 + 3 * (k % 12) - 2 * (k / 12), 1e-4);
  EXPECT_EQ(band.nulls.Count(), 0);
}

// No small move of any filled sample makes the surface much smoother: it is near the smoothest one.
TEST(DSPPlaneFill, TheSurfaceIsTheSmoothest) {
  for (const bool enlarge : {false, true}) {
    const auto surface = [](int i, int j) { return 20 * std::sin(i * 0.35) * std::cos(j * 0.3) + i; };
    TestBand band(MakePlane(24, 18, [&](int i, int j) {
      return (i > 7 && i < 14 && j > 5 && j < 11) || (i * 7 + j * 3) % 10 == 0 ? kNan : surface(i, j);
    }));
    const TestBand before = band;
    CDSPFillNull fill;
    fill.pinEnds = false;
    fill.enlarge = enlarge;
    fill.convergence = 1e-7;
    fill.iterations = 10000;
    ASSERT_TRUE(RunInPlace(band, {&fill}, 24, 18));
    const double least = Roughness(band.samples, 24, 18);
    for (int k = 0; k < 24 * 18; ++k) {
      const auto at = static_cast<std::size_t>(k);
      if (!before.nulls.Get(k)) {
        ASSERT_EQ(band.samples[at], before.samples[at]);
        continue;
      }
      EXPECT_NEAR(band.samples[at], surface(k % 24, k / 24), 4) << k;
      for (const float move : {-0.02f, 0.02f}) {
        auto moved = band.samples;
        moved[at] += move;
        EXPECT_GT(Roughness(moved, 24, 18), least) << k << (enlarge ? " enlarged" : "");
      }
    }
  }
}

TEST(DSPPlaneFill, PinnedEdges) {
  // A chequerboard about 10 has no slope; all the edges are null and lie on its trend.
  TestBand band(MakePlane(10, 10, [](int i, int j) {
    const bool edge = i == 0 || j == 0 || i == 9 || j == 9;
    return edge ? kNan : (i + j) % 2 == 0 ? 11.0 : 9.0;
  }));
  CDSPFillNull fill;
  ASSERT_TRUE(RunInPlace(band, {&fill}, 10, 10));
  for (std::size_t i = 0; i < 10; ++i) {
    EXPECT_NEAR(band.samples[i], 10, 1e-5);
    EXPECT_NEAR(band.samples[10 * i], 10, 1e-5);
  }
}

TEST(DSPPlaneFill, DegeneratePlanes) {
  const struct {
    int columns, rows, valid;
  } shapes[] = {{1, 1, 0}, {1, 1, 1}, {2, 2, 1}, {5, 1, 2}, {1, 7, 3}, {3, 3, 0}, {13, 7, 1}, {64, 64, 2}};
  for (const auto& shape : shapes) {
    for (const bool enlarge : {false, true}) {
      auto values = MakePlane(shape.columns, shape.rows, [](int, int) { return kNan; });
      for (int k = 0; k < shape.valid; ++k) values[static_cast<std::size_t>(k)] = 6;
      TestBand band(values);
      CDSPFillNull fill;
      fill.axes = 3;
      fill.enlarge = enlarge;
      EXPECT_TRUE(RunInPlace(band, {&fill}, shape.columns, shape.rows));
      EXPECT_EQ(band.nulls.Count(), 0);
      for (const float z : band.samples) EXPECT_NEAR(z, shape.valid > 0 ? 6 : 0, 1e-5);
    }
  }
}

// A cube is filled plane by plane, along x and y; planes along other axes are those of the cube turned.
TEST(DSPPlaneFill, CubesAndOtherAxes) {
  const auto value = [](int i, int j, int k) { return (i + 2 * j + 3 * k) % 5 == 0 ? kNan : i * i - j * k + 7.5; };
  std::vector<double> cube;
  for (int k = 0; k < 4; ++k) {
    const auto plane = MakePlane(6, 5, [&](int i, int j) { return value(i, j, k); });
    cube.insert(cube.end(), plane.begin(), plane.end());
  }
  TestBand solid(cube);
  CDSPFillNull fill;
  fill.dimension = 3;
  ASSERT_TRUE(RunInPlace(solid, {&fill}, 6, 5, 4));
  for (int k = 0; k < 4; ++k) {
    TestBand plane(MakePlane(6, 5, [&](int i, int j) { return value(i, j, k); }));
    CDSPFillNull single;
    RunInPlace(plane, {&single}, 6, 5);
    for (std::size_t at = 0; at < 30; ++at)
      EXPECT_EQ(solid.samples[static_cast<std::size_t>(k) * 30 + at], plane.samples[at]);
  }
  TestBand turned(cube);
  CDSPFillNull across;
  across.axes = 6;
  ASSERT_TRUE(RunInPlace(turned, {&across}, 6, 5, 4));
  for (int i = 0; i < 6; ++i) {
    TestBand plane(MakePlane(5, 4, [&](int j, int k) { return value(i, j, k); }));
    CDSPFillNull single;
    RunInPlace(plane, {&single}, 5, 4);
    for (int at = 0; at < 20; ++at) {
      EXPECT_EQ(turned.samples[static_cast<std::size_t>(at * 6 + i)], plane.samples[static_cast<std::size_t>(at)]);
    }
  }
}

}  // namespace
}  // namespace tallyscope
