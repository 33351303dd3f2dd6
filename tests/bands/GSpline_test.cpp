// SPDX-License-Identifier: MIT
#include "bands/GSpline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tallyscope {
namespace {

using Points = CGSpline::Points;

struct Curve {
  Points points;
  Points output;
  std::vector<int> places;
  CGSpline spline;

  explicit Curve(Points given) : points(std::move(given)) {
    spline.SetArray(CGSpline::kControlPoints, &points);
    spline.SetArray(CGSpline::kOutput, &output);
    spline.SetIndexList(&places);
  }
};

TEST(GSpline, OnePointForEachStepOfX) {
  Curve curve({{-2, 1, 0}, {-1, 4, 0}, {0, 2, 0}, {5, 9, 0}, {6, 7, 0}, {7, 7, 0}});
  curve.spline.SetMeasure(1);
  curve.spline.SetClosure(CGSpline::kOpen);
  curve.spline.SetSampling(CGSpline::kByStep);
  curve.spline.SetStep(1);
  curve.spline.SetTolerance(1e-7);
  ASSERT_EQ(curve.spline.Compute(), 10);
  for (std::size_t i = 0; i < 10; ++i) EXPECT_EQ(curve.output[i][0], static_cast<double>(i) - 2);
  EXPECT_EQ(curve.places, (std::vector<int>{0, 1, 2, 7, 8, 9}));
  // Slopes 3, -2, 1.4, -2, 0 about the segment from 0 to 5.
  const double before = (3.4 * -2 + 5 * 1.4) / 8.4;
  const double behind = (3.4 * -2 + 2 * 1.4) / 5.4;
  const auto at = [&](double u) {
    return 2 + u * before + (3 * 1.4 - 2 * before - behind) * u * u / 5 + (before + behind - 2 * 1.4) * u * u * u / 25;
  };
  for (int u = 1; u < 5; ++u) EXPECT_NEAR(curve.output[static_cast<std::size_t>(2 + u)][1], at(u), 1e-13);
}

TEST(GSpline, StraightAndFlat) {
  Curve line({{0, 0, 0}, {1, 2, -1}, {2, 4, -2}, {3, 6, -3}, {4, 8, -4}});
  line.spline.SetClosure(CGSpline::kOpen);
  ASSERT_EQ(line.spline.Compute(), 41);
  for (const Point3& p : line.output) {
    EXPECT_NEAR(p[1], 2 * p[0], 1e-12);
    EXPECT_NEAR(p[2], -p[0], 1e-12);
  }
  Curve flat({{0, 3, 0}, {1, 3, 0}, {4, 3, 0}});
  ASSERT_GT(flat.spline.Compute(), 3);
  for (const Point3& p : flat.output) EXPECT_EQ(p[1], 3);
}

TEST(GSpline, Samplings) {
  Curve curve({{0, 0, 0}, {3, 0, 0}, {3, 1, 0}});
  curve.spline.SetClosure(CGSpline::kOpen);
  curve.spline.SetSampling(CGSpline::kPointsOnly);
  EXPECT_EQ(curve.spline.Compute(), 3);
  EXPECT_EQ(curve.output, curve.points);
  EXPECT_EQ(curve.places, (std::vector<int>{0, 1, 2}));
  curve.spline.SetSampling(CGSpline::kByStep);
  curve.spline.SetStep(0.5);
  EXPECT_EQ(curve.spline.Compute(), 3 + 5 + 1);
  curve.spline.SetSampling(CGSpline::kByCount);
  curve.spline.SetCountPerSegment(4);
  EXPECT_EQ(curve.spline.Compute(), 3 + 3 + 3);
  EXPECT_EQ(curve.spline.GetMeanSegment(), 2);
  curve.spline.SetTolerance(2);  // the short segment takes no inner point
  EXPECT_EQ(curve.spline.Compute(), 3 + 3);
}

TEST(GSpline, Closures) {
  const Points square{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
  const Points open{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
  const struct {
    Points points;
    int closure;
    bool closed;
  } cases[] = {{square, CGSpline::kClosedIfNear, true},
               {square, CGSpline::kOpen, false},
               {open, CGSpline::kClosedIfNear, false},
               {open, CGSpline::kClosed, true}};
  for (const auto& c : cases) {
    Curve curve(c.points);
    curve.spline.SetInterpolation(CGSpline::kBezier);
    curve.spline.SetClosure(c.closure);
    const int points = static_cast<int>(c.points.size());
    EXPECT_EQ(curve.spline.Compute(), points + 9 * (c.closed ? points : points - 1));
    EXPECT_EQ(curve.spline.IsClosed(), c.closed);
  }
}

TEST(GSpline, BezierHandles) {
  Curve curve({{0, 0, 0}, {3, 4, 0}, {6, 0, 0}});
  Points handles;
  curve.spline.SetArray(CGSpline::kBezierPoints, &handles);
  curve.spline.SetInterpolation(CGSpline::kBezier);
  curve.spline.SetClosure(CGSpline::kOpen);
  curve.spline.SetCountPerSegment(2);
  curve.spline.SetTension(0.5);
  ASSERT_EQ(curve.spline.Compute(), 5);
  // At an end the neighbour that is missing is the point itself.
  EXPECT_EQ(handles, (Points{{0, 0, 0}, {1.5, 2, 0}, {0.5, 4, 0}, {5.5, 4, 0}, {4.5, 2, 0}, {6, 0, 0}}));
  EXPECT_EQ(curve.output[1], (Point3{(3 * 1.5 + 3 * 0.5 + 3) / 8, (3 * 2 + 3 * 4 + 4) / 8.0, 0}));
}

// Points whose parameters are closer than the tolerance are one to their neighbours' slopes.
TEST(GSpline, ToleranceJoinsPoints) {
  Curve twice({{0, 0, 0}, {1, 1, 0}, {1, 1, 0}, {2, 0, 0}, {3, 2, 0}});
  Curve once({{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 2, 0}});
  for (Curve* curve : {&twice, &once}) {
    curve->spline.SetMeasure(1);
    curve->spline.SetClosure(CGSpline::kOpen);
    curve->spline.SetSampling(CGSpline::kByStep);
    curve->spline.SetStep(0.25);
    ASSERT_GT(curve->spline.Compute(), 0);
  }
  twice.output.erase(twice.output.begin() + twice.places[1]);
  EXPECT_EQ(twice.output, once.output);
}

TEST(GSpline, Refusals) {
  Points output{{7, 7, 7}};
  Points points{{0, 0, 0}, {1, 1, 1}};
  std::vector<double> parameters{0, 1};
  CGSpline spline;
  EXPECT_EQ(spline.Compute(), 0) << "no output";
  spline.SetArray(CGSpline::kOutput, &output);
  EXPECT_EQ(spline.Compute(), 0) << "no points";
  spline.SetArray(CGSpline::kControlPoints, &points);
  EXPECT_FALSE(spline.IsOwned(CGSpline::kControlPoints));
  EXPECT_TRUE(spline.IsOwned(CGSpline::kParameters));
  spline.SetSampling(CGSpline::kByStep);
  for (const double step : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(), 1e-300}) {
    spline.SetStep(step);
    EXPECT_EQ(spline.Compute(), 0) << "step " << step;
  }
  spline.SetSampling(CGSpline::kByCount);
  spline.SetCountPerSegment(0);
  EXPECT_EQ(spline.Compute(), 0) << "count";
  spline.SetCountPerSegment(2);
  spline.SetParameters(&parameters);
  EXPECT_EQ(spline.Compute(), 0) << "a parameter is missing";
  EXPECT_EQ(output, (Points{{7, 7, 7}}));
  parameters = {5, 6, 6};
  EXPECT_EQ(spline.Compute(), 3) << "closed, and the closing segment has no length";
  points[0][1] = std::numeric_limits<double>::infinity();
  spline.SetParameters(nullptr);
  EXPECT_EQ(spline.Compute(), 3) << "no finite segment, but an inner point";
}

}  // namespace
}  // namespace tallyscope
