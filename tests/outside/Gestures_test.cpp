// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "tests/outside/PlotTesting.h"

namespace tallyscope {
namespace {

using Container = CUPlotX_Container;

struct GestureStage : PlotStage {
  explicit GestureStage(int mode) { container.SetCursorMode(mode); }
  void Drag(CPoint from, CPoint to) {
    container.OnLButtonDown(from);
    container.OnMouseMove({(from.x + to.x) / 2, (from.y + to.y) / 2}, true);
    container.OnMouseMove(to, true);
    container.OnLButtonUp(to);
  }
  void Click(CPoint at) { Drag(at, at); }
  double Width() const { return plot.GetVisible().max[0] - plot.GetVisible().min[0]; }
  double Height() const { return plot.GetVisible().max[1] - plot.GetVisible().min[1]; }
};

TEST(Gestures, ThePointerPicksWhileItIsDown) {
  GestureStage stage(Container::ePointer);
  stage.container.OnMouseMove(stage.At(5, 5), false);
  EXPECT_EQ(stage.plot.Take(), "") << "no gesture";
  const CPoint at = stage.At(0, 0);
  stage.container.OnLButtonDown(at);
  stage.container.OnMouseMove({at.x + 4, at.y}, true);
  stage.container.OnLButtonUp({at.x + 4, at.y});
  const auto text = [](CPoint p) { return std::to_string(p.x) + " " + std::to_string(p.y); };
  const CPoint to{at.x + 4, at.y};
  EXPECT_EQ(stage.plot.Take(), "pick " + text(at) + ", move " + text(to) + ", end " + text(to));
  stage.container.OnLButtonDown({1, 1});
  EXPECT_EQ(stage.plot.Take(), "") << "outside the frame";
}

TEST(Gestures, TheWindowIsToldOnceOfEachChange) {
  GestureStage stage(Container::eZoomIn);
  NotingWindow window;
  stage.container.SetWindow(&window);
  stage.Click(stage.At(0, 0));
  EXPECT_EQ(window.Take(), "Av");
  stage.Drag(stage.At(-20, -20), stage.At(20, 20));
  EXPECT_EQ(window.Take(), "Av");
  stage.container.SetCursorMode(Container::ePan);
  stage.Drag(stage.At(-20, -20), stage.At(20, 20));
  EXPECT_EQ(window.Take(), "AvAv") << "for each move";
  stage.container.SetCursorMode(Container::eZoomOut);
  stage.Click(stage.At(0, 0));
  EXPECT_EQ(window.Take(), "Av");
  stage.container.OnWheel(stage.At(0, 0), 1);
  EXPECT_EQ(window.Take(), "Av");
  stage.container.ZoomStep(2);
  EXPECT_EQ(window.Take(), "Av");
  stage.container.ZoomFit();
  EXPECT_EQ(window.Take(), "A") << "not by hand";
  stage.container.TellHovered(7);
  EXPECT_EQ(window.told, "oh7");
  window.Take();
  stage.container.TellSelectionMade();
  EXPECT_EQ(window.Take(), "As");
}

TEST(Gestures, ARectangleSelectsAndAClickDoesNot) {
  for (const int mode : {Container::eRectangle, Container::eRectangleExclude}) {
    GestureStage stage(mode);
    stage.Drag(stage.At(40, 30), stage.At(-20, -10));
    EXPECT_EQ(stage.plot.Take(), mode == Container::eRectangle ? "rectangle" : "rectangle out");
    EXPECT_EQ(stage.plot.rect, CRect::Between(stage.At(-20, -10), stage.At(40, 30)));
    stage.Click(stage.At(0, 0));
    EXPECT_EQ(stage.plot.Take(), "");
    stage.Drag(stage.At(0, 0), {4000, -4000});
    EXPECT_EQ(stage.plot.rect.right, stage.plot.GetFrame().right) << "kept within the frame";
    EXPECT_EQ(stage.plot.rect.top, stage.plot.GetFrame().top);
  }
}

TEST(Gestures, APolygonGrowsByClicksAndClosesByADoubleClick) {
  GestureStage stage(Container::ePolygon);
  const CPoint corners[] = {stage.At(-30, -30), stage.At(30, -30), stage.At(30, 30)};
  for (const auto& corner : corners) stage.Click(corner);
  stage.Click(stage.At(0, 50));
  EXPECT_TRUE(stage.container.CancelStep()) << "Esc drops the last corner";
  EXPECT_EQ(stage.plot.Take(), "");
  EXPECT_TRUE(stage.container.OnLButtonDblClk(corners[2]));
  EXPECT_EQ(stage.plot.Take(), "polygon");
  EXPECT_EQ(stage.plot.polygon, std::vector<CPoint>(std::begin(corners), std::end(corners)));
  EXPECT_TRUE(stage.container.GetPoints().empty());
  EXPECT_FALSE(stage.container.CancelStep()) << "nothing under way";
}

TEST(Gestures, TwoCornersAreNoPolygon) {
  GestureStage stage(Container::ePolygonExclude);
  stage.Click(stage.At(0, 0));
  stage.Click(stage.At(20, 0));
  EXPECT_TRUE(stage.container.OnRButtonDown(stage.At(20, 0)));
  EXPECT_EQ(stage.plot.Take(), "");
  for (const auto& at : {stage.At(0, 0), stage.At(20, 0), stage.At(0, 20)}) stage.Click(at);
  EXPECT_TRUE(stage.container.OnRButtonDown(stage.At(1, 20)));
  EXPECT_EQ(stage.plot.Take(), "polygon out");
}

TEST(Gestures, ALineDrawnWithTheButtonDownClosesAtItsRelease) {
  GestureStage stage(Container::ePolygon);
  stage.container.OnLButtonDown(stage.At(-40, 0));
  for (int step = 1; step <= 40; ++step) {
    const double angle = step * 3.14159 / 20 + 3.14159;
    stage.container.OnMouseMove(stage.At(int(40 * std::cos(angle)), int(40 * std::sin(angle))), true);
  }
  EXPECT_EQ(stage.plot.Take(), "");
  stage.container.OnLButtonUp(stage.At(-40, 0));
  EXPECT_EQ(stage.plot.Take(), "polygon");
  EXPECT_GT(stage.plot.polygon.size(), 20u);
}

TEST(Gestures, ZoomInByRectangleAndClick) {
  GestureStage stage(Container::eZoomIn);
  const auto low = stage.plot.Device2World(stage.At(-20, 10).x, stage.At(-20, 10).y);
  const auto high = stage.plot.Device2World(stage.At(20, -10).x, stage.At(20, -10).y);
  stage.Drag(stage.At(20, 10), stage.At(-20, -10));
  EXPECT_NEAR(stage.plot.GetVisible().min[0], low[0], 1e-9);
  EXPECT_NEAR(stage.plot.GetVisible().max[1], high[1], 1e-9);
  stage.container.ZoomFit();
  const auto place = stage.plot.Device2World(stage.At(30, 0).x, stage.At(30, 0).y);
  stage.Click(stage.At(30, 0));
  EXPECT_NEAR(stage.Width(), 50, 1e-9);
  EXPECT_NEAR(stage.plot.Device2World(stage.At(30, 0).x, stage.At(30, 0).y)[0], place[0], 1e-9);
}

TEST(Gestures, HorizontalZoomLeavesYAlone) {
  GestureStage stage(Container::eZoomIn);
  stage.container.SetZoomAxes(1);
  stage.Drag(stage.At(20, 10), stage.At(-20, -10));
  EXPECT_NEAR(stage.Height(), 50, 1e-9);
  EXPECT_LT(stage.Width(), 30);
  stage.container.OnWheel(stage.At(0, 0), -2);
  EXPECT_NEAR(stage.Height(), 50, 1e-9);
}

TEST(Gestures, ZoomOutPanAndWheel) {
  GestureStage stage(Container::eZoomOut);
  stage.Click(stage.At(0, 0));
  EXPECT_NEAR(stage.Width(), 200, 1e-9);
  stage.container.ZoomFit();
  stage.container.SetCursorMode(Container::ePan);
  const auto before = stage.plot.World2Device(50, 25);
  stage.Drag(stage.At(0, 0), stage.At(31, -12));
  EXPECT_NEAR(stage.plot.World2Device(50, 25)[0] - before[0], 31, 1e-9);
  EXPECT_NEAR(stage.plot.World2Device(50, 25)[1] - before[1], -12, 1e-9);
  const double width = stage.Width();
  stage.container.SetCursorMode(Container::eRectangle);
  stage.container.OnWheel(stage.At(10, 10), 1);
  EXPECT_NEAR(stage.Width(), width / 1.2, 1e-9) << "also without a zoom tool";
  stage.container.OnWheel({0, 0}, 5);
  EXPECT_NEAR(stage.Width(), width / 1.2, 1e-9) << "not outside the frame";
}

TEST(Gestures, AChangeOfToolEndsThePolygon) {
  GestureStage stage(Container::ePolygon);
  stage.Click(stage.At(0, 0));
  stage.container.SetCursorMode(Container::ePointer);
  EXPECT_TRUE(stage.container.GetPoints().empty());
  EXPECT_FALSE(stage.container.OnLButtonDblClk(stage.At(0, 0)));
  EXPECT_EQ(stage.plot.Take(), "");
}

TEST(Gestures, AChangeOfToolEndsAPick) {
  GestureStage stage(Container::ePointer);
  stage.container.OnLButtonDown(stage.At(0, 0));
  stage.plot.Take();
  stage.container.SetCursorMode(Container::eRectangle);
  EXPECT_EQ(stage.plot.Take().substr(0, 3), "end") << "or the mark would stay";
}

TEST(Gestures, ThePolygonStaysOnItsDataWhenTheViewChanges) {
  GestureStage stage(Container::ePolygon);
  for (const CPoint& corner : {stage.At(-60, -40), stage.At(60, -40), stage.At(0, 40)}) stage.Click(corner);
  const auto places = [&] {
    std::vector<XVector> worlds;
    for (const CPoint& corner : stage.container.GetPoints()) {
      worlds.push_back(stage.plot.Device2World(corner.x, corner.y));
    }
    return worlds;
  };
  const auto before = places();
  stage.container.SetClientSize({650, 410});
  stage.container.ZoomStep(1.5);
  const auto after = places();
  ASSERT_EQ(after.size(), before.size());
  for (std::size_t i = 0; i < before.size(); ++i) {
    EXPECT_NEAR(after[i][0], before[i][0], 0.5);
    EXPECT_NEAR(after[i][1], before[i][1], 0.5);
  }
}

TEST(Gestures, EscapeEndsAPickAndARectangle) {
  GestureStage stage(Container::ePointer);
  stage.container.OnLButtonDown(stage.At(0, 0));
  stage.plot.Take();
  EXPECT_TRUE(stage.container.CancelStep());
  EXPECT_EQ(stage.plot.Take().substr(0, 3), "end");
  stage.container.SetCursorMode(Container::eRectangle);
  stage.container.OnLButtonDown(stage.At(0, 0));
  stage.container.OnMouseMove(stage.At(50, 50), true);
  EXPECT_TRUE(stage.container.CancelStep());
  stage.container.OnLButtonUp(stage.At(50, 50));
  EXPECT_EQ(stage.plot.Take(), "");
}

}  // namespace
}  // namespace tallyscope
