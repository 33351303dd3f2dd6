// SPDX-License-Identifier: MIT
#include "tests/plots/ScatterTesting.h"

#include <cmath>
#include <limits>
#include <random>

namespace tallyscope::testing_plots {

View::View(CMadeTable& made, CUPlotX_Scatter& scatter, CStats_Calculator& calculator) : table(made), plot(scatter) {
  spatial.Add(&table, 0);
  plot.calculator = &calculator;
  plot.spatial = &spatial;
  plot.data = &table;
  container.AddPlot(&plot, true);
  container.SetClientSize(kClient);
  Show(0, 0, 256, 256);
}

void View::Show(double left, double bottom, double right, double top) {
  plot.SetLayout(&container, {0, 0, kClient.cx, kClient.cy}, kFrame, {kFrame.left, 0, kFrame.right, 24});
  plot.PutWindowExtent({{left, bottom, 0}, {right, top, 1}, 1});
}

RecorderDC View::Draw() {
  RecorderDC dc(kClient);
  plot.Render_OwnerDraw(dc);
  return dc;
}

BiView::BiView(CMadeTable& made, int dimX, int dimY) : View(made, bi, pair) {
  pair.Add(&made, dimX);
  pair.Add(&made, dimY);
  pair.Calculate(15, nullptr);
}

StView::StView(CMadeTable& made) : View(made, map, axes) {}

std::string Text(const PlotMark& mark) {
  char text[80];
  std::snprintf(text, sizeof text, "%g,%g %06x %d", mark.x, mark.y, mark.colour, mark.arm);
  return text;
}

std::vector<std::string> Texts(const RecorderDC& dc) {
  std::vector<std::string> texts;
  for (const auto& each : dc.marks) texts.push_back(Text(each.mark));
  return texts;
}

CMadeTable NastyTable(int stations, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<MadeColumn> columns;
  for (const char* name : {"X", "Y", "U", "V", "W"}) {
    std::vector<double> values;
    for (int i = 0; i < stations; ++i) values.push_back(static_cast<double>(random() % 512) / 2);
    auto column = made::WithNulls(made::Column(std::move(values), name), [&](int) { return random() % 11 == 0; });
    for (int k = 0; k < stations / 50; ++k) {
      column.values[random() % stations] = std::numeric_limits<double>::quiet_NaN();
      column.values[random() % stations] = std::numeric_limits<double>::infinity();
      column.values[random() % stations] = -1e300;
    }
    columns.push_back(std::move(column));
  }
  return CMadeTable(std::move(columns), 2);
}

std::pair<int, int> DimsOf(const View& view) {
  if (view.plot.calculator->GetItemCount() == 0) return {-1, -2};
  return {view.plot.calculator->GetItemDim(0), view.plot.calculator->GetItemDim(1)};
}

}  // namespace tallyscope::testing_plots
