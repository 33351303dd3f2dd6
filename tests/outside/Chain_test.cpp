// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/outside/PlotTesting.h"

namespace tallyscope {
namespace {

void ExpectVisible(const CUPlotX& plot, double left, double right, double bottom, double top) {
  const Box visible = plot.GetVisible();
  EXPECT_NEAR(visible.min[0], left, 1e-9 * std::abs(right - left));
  EXPECT_NEAR(visible.max[0], right, 1e-9 * std::abs(right - left));
  EXPECT_NEAR(visible.min[1], bottom, 1e-9 * std::abs(top - bottom));
  EXPECT_NEAR(visible.max[1], top, 1e-9 * std::abs(top - bottom));
}

TEST(Chain, CornersOfTheExtentsLieOnTheFrame) {
  PlotStage stage;
  const auto& frame = stage.plot.GetFrame();
  EXPECT_EQ(stage.plot.World2Device(0, 0), (XVector{double(frame.left), double(frame.bottom), 0}));
  EXPECT_EQ(stage.plot.World2Device(100, 50), (XVector{double(frame.right), double(frame.top), 0}));
  EXPECT_EQ(stage.plot.Device2Client({10.5, -0.5, 0}), (CPoint{11, -1})) << "halves away from zero";
}

TEST(Chain, ComesBackOnEveryScaleAndMap) {
  for (const int mapping : {AxisMap::kLinear, AxisMap::kLogarithmic}) {
    for (const int scaling : {CUPlotX::eNatural, CUPlotX::eFit}) {
      PlotStage stage({{-20, 3, 0}, {4000, 900, 1}, 1});
      stage.plot.maps[0] = stage.plot.maps[1] = {mapping, 2};
      stage.plot.scaling = scaling;
      stage.container.ZoomFit();
      for (const double x : {-19.0, 0.5, 100.0, 3999.0}) {
        const auto device = stage.plot.World2Device(x, 77);
        const auto world = stage.plot.Device2World(device[0], device[1]);
        EXPECT_NEAR(world[0], x, 1e-8);
        EXPECT_NEAR(world[1], 77, 1e-8);
      }
    }
  }
}

TEST(Chain, NaturalScalingKeepsUnitsEqual) {
  PlotStage stage({{0, 0, 0}, {10, 1000, 1}, 1});
  stage.plot.scaling = CUPlotX::eNatural;
  stage.container.ZoomFit();
  const auto unit = [&] {
    const auto zero = stage.plot.World2Device(0, 0);
    const auto one = stage.plot.World2Device(1, 1);
    return DrawPoint{one[0] - zero[0], zero[1] - one[1]};
  };
  EXPECT_NEAR(unit().x, unit().y, 1e-9);
  const Box visible = stage.plot.GetVisible();
  EXPECT_NEAR(visible.min[1], 0, 1e-6);
  EXPECT_NEAR(visible.max[1], 1000, 1e-6) << "all of the longer side";
  EXPECT_NEAR((visible.min[0] + visible.max[0]) / 2, 5, 1e-6) << "the shorter one in the middle";
  stage.plot.ZoomTo({200, 100, 220, 190}, 1);
  EXPECT_NEAR(unit().x, unit().y, 1e-9) << "also after a zoom, whatever the axes";
}

TEST(Chain, EqualEndsAreOpened) {
  PlotStage stage({{7, 3, 0}, {7, 3, 1}, 1});
  ExpectVisible(stage.plot, 6.5, 7.5, 2.5, 3.5);
  for (const double bad : {double(INFINITY), double(NAN), 1e10}) {
    PlotStage odd({{bad, 0, 0}, {-1e10, 1, 1}, 1});
    ExpectVisible(odd.plot, 0, 1, 0, 1);
  }
  PlotStage rounding({{0.1, 0, 0}, {std::nextafter(0.1, 1), 1, 1}, 1});
  ExpectVisible(rounding.plot, -0.4, 0.6, 0, 1);
  PlotStage large({{1e20, 0, 0}, {1e20, 1, 1}, 1});
  EXPECT_GT(large.plot.GetVisible().max[0], large.plot.GetVisible().min[0]);
}

// Wider than any number: seen whole, zoomed into step by step, and never left for a view without numbers.
TEST(Chain, RangesThatOverflowAreViews) {
  for (const double end : {1e308, std::numeric_limits<double>::max()}) {
    for (const int scaling : {CUPlotX::eNatural, CUPlotX::eFit}) {
      for (const double padding : {0.0, 0.02}) {
        PlotStage stage({{-end, -end, 0}, {end, end, 1}, 1});
        auto& plot = stage.plot;
        plot.scaling = scaling;
        plot.padding = padding;
        stage.container.ZoomFit();
        const auto& frame = plot.GetFrame();
        const auto low = plot.World2Device(-end, -end);
        const auto high = plot.World2Device(end, end);
        EXPECT_TRUE(low[0] >= frame.left && high[0] <= frame.right && high[0] - low[0] > 150) << low[0];
        EXPECT_TRUE(low[1] <= frame.bottom && high[1] >= frame.top && low[1] - high[1] > 150) << low[1];
        const auto zero = plot.World2Device(0, 0);
        EXPECT_NEAR(zero[0], (low[0] + high[0]) / 2, 1e-9);
        EXPECT_NEAR(zero[1], (low[1] + high[1]) / 2, 1e-9);
        const auto back = plot.Device2World(zero[0], zero[1]);
        EXPECT_LT(std::abs(back[0] / end), 1e-12);
        for (const double factor : {2.0, 0.25, 0.25}) plot.ZoomAbout({zero[0], zero[1]}, factor, 3);
        plot.Pan(500, 500, 3);
        for (const double each : {plot.GetVisible().min[0], plot.GetVisible().max[1]}) EXPECT_TRUE(std::isfinite(each));
        for (int i = 0; i < 2100; ++i) plot.ZoomAbout({200, 150}, 2, 3);
        EXPECT_LT(plot.GetVisible().max[0] / 2 - plot.GetVisible().min[0] / 2, 1e300)
            << "however far out, one comes in";
      }
    }
  }
}

TEST(Chain, PaddingOpensAFittedView) {
  PlotStage stage;
  stage.plot.padding = 0.1;
  stage.container.ZoomFit();
  ExpectVisible(stage.plot, -10, 110, -5, 55);
}

TEST(Chain, ZoomKeepsThePlaceUnderThePointer) {
  PlotStage stage;
  const DrawPoint place{150, 120};
  const auto before = stage.plot.Device2World(place.x, place.y);
  stage.plot.ZoomAbout(place, 3, 3);
  const auto after = stage.plot.Device2World(place.x, place.y);
  EXPECT_NEAR(after[0], before[0], 1e-9);
  EXPECT_NEAR(after[1], before[1], 1e-9);
  EXPECT_NEAR(stage.plot.GetVisible().max[0] - stage.plot.GetVisible().min[0], 100.0 / 3, 1e-9);
  stage.plot.ZoomAbout(place, 1.0 / 3, 1);
  EXPECT_NEAR(stage.plot.GetVisible().max[1] - stage.plot.GetVisible().min[1], 50.0 / 3, 1e-9) << "x alone";
}

TEST(Chain, PanMovesTheDataByPixels) {
  PlotStage stage;
  const auto at = stage.plot.World2Device(30, 20);
  stage.plot.Pan(17, -9, 3);
  const auto moved = stage.plot.World2Device(30, 20);
  EXPECT_NEAR(moved[0] - at[0], 17, 1e-9);
  EXPECT_NEAR(moved[1] - at[1], -9, 1e-9);
  stage.plot.Pan(5, 5, 1);
  EXPECT_NEAR(stage.plot.World2Device(30, 20)[1], moved[1], 1e-9);
}

TEST(Chain, ZoomEndsWhereNumbersDo) {
  PlotStage stage({{1e6, 1e6, 0}, {1e6 + 1, 1e6 + 1, 1}, 1});
  for (int i = 0; i < 400; ++i) stage.plot.ZoomAbout({200, 150}, 2, 3);
  Box visible = stage.plot.GetVisible();
  EXPECT_LT(visible.min[0], visible.max[0]);
  for (int i = 0; i < 4000; ++i) stage.plot.ZoomAbout({200, 150}, 0.5, 3);
  visible = stage.plot.GetVisible();
  EXPECT_TRUE(std::isfinite(visible.min[0]) && std::isfinite(visible.max[0]));
}

TEST(Chain, HitAreasLieRoundTheFrame) {
  PlotStage stage;
  const auto& frame = stage.plot.GetFrame();
  const CPoint middle = stage.At(0, 0);
  EXPECT_EQ(stage.plot.GetHitArea(middle), CUPlotX::eData);
  EXPECT_EQ(stage.plot.GetHitArea({frame.left - 1, middle.y}), CUPlotX::eLeft);
  EXPECT_EQ(stage.plot.GetHitArea({frame.right, middle.y}), CUPlotX::eRight);
  EXPECT_EQ(stage.plot.GetHitArea({middle.x, frame.bottom}), CUPlotX::eBottom);
  EXPECT_EQ(stage.plot.GetHitArea({middle.x, frame.top - 1}), CUPlotX::eTop);
  EXPECT_EQ(stage.plot.GetHitArea({0, 299}), CUPlotX::eNone) << "a corner";
  EXPECT_EQ(stage.plot.GetHitArea({-1, middle.y}), CUPlotX::eNone);
}

TEST(Chain, ATinyCanvasHasAFrame) {
  PlotStage stage;
  stage.container.SetClientSize({1, 1});
  EXPECT_FALSE(stage.plot.GetFrame().IsEmpty());
  stage.container.SetClientSize({0, 0});
  EXPECT_TRUE(std::isfinite(stage.plot.World2Device(1, 1)[0]));
}

}  // namespace
}  // namespace tallyscope
