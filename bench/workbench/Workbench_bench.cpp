// SPDX-License-Identifier: MIT
// How soon the window stands, and what a frame of scrolling costs. The floor of a first paint is the same window on a
// table of ten stations or ten fields: what is above it is what the table costs.
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <string>

#include <QAbstractItemView>
#include <QComboBox>
#include <QImage>
#include <QScrollBar>

#include "statistics/Stats_Data.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_Tallyscope.h"
#include "workbench/PS_BaseTS.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {
namespace {

// Fields in memory, ten unless told otherwise.
class MemoryTable : public CStats_Data {
 public:
  explicit MemoryTable(int stations, int fields = 10)
      : values_(static_cast<std::size_t>(stations) * fields), stations_(stations), fields_(fields) {
    for (std::size_t i = 0; i < values_.size(); ++i) values_[i] = static_cast<double>(i * 2654435761u % 1000003) / 7;
  }
  using CStats_Data::GetValue;
  int GetSize() override { return stations_; }
  int GetValueSize() override { return fields_; }
  CString GetValueName(int field) override { return "field " + std::to_string(field); }
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
  int fields_;
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

// A table of very many fields, opened, painted, with its pages turned and another field chosen. The time of a field at
// ten and at a hundred times as many tells how it grows.
void OpenWide(benchmark::State& state) {
  const int fields = static_cast<int>(state.range(0));
  MemoryTable table(10, fields);
  for (auto _ : state) {
    Window window(table);
    window.show();
    for (const int page : {1, 2, 0}) {
      window.GetSheet()->SetActivePage(page);
      if (window.grab().isNull()) state.SkipWithError("nothing was painted");
    }
    window.SetUniDim(fields / 2);
    window.RefreshDialog(true);
    if (window.grab().isNull()) state.SkipWithError("nothing was painted");
  }
  state.counters["per_field"] = benchmark::Counter(static_cast<double>(state.iterations()) * fields,
                                                   benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(OpenWide)->Arg(10)->Arg(1000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

// The list of the key field's box, opened and closed.
void OpenFieldList(benchmark::State& state) {
  MemoryTable table(10, static_cast<int>(state.range(0)));
  Window window(table);
  window.show();
  auto* box = window.GetControl<QComboBox>(kControlKeyField);
  for (auto _ : state) {
    box->showPopup();
    if (!box->view()->isVisible()) state.SkipWithError("it did not open");
    box->hidePopup();
  }
}
BENCHMARK(OpenFieldList)->Arg(10)->Arg(100'000)->Unit(benchmark::kMillisecond);

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
