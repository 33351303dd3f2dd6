// SPDX-License-Identifier: MIT
// How soon the window stands, and what a frame of scrolling costs. The floor of a first paint is the same window on a
// table of ten stations: what is above it is what the table costs.
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>

#include <QImage>
#include <QScrollBar>

#include "statistics/Stats_Data.h"
#include "workbench/Dlg_Tallyscope.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {
namespace {

constexpr int kFields = 10;

// Ten fields in memory.
class MemoryTable : public CStats_Data {
 public:
  explicit MemoryTable(int stations) : values_(static_cast<std::size_t>(stations) * kFields), stations_(stations) {
    for (std::size_t i = 0; i < values_.size(); ++i) values_[i] = static_cast<double>(i * 2654435761u % 1000003) / 7;
  }
  using CStats_Data::GetValue;
  int GetSize() override { return stations_; }
  int GetValueSize() override { return kFields; }
  double GetValue(int field, int station) override { return *At(field, station); }
  int ReadValues(int field, int first, int count, double* values, unsigned char* valid) override {
    std::memcpy(values, At(field, first), static_cast<std::size_t>(count) * sizeof(double));
    std::memset(valid, 1, static_cast<std::size_t>(count));
    return count;
  }

 private:
  const double* At(int field, int station) const {
    return &values_[static_cast<std::size_t>(field) * stations_ + station];
  }
  std::vector<double> values_;
  int stations_;
};

class Window : public CDlg_Tallyscope {
 public:
  explicit Window(CStats_Data& table) {
    PushData(&table, false);
    SetUniDim(0);
    Create();
    resize(1200, 860);
  }
};

void FirstPaint(benchmark::State& state) {
  MemoryTable table(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    Window window(table);
    window.show();
    if (window.grab().isNull()) state.SkipWithError("nothing was painted");
  }
}
BENCHMARK(FirstPaint)->Arg(10)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void ScrollAFrame(benchmark::State& state) {
  MemoryTable table(1'000'000);
  Window window(table);
  window.show();
  auto* grid = window.GetGrid();
  QImage frame(grid->viewport()->size(), QImage::Format_ARGB32_Premultiplied);
  auto* bar = grid->verticalScrollBar();
  int row = 0;
  for (auto _ : state) {
    row = (row + 997) % bar->maximum();
    bar->setValue(row);
    grid->viewport()->render(&frame);
  }
  if (grid->GetTopLeft().row != row + 1) state.SkipWithError("it did not scroll");
}
BENCHMARK(ScrollAFrame)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyscope
