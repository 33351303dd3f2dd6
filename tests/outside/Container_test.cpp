// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/outside/PlotTesting.h"
#include "tests/support/RecorderDC.h"

namespace tallyscope {
namespace {

TEST(Container, DrawsAxesThenDataThenTheHoverMark) {
  PlotStage stage;
  stage.plot.titleX = "lead";
  stage.plot.titleY = "zinc";
  RecorderDC dc({400, 300});
  stage.container.Render(dc);
  EXPECT_EQ(stage.plot.Take(), "layer, hover");
  for (const char* text : {"0", "20", "100", "lead", "zinc"}) EXPECT_TRUE(dc.HasText(text)) << text;
  const auto& cross = dc.LinesOf(0xff, 2);
  ASSERT_EQ(cross.size(), 1u);
  EXPECT_EQ(cross.front().clip, ToDrawRect(stage.plot.GetFrame()));
  EXPECT_EQ(dc.fills.front().colour, stage.container.colours.paper);
}

TEST(Container, LabelsStayInsideAndApart) {
  for (const Box& extents :
       {Box{{178605, 329714, 0}, {181390, 333611, 1}, 1}, Box{{0, -1e-7, 0}, {1e12, 1e-7, 1}, 1},
        Box{{-3, 0.5, 0}, {-1, 0.500001, 1}, 1}, Box{{1e6, 1e6, 0}, {1e6 + 1, 1e6 + 1e-3, 1}, 1}}) {
    PlotStage stage(extents);
    RecorderDC dc({400, 300});
    stage.container.Render(dc);
    double lastRight = -1;
    std::vector<std::pair<double, double>> across;
    for (const auto& text : dc.texts) {
      const CSize size = dc.GetTextExtent(text.text);
      if (text.align == TextAlign::kRight) {
        EXPECT_GT(text.place.x - size.cx, 0) << text.text;
        continue;
      }
      if (text.line != TextLine::kTop || text.align != TextAlign::kCentre || text.place.x < 10) continue;
      across.push_back({text.place.x - size.cx / 2.0, text.place.x + size.cx / 2.0});
    }
    std::sort(across.begin(), across.end());
    for (const auto& [left, right] : across) {
      EXPECT_GT(left, lastRight);
      EXPECT_LT(right, 400 + 12);
      lastRight = right;
    }
  }
}

TEST(Container, ALongTitleKeepsItsPowerOfTen) {
  PlotStage stage({{0, 0, 0}, {1e9, 1, 1}, 1});
  stage.plot.titleX = CString(200, 'n');
  RecorderDC dc({400, 300});
  stage.container.Render(dc);
  const bool kept = std::any_of(dc.texts.begin(), dc.texts.end(), [](auto& each) {
    return each.text.find("n…n") != CString::npos && each.text.find("(×10⁹)") != CString::npos;
  });
  EXPECT_TRUE(kept);
}

TEST(Container, SaysWhyThereIsNothing) {
  PlotStage stage;
  stage.plot.emptyReason = "No valid values in om";
  RecorderDC dc({400, 300});
  stage.container.Render(dc);
  EXPECT_TRUE(dc.HasText("No valid values in om"));
}

TEST(Container, ARubberBandShowsItsSign) {
  for (const int mode : {CUPlotX_Container::eRectangle, CUPlotX_Container::eRectangleExclude}) {
    PlotStage stage;
    stage.container.SetCursorMode(mode);
    stage.container.OnLButtonDown(stage.At(-30, -20));
    stage.container.OnMouseMove(stage.At(30, 20), true);
    RecorderDC dc({400, 300});
    stage.container.RenderOver(dc);
    std::size_t dashed = 0;
    std::size_t upright = 0;
    for (const auto& line : dc.lines) {
      dashed += line.pen.style == PenStyle::kDash ? line.points.size() : 0;
      upright += line.points.size() == 2 && line.points[0].x == line.points[1].x && line.pen.width == 1 ? 1 : 0;
    }
    EXPECT_EQ(dashed, 5u) << "a closed rectangle";
    EXPECT_EQ(upright, mode == CUPlotX_Container::eRectangle ? 1u : 0u) << "plus or minus";
  }
}

TEST(Container, AFrameStaysPutWhileOneZoomsALittle) {
  PlotStage stage;
  const CRect frame = stage.plot.GetFrame();
  for (int i = 0; i < 3; ++i) {
    stage.container.OnWheel(stage.At(3, 3), 1);
    RecorderDC dc({400, 300});
    stage.container.RenderKept(dc);
    EXPECT_EQ(stage.plot.GetFrame(), frame) << i;
  }
}

}  // namespace
}  // namespace tallyscope
