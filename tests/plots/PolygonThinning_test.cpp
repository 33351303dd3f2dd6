// SPDX-License-Identifier: MIT
#include "plots/PolygonThinning.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>

namespace tallyscope {
namespace {

// The sleeve told as a walk with two labels, value by value.
std::vector<bool> SleeveReferee(const std::vector<double>& v, double h) {
  const int n = static_cast<int>(v.size());
  std::vector<bool> marks(v.size(), false);
  if (n > 0) marks[0] = true;
  if (n < 2) return marks;
  int a = 0;
  while (true) {
    const int b = a + 1;
    double d = 1;
    double lo = v[b] - (v[a] + h);
    double hi = v[b] - (v[a] - h);
    int last = b;
    int j = b + 1;
    for (;; ++j) {
      if (j == n) {
        marks[n - 1] = true;
        return marks;
      }
      d = d + 1;
      lo = std::max(lo, (v[j] - v[a] - h) / d);
      hi = std::min(hi, (v[j] - v[a] + h) / d);
      if (lo > hi) break;
      if ((v[j] - v[a]) / d >= lo && (v[j] - v[a]) / d <= hi) last = j;
    }
    marks[last] = true;
    a = last;
  }
}

std::vector<CPoint> ThinReferee(const std::vector<CPoint>& points) {
  std::vector<double> x, y;
  for (const CPoint& point : points) {
    x.push_back(point.x);
    y.push_back(point.y);
  }
  const auto sleeve = [](const std::vector<double>& v) {
    if (v.empty()) return std::vector<bool>();
    const double range = *std::max_element(v.begin(), v.end()) - *std::min_element(v.begin(), v.end());
    return SleeveReferee(v, std::fabs(range) * 25.0 / 1000);
  };
  const auto inX = sleeve(x);
  const auto inY = sleeve(y);
  std::vector<CPoint> kept;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (i == 0 || i == points.size() - 1 || inX[i] || inY[i]) kept.push_back(points[i]);
  }
  return kept;
}

TEST(PolygonThinning, AgreesWithThePlainWalk) {
  std::mt19937 random(7);
  for (int round = 0; round < 2000; ++round) {
    const int n = round < 20 ? round : static_cast<int>(random() % 200);
    const int kind = round % 5;
    std::vector<CPoint> points;
    CPoint at{300, 300};
    for (int i = 0; i < n; ++i) {
      const int stepX = static_cast<int>(random() % 9) - 4;
      const int stepY = static_cast<int>(random() % 9) - 4;
      if (kind == 0) at = {static_cast<int>(random() % 800), static_cast<int>(random() % 600)};
      if (kind == 1) at = {at.x + stepX, at.y + stepY};
      if (kind == 2) at = {at.x + 3, 300};                               // level: no range in y
      if (kind == 3) at = {i % 3 == 0 ? at.x : at.x + stepX, at.y + 1};  // corners repeat in x
      if (kind == 4) {
        at = {static_cast<int>(400 + 300 * std::cos(i * 0.05)), static_cast<int>(300 + 200 * std::sin(i * 0.05))};
      }
      points.push_back(at);
    }
    ASSERT_EQ(ThinPolygon(points), ThinReferee(points)) << "round " << round;
  }
}

TEST(PolygonThinning, KeepsWhatBendsThePolygon) {
  struct Case {
    const char* name;
    std::vector<CPoint> points;
    std::vector<CPoint> kept;
  };
  const Case cases[] = {
      {"nothing", {}, {}},
      {"one corner", {{3, 4}}, {{3, 4}}},
      {"two", {{3, 4}, {9, 9}}, {{3, 4}, {9, 9}}},
      {"all in one place", {{5, 5}, {5, 5}, {5, 5}, {5, 5}}, {{5, 5}, {5, 5}}},
      {"a straight line", {{0, 0}, {10, 10}, {20, 20}, {30, 30}}, {{0, 0}, {30, 30}}},
      {"a peak", {{0, 0}, {10, 50}, {20, 100}, {30, 50}, {40, 0}}, {{0, 0}, {20, 100}, {40, 0}}},
      {"a wiggle within a fortieth",
       {{0, 0}, {100, 2}, {200, 0}, {300, 98}, {400, 100}},
       {{0, 0}, {200, 0}, {300, 98}, {400, 100}}},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    EXPECT_EQ(ThinPolygon(each.points), each.kept);
  }
}

TEST(PolygonThinning, LeavesAFractionOfALongLasso) {
  std::vector<CPoint> points;
  for (int i = 0; i < 20000; ++i) {
    points.push_back(
        {static_cast<int>(800 + 700 * std::cos(i * 0.000314)), static_cast<int>(450 + 400 * std::sin(i * 0.000314))});
  }
  const auto kept = ThinPolygon(points);
  EXPECT_LT(kept.size(), 60U);
  EXPECT_GT(kept.size(), 12U);
}

// Uneven steps in x, smooth stretches and rough ones.
std::vector<DrawPoint> Curve(unsigned seed) {
  std::mt19937 random(seed);
  std::vector<DrawPoint> points;
  double x = 0;
  for (int i = 0; i < 400; ++i) {
    x += 0.25 * static_cast<double>(random() % 8);  // some straight up
    const double noise = i % 100 < 30 ? 0.01 * static_cast<double>(random() % 100) : 0;
    points.push_back({x, 300 * std::sin(x * 0.01) + noise});
  }
  return points;
}

double GetHeight(const DrawPoint& a, const DrawPoint& b, double x) {
  return a.y + (b.y - a.y) * (x - a.x) / (b.x - a.x);
}

TEST(CurveThinning, StaysWithinItsSleeve) {
  constexpr double kSleeve = 0.1;
  for (unsigned seed = 0; seed < 200; ++seed) {
    const auto points = Curve(seed);
    const auto kept = ThinCurve(points, kSleeve);
    ASSERT_LT(kept.size(), points.size() * 3 / 4);
    ASSERT_EQ(kept.front(), points.front());
    ASSERT_EQ(kept.back(), points.back());
    std::size_t run = 0;
    for (const auto& point : points) {
      if (run + 1 < kept.size() && point == kept[run + 1]) ++run;
      if (point == kept[run]) continue;
      ASSERT_LT(run + 1, kept.size()) << "kept points come from the curve, in its order";
      const double allowed = run + 2 == kept.size() ? 2 * kSleeve : kSleeve;
      ASSERT_NEAR(GetHeight(kept[run], kept[run + 1], point.x), point.y, allowed + 1e-9) << "seed " << seed;
    }
  }
  EXPECT_EQ(ThinCurve({}, 1), std::vector<DrawPoint>());
  EXPECT_EQ(ThinCurve({{1, 2}}, 1), (std::vector<DrawPoint>{{1, 2}}));
}

}  // namespace
}  // namespace tallyscope
