// SPDX-License-Identifier: MIT
// Scatters of a million stations at 1600 x 900: the first picture, the repaint after a change of the selection, the
// nearest station. The floor writes a plus for each station into an image from two arrays; a picture walks the search's
// leaves besides, and a modulated one has two more columns to read and marks of up to 17 pixels.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

#include <QImage>

#include "outside/plot/UPlotX_Container.h"
#include "platform/ui/PainterDC.h"
#include "plots/UPlotX_Bi_Scatter.h"
#include "plots/UPlotX_St_Scatter.h"
#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_RgnRect.h"
#include "statistics/Stats_Univariate.h"
#include "tests/support/Made.h"

namespace tallyscope {
namespace {

constexpr int kStations = 1'000'000;
constexpr CSize kSize{1600, 900};

// Made columns, read at many places by one loop as a host's are.
class Table : public CMadeTable {
 public:
  using CMadeTable::CMadeTable;
  int ReadValuesAt(int field, const int* stations, int count, double* values, unsigned char* valid) override {
    const auto& column = GetMade(field);
    int found = 0;
    for (int i = 0; i < count; ++i) {
      valid[i] = column.IsValid(stations[i]) ? 1 : 0;
      values[i] = column.values[static_cast<std::size_t>(stations[i])];
      found += valid[i];
    }
    return found;
  }
};

Table& Stations() {
  static Table table(
      {made::Normal(kStations, 0, 1, 1), made::Normal(kStations, 0, 1, 2), made::Normal(kStations, 50, 10, 3),
       made::WithNulls(made::Normal(kStations, 5, 1, 4), made::Every(10))},
      2);
  return table;
}

std::unique_ptr<CStats_Rgn> Half(int dimX, int dimY) {
  auto region = std::make_unique<CStats_RgnRect>();
  region->SetDims(dimX, dimY, -3, 2);
  region->box = {{-9, -9, 0}, {0, 9, 0}, 1};
  return region;
}

// A plot in a container without a window, its search built.
struct Scene {
  Scene() {
    const int dims[2] = {-1, -2};
    for (std::size_t i = 0; i < 2; ++i) links[i].Add(&Stations(), dims[i]);
    pair.xLink = links;
    pair.yLink = links + 1;
    pair.Add(&Stations(), -1);
    pair.Add(&Stations(), -2);
    pair.Calculate(15, nullptr);
    spatial.Add(&Stations(), 0);
  }
  // Opens on all stations; `fields` is the calculator.
  template <class Plot>
  void Open(Plot& plot, CStats_Calculator& fields) {
    plot.calculator = &fields;
    plot.spatial = &spatial;
    plot.data = &Stations();
    plot.TakeExtents();
    container.AddPlot(&plot, true);
    container.SetClientSize(kSize);
    container.InitialiseExtents();
    container.ZoomFit();
    Paint();
  }
  void OpenBi() { Open(bi, pair); }
  void OpenMap() { Open(map, pair); }
  void Paint() {
    CPainterDC dc(image);
    container.Prepare(nullptr);
    container.RenderKept(dc);
  }
  CStats_Univariate links[2];
  CStats_Bivariate pair;
  CStats_Spatial spatial;
  CUPlotX_Container container;
  CUPlotX_Bi_Scatter bi;
  CUPlotX_St_Scatter map;
  QImage image{kSize.cx, kSize.cy, QImage::Format_ARGB32_Premultiplied};
};

void PaintFloor(benchmark::State& state) {
  const double* x = Stations().GetMade(-1).values.data();
  const double* y = Stations().GetMade(-2).values.data();
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(kSize.cx) * kSize.cy);
  for (auto _ : state) {
    std::fill(pixels.begin(), pixels.end(), 0xffffffffU);
    for (int i = 0; i < kStations; ++i) {
      const int column = static_cast<int>(800 + x[i] * 150);
      const int row = static_cast<int>(450 - y[i] * 80);
      if (column < 1 || column >= kSize.cx - 1 || row < 1 || row >= kSize.cy - 1) continue;
      auto* middle = pixels.data() + static_cast<std::ptrdiff_t>(row) * kSize.cx + column;
      middle[-kSize.cx] = middle[-1] = middle[0] = middle[1] = middle[kSize.cx] = 0xff000000U;
    }
    benchmark::DoNotOptimize(pixels.data());
  }
}

void PaintPlane(benchmark::State& state) {
  Scene scene;
  scene.OpenBi();
  for (auto _ : state) scene.Paint();
}

void PaintPlaneAndBuild(benchmark::State& state) {
  Scene scene;
  scene.OpenBi();
  for (auto _ : state) {
    Stations().DestroyPointSearch();
    scene.Paint();
  }
}

void PaintMap(benchmark::State& state) {
  Scene scene;
  scene.OpenMap();
  for (auto _ : state) scene.Paint();
}

void PaintModulated(benchmark::State& state) {
  Scene scene;
  scene.OpenBi();
  scene.bi.SetColourDim(3);
  scene.bi.SetSizeDim(4);
  scene.Paint();
  for (auto _ : state) scene.Paint();
}

void PaintModulatedMap(benchmark::State& state) {
  Scene scene;
  scene.OpenMap();
  scene.map.SetColourDim(3);
  scene.Paint();
  for (auto _ : state) scene.Paint();
}

void PaintLogarithmic(benchmark::State& state) {
  Scene scene;
  for (auto& axis : scene.bi.maps) axis = {AxisMap::kLogarithmic, 0.1};
  scene.OpenBi();
  for (auto _ : state) scene.Paint();
}

void PaintZoomed(benchmark::State& state) {
  Scene scene;
  scene.OpenBi();
  scene.bi.ZoomAbout({800, 450}, 20, 3);

  for (auto _ : state) scene.Paint();
}

void PaintHalfSelected(benchmark::State& state) {
  Scene scene;
  scene.OpenBi();
  scene.bi.AddSelRegion(Half(-1, -2));
  for (auto _ : state) scene.Paint();
}

// A gesture whole: the region, its evaluation, the repaint. Of the map, and in the plane of two other fields, which the
// selection is told to search by as a sheet of two fields tells it: the table has one search, and whoever asks it for
// another plane has it built anew. It must not be built here.
void SelectAndPaint(benchmark::State& state) {
  Scene scene;
  CStats_Bivariate fields;
  fields.Add(&Stations(), 0);
  fields.Add(&Stations(), 1);
  fields.Calculate(15, nullptr);
  if (state.range(0) == 0) {
    scene.OpenMap();
  } else {
    scene.spatial.SetSpatialDims(0, 1, -3, 2);
    scene.Open(scene.bi, fields);
  }
  auto& plot = *static_cast<CUPlotX_Scatter*>(scene.container.GetActivePlot());
  CRect rect{700, 300, 900, 600};
  bool include = true;
  for (auto _ : state) {
    plot.Select(rect, include);
    scene.Paint();
    include = !include;
  }
}

// Random places of the frame: crowds and empty ones.
void HoverPick(benchmark::State& state) {
  Scene scene;
  scene.OpenBi();
  const CRect frame = scene.bi.GetFrame();
  unsigned place = 1;
  for (auto _ : state) {
    place = place * 1664525U + 1013904223U;
    const CPoint point{frame.left + static_cast<int>((place >> 8) % static_cast<unsigned>(frame.Width())),
                       frame.top + static_cast<int>((place >> 20) % static_cast<unsigned>(frame.Height()))};
    benchmark::DoNotOptimize(scene.bi.PickAt(point));
  }
}

void HoverPickInTheCrowd(benchmark::State& state) {
  Scene scene;
  scene.OpenBi();
  const auto middle = scene.bi.Device2Client(scene.bi.World2Device(0, 0));
  for (auto _ : state) benchmark::DoNotOptimize(scene.bi.PickAt(middle));
}

BENCHMARK(PaintFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintPlane)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintPlaneAndBuild)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintMap)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintModulated)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintModulatedMap)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintLogarithmic)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintZoomed)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintHalfSelected)->Unit(benchmark::kMillisecond);
BENCHMARK(SelectAndPaint)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(HoverPick)->Unit(benchmark::kMicrosecond);
BENCHMARK(HoverPickInTheCrowd)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tallyscope
