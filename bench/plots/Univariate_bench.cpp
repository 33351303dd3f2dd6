// SPDX-License-Identifier: MIT
// What a picture of the trace and of the histogram costs, 1600 x 900. The floor of a trace is a bare pass over its
// column, in colours one over each of its two, and that of the counts of selected stations one that adds their values.
// A histogram's picture is mostly its curve, whose floor is what Qt takes to stroke its points.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

#include <QImage>

#include "outside/plot/UPlotX_Container.h"
#include "platform/ui/PainterDC.h"
#include "plots/UPlotX_Uni_Histogram.h"
#include "plots/UPlotX_Uni_Scatter.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_RgnDataRange.h"
#include "statistics/Stats_RgnSelAll.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {
namespace {

constexpr int kLong = 10'000'000;
constexpr int kMillion = 1'000'000;
constexpr int kBlock = 512;

// Noisy fields in memory, each in a place of its own, with a null every `nulls` stations; 0: none.
class Column : public CStats_Data {
 public:
  explicit Column(int stations, int nulls = 0, std::size_t fields = 1)
      : fields_(fields, std::vector<double>(static_cast<std::size_t>(stations))), nulls_(nulls) {
    unsigned state = 1;
    for (auto& values : fields_) {
      for (std::size_t i = 0; i < values.size(); ++i) {
        state = state * 1664525u + 1013904223u;
        values[i] = 1000 * std::sin(static_cast<double>(i) * 2e-6) + state * 1e-7;
      }
    }
  }
  using CStats_Data::GetValue;
  int GetSize() override { return static_cast<int>(fields_.front().size()); }
  int GetValueSize() override { return static_cast<int>(fields_.size()); }
  double GetValue(int field, int station) override {
    return fields_[static_cast<std::size_t>(field)][static_cast<std::size_t>(station)];
  }
  bool IsValueValid(int, int station) override { return nulls_ == 0 || station % nulls_ != 0; }
  int ReadValues(int field, int first, int count, double* values, unsigned char* valid) override {
    const auto& from = fields_[static_cast<std::size_t>(field)];
    std::memcpy(values, &from[static_cast<std::size_t>(first)], static_cast<std::size_t>(count) * sizeof(double));
    std::memset(valid, 1, static_cast<std::size_t>(count));
    if (nulls_ == 0) return count;
    int good = count;
    for (int i = (nulls_ - first % nulls_) % nulls_; i < count; i += nulls_, --good) valid[i] = 0;
    return good;
  }

 private:
  std::vector<std::vector<double>> fields_;
  int nulls_;
};

template <class Plot>
struct Scene {
  explicit Scene(CStats_Data& table) {
    figures.Add(&table, 0);
    figures.Calculate(11, nullptr);
    spatial.Add(&table, 0);
    plot.calculator = &figures;
    plot.spatial = &spatial;
    plot.data = &table;
    plot.TakeExtents();
    container.AddPlot(&plot, true);
    container.SetClientSize({1600, 900});
    container.InitialiseExtents();
    container.ZoomFit();
  }
  void SelectRange(double low, double high) {
    auto region = std::make_unique<CStats_RgnDataRange>();
    region->box.min[0] = low;
    region->box.max[0] = high;
    plot.AddSelRegion(std::move(region));
  }
  void Paint() {
    CPainterDC dc(image);
    plot.Prepare(nullptr);
    plot.RenderLayer(dc);
  }

  CStats_Univariate figures;
  CStats_Spatial spatial;
  CUPlotX_Container container;
  Plot plot;
  QImage image{1600, 900, QImage::Format_RGB32};
};

using Trace = Scene<CUPlotX_Uni_Scatter>;
using Histogram = Scene<CUPlotX_Uni_Histogram>;

double AddUp(CStats_Data& table) {
  double values[kBlock];
  unsigned char valid[kBlock];
  double sum = 0;
  for (int first = 0; first < table.GetSize(); first += kBlock) {
    const int count = std::min(kBlock, table.GetSize() - first);
    table.ReadValues(0, first, count, values, valid);
    for (int i = 0; i < count; ++i) sum += values[i];
  }
  return sum;
}

void BarePass(benchmark::State& state) {
  Column table(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(AddUp(table));
}
BENCHMARK(BarePass)->Arg(kMillion)->Arg(kLong)->Unit(benchmark::kMillisecond);

// Nothing kept yet. Nulls: one in as many, or none.
void TraceFirstPaint(benchmark::State& state) {
  Column table(kLong, static_cast<int>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    auto scene = std::make_unique<Trace>(table);
    state.ResumeTiming();
    scene->Paint();
    state.PauseTiming();
    scene.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(TraceFirstPaint)->Arg(0)->Arg(10)->Unit(benchmark::kMillisecond);

// Two columns are read: its floor is two bare passes.
void TraceFirstPaintInColours(benchmark::State& state) {
  Column table(kLong, static_cast<int>(state.range(0)), 2);
  for (auto _ : state) {
    state.PauseTiming();
    auto scene = std::make_unique<Trace>(table);
    scene->plot.SetColourDim(2);
    scene->plot.GetColourModulation();  // its range is computed once, whatever is drawn
    state.ResumeTiming();
    scene->Paint();
    state.PauseTiming();
    scene.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(TraceFirstPaintInColours)->Arg(0)->Arg(10)->Unit(benchmark::kMillisecond);

void TracePan(benchmark::State& state) {
  Column table(kLong);
  Trace scene(table);
  scene.Paint();
  double by = 50;
  for (auto _ : state) {
    scene.plot.Pan(by, 0, 1);
    by = -by;
    scene.Paint();
  }
}
BENCHMARK(TracePan)->Unit(benchmark::kMillisecond);

// A selection through the middle of the noise: about half of the stations, in no order.
void TraceWithScatteredSelection(benchmark::State& state) {
  Column table(kLong);
  Trace scene(table);
  scene.SelectRange(0, 400);
  for (auto _ : state) scene.Paint();
}
BENCHMARK(TraceWithScatteredSelection)->Unit(benchmark::kMillisecond);

// As dense as stations are drawn one by one.
void TraceOfFewStations(benchmark::State& state) {
  Column table(1500);
  Trace scene(table);
  for (auto _ : state) scene.Paint();
}
BENCHMARK(TraceOfFewStations)->Unit(benchmark::kMillisecond);

void HistogramRepaint(benchmark::State& state) {
  Column table(static_cast<int>(state.range(0)));
  Histogram scene(table);
  scene.SelectRange(0, 400);
  for (auto _ : state) scene.Paint();
}
BENCHMARK(HistogramRepaint)->Arg(10'000)->Arg(kMillion)->Unit(benchmark::kMillisecond);

void ResetSelCount(benchmark::State& state) {
  Column table(kMillion);
  Histogram scene(table);
  if (state.range(0) == 100) {
    scene.plot.AddSelRegion(std::make_unique<CStats_RgnSelAll>());
  } else {
    scene.SelectRange(0, 400);
  }
  for (auto _ : state) scene.plot.ResetSelCount();
}
BENCHMARK(ResetSelCount)->ArgName("all")->Arg(100)->Arg(0)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyscope
