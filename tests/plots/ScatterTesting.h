// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "outside/plot/UPlotX_Container.h"
#include "plots/UPlotX_Bi_Scatter.h"
#include "plots/UPlotX_St_Scatter.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Bivariate.h"
#include "tests/support/Made.h"
#include "tests/support/RecorderDC.h"

namespace tallyscope::testing_plots {

inline constexpr CSize kClient{336, 312};
inline constexpr CRect kFrame{48, 32, 304, 288};  // 256 by 256

// A scatter with its calculators, without a window. Show makes a unit of the data a whole number of pixels.
struct View {
  View(CMadeTable& table, CUPlotX_Scatter& plot, CStats_Calculator& calculator);

  // These corners of the data fill kFrame.
  void Show(double left, double bottom, double right, double top);
  RecorderDC Draw();

  CMadeTable& table;
  CUPlotX_Scatter& plot;
  CStats_Spatial spatial;
  CUPlotX_Container container;
};

struct BiParts {
  CStats_Bivariate pair;
  CUPlotX_Bi_Scatter bi;
};
struct BiView : BiParts, View {
  explicit BiView(CMadeTable& made, int dimX = 0, int dimY = 1);
};

struct StParts {
  CStats_Calculator axes;
  CUPlotX_St_Scatter map;
};
struct StView : StParts, View {
  explicit StView(CMadeTable& made);
};

// One mark as "x,y colour arm", for instance "52,284 0000ff 2".
std::string Text(const PlotMark& mark);
std::vector<std::string> Texts(const RecorderDC& dc);

// Two axes X and Y and three fields of chance with nulls, NaN, infinities and many equal values.
CMadeTable NastyTable(int stations, unsigned seed);

// The dims of the plot's plane.
std::pair<int, int> DimsOf(const View& view);

}  // namespace tallyscope::testing_plots
