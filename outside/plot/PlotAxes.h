// SPDX-License-Identifier: MIT
#pragma once

#include "outside/plot/PlotColours.h"
#include "outside/plot/UPlotX.h"

namespace tallyscope {

class CUPlotX_Container;

inline constexpr const char* kPlotFace = "Arial";
inline constexpr double kLegendPoints = 7;

// Finds the frame of a plot within the client area, with room for its labels, titles and legend, and tells it.
void LayOutPlot(CUPlotX& plot, CUPlotX_Container& container);

// Grid, frame, ticks, labels and titles. The grid lies below the data, so this comes first.
void DrawAxes(CDC& dc, const CUPlotX& plot, const PlotColours& colours);

}  // namespace tallyscope
