// SPDX-License-Identifier: MIT
// What plots keep between two looks: the tool, the view, and the rule that says when it comes back.
#include <gtest/gtest.h>

#include <cmath>

#include "outside/plot/UPlotX_Container.h"
#include "platform/core/Profile.h"
#include "plots/PlotSettings.h"
#include "plots/ViewRule.h"

namespace tallyscope {
namespace {

using Container = CUPlotX_Container;

TEST(PlotTool, NumbersStandForTools) {
  for (const bool exclude : {false, true}) {
    for (const int mode : {0, 1, 2, 3, 4, 5, 7, 8}) {
      const PlotTool tool = PlotTool{PlotTool::kPointer, exclude}.WithMode(mode);
      EXPECT_EQ(tool.GetMode(), mode);
      EXPECT_EQ(tool.exclude, mode < 4 ? exclude : mode > 5) << "kept for the next tool that selects";
    }
  }
  Container container;
  container.SetCursorMode(Container::eRectangleExclude);
  EXPECT_EQ(container.GetTool(), (PlotTool{PlotTool::kRectangle, true}));
  EXPECT_TRUE(container.IsRectangleMode() && !container.IsIncluding());
}

TEST(PlotTool, OneIsAlwaysOn) {
  PlotTool tool;
  const std::tuple<PlotTool::Kind, bool, PlotTool::Kind> steps[] = {
      {PlotTool::kPan, true, PlotTool::kPan},         {PlotTool::kZoomIn, false, PlotTool::kPan},
      {PlotTool::kPan, false, PlotTool::kPointer},    {PlotTool::kPointer, false, PlotTool::kPointer},
      {PlotTool::kPolygon, true, PlotTool::kPolygon}, {PlotTool::kRectangle, true, PlotTool::kRectangle}};
  for (const auto& [button, on, kind] : steps) {
    tool = tool.WithButton(button, on);
    EXPECT_EQ(tool.kind, kind);
  }
}

TEST(PlotSettings, ComeBack) {
  for (const PlotTool& tool : {PlotTool{}, {PlotTool::kZoomOut, true}, {PlotTool::kPolygon, true}}) {
    CMemoryProfile profile;
    WriteTool(profile, "P_", tool);
    EXPECT_EQ(ReadTool(profile, "P_", {PlotTool::kPan, false}), tool);
    EXPECT_EQ(ReadTool(profile, "Q_", {PlotTool::kPan, true}), (PlotTool{PlotTool::kPan, true})) << "nothing stored";
  }
  CMemoryProfile profile;
  PlotView view;
  view.axisRange = {{1, 2, 3}, {4, 5, 6}, 1};
  view.window = {{0.5, 0.25, 0}, {8, 9, 10}, 1};
  view.maps[2] = {AxisMap::kLogarithmic, 0.125};
  view.Write(profile, "P_");
  PlotView read;
  read.Read(profile, "P_");
  EXPECT_EQ(read.axisRange.min, view.axisRange.min);
  EXPECT_EQ(read.window.max, view.window.max);
  EXPECT_EQ(read.maps[2], view.maps[2]);
  for (const char* odd : {"0", "-3", "inf", "nan", "none"}) {
    profile.WriteProfileString(kPlotSection, "P_LOGLININT_Z", odd);
    read.Read(profile, "P_");
    EXPECT_EQ(read.maps[2].band, 1.0) << odd;
  }
}

TEST(ViewRule, AViewComesBackWhereItShowsTheSame) {
  using Session = CTallyscope;
  const struct {
    Session::eAnalysisMode mode;
    bool session, key, ancillary;  // whether a change of it starts afresh
  } rows[] = {{Session::eUnivariate, true, true, false},
              {Session::eVariogram, true, true, false},
              {Session::eSpatial, true, false, false},
              {Session::eBivariate, true, true, true},
              {Session::eMultivariate, true, true, true}};
  for (const auto& row : rows) {
    CMemoryProfile profile;
    const auto resets = [&](int session, int key, int ancillary) {
      const auto now = ViewSubject::Of(row.mode, session, key, ancillary);
      return ViewChange::Between(ViewSubject::Read(profile, "P_"), now).Resets(row.mode);
    };
    EXPECT_TRUE(resets(5, -1, 2)) << "nothing stored";
    ViewSubject::Of(row.mode, 5, -1, 2).Write(profile, "P_");
    EXPECT_FALSE(resets(5, -1, 2)) << row.mode;
    EXPECT_EQ(resets(6, -1, 2), row.session) << row.mode;
    EXPECT_EQ(resets(5, 0, 2), row.key) << row.mode;
    EXPECT_EQ(resets(5, -1, 3), row.ancillary) << row.mode;
  }
}

}  // namespace
}  // namespace tallyscope
