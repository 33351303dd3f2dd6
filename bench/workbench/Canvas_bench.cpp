// SPDX-License-Identifier: MIT
// What the canvas of a map of a million stations, 1600 x 900, takes to show a hover mark, a rubber band or another
// tool: the kept layer is copied, nothing is drawn anew. The floor is a bare copy of an image of that size.
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QToolButton>

#include "outside/plot/PlotCanvas.h"
#include "tests/support/Made.h"
#include "tests/workbench/WorkbenchTesting.h"
#include "workbench/GraphControls.h"
#include "workbench/PP_Base_Graph.h"
#include "workbench/PS_BaseTS.h"

namespace tallyscope {
namespace {

constexpr int kStations = 1'000'000;
constexpr QSize kSize{1600, 900};

CMadeTable& Stations() {
  static CMadeTable table({made::Normal(kStations, 0, 1, 1), made::Normal(kStations, 0, 1, 2),
                           made::Normal(kStations, 50, 10, 3), made::Normal(kStations, 5, 1, 4)},
                          2);
  return table;
}

// The workbench on its map, with a canvas of the size.
struct Scene {
  Scene() : dialog(Stations()) {
    dialog.SetMode(CTallyscope::eSpatial);
    dialog.Create();
    dialog.ShowPage("Graph");
    page = dynamic_cast<CPP_Base_Graph*>(dialog.GetSheet()->GetActivePage());
    canvas = page->GetControl<CPlotCanvas>(kGraphFrame);
    canvas->setMinimumSize(kSize);
    dialog.show();
    Settle();
    canvas->setFixedSize(kSize);
    Settle();
    canvas->repaint();
  }
  static void Settle() { QApplication::processEvents(); }
  void MoveTo(QPoint to, Qt::MouseButtons buttons) {
    QMouseEvent move(QEvent::MouseMove, to, canvas->mapToGlobal(to), Qt::NoButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(canvas, &move);
  }
  void Press(QEvent::Type type, QPoint at) {
    QMouseEvent press(type, at, canvas->mapToGlobal(at), Qt::LeftButton,
                      type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(canvas, &press);
  }
  // Ends a benchmark that has drawn the layer again.
  void ExpectKept(benchmark::State& state, int paints) {
    if (canvas->size() != kSize) state.SkipWithError("the canvas has another size");
    if (canvas->GetKeptPaints() != paints) state.SkipWithError("the layer was drawn again");
  }
  OpenWorkbench dialog;
  CPP_Base_Graph* page = nullptr;
  CPlotCanvas* canvas = nullptr;
};

QPoint GetPlace(int step) {
  return {400 + step * 37 % 800, 200 + step * 23 % 500};
}

void CopyFloor(benchmark::State& state) {
  QImage from(kSize, QImage::Format_RGB32);
  QImage to(kSize, QImage::Format_RGB32);
  from.fill(Qt::white);
  to.fill(Qt::black);
  for (auto _ : state) {
    std::memcpy(to.bits(), from.constBits(), static_cast<std::size_t>(from.sizeInBytes()));
    benchmark::DoNotOptimize(to.bits());
  }
}

// The pointer moves, with the button up: the nearest station is found, its mark and the status line are shown.
void HoverAndRepaint(benchmark::State& state) {
  Scene scene;
  const int paints = scene.canvas->GetKeptPaints();
  int step = 0;
  for (auto _ : state) {
    scene.MoveTo(GetPlace(++step), Qt::NoButton);
    scene.canvas->repaint();
  }
  scene.ExpectKept(state, paints);
}

void RubberBandAndRepaint(benchmark::State& state) {
  Scene scene;
  scene.page->GetControl<QToolButton>(kGraphSelectRect)->click();
  scene.Press(QEvent::MouseButtonPress, {300, 150});
  const int paints = scene.canvas->GetKeptPaints();
  int step = 0;
  for (auto _ : state) {
    scene.MoveTo(GetPlace(++step), Qt::LeftButton);
    scene.canvas->repaint();
  }
  scene.ExpectKept(state, paints);
}

void ToolChangeAndRepaint(benchmark::State& state) {
  Scene scene;
  const int paints = scene.canvas->GetKeptPaints();
  int step = 0;
  for (auto _ : state) {
    scene.page->GetControl<QToolButton>(++step % 2 != 0 ? kGraphSelectRect : kGraphPan)->click();
    scene.canvas->repaint();
  }
  scene.ExpectKept(state, paints);
}

BENCHMARK(CopyFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(HoverAndRepaint)->Unit(benchmark::kMillisecond);
BENCHMARK(RubberBandAndRepaint)->Unit(benchmark::kMillisecond);
BENCHMARK(ToolChangeAndRepaint)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyscope
