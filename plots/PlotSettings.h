// SPDX-License-Identifier: MIT
#pragma once

#include "outside/plot/AxisMap.h"
#include "outside/plot/PlotTool.h"
#include "platform/core/Box.h"
#include "platform/core/String.h"

namespace tallyscope {

class CProfile;

// The settings of plots, each under the prefix of its page. What isn't stored, or makes no sense, leaves what is there.
inline constexpr const char* kPlotSection = "UPlotXControls";

// What of its data a plot shows.
struct PlotView {
  Box axisRange;  // world
  Box window;     // data, as the axes' maps have it
  AxisMap maps[3];

  void Read(const CProfile& profile, const CString& prefix);
  void Write(CProfile& profile, const CString& prefix) const;
};

// One check state a tool, read in the order in which they are written: of several that are on the last one stays.
PlotTool ReadTool(const CProfile& profile, const CString& prefix, PlotTool tool);
void WriteTool(CProfile& profile, const CString& prefix, const PlotTool& tool);

}  // namespace tallyscope
