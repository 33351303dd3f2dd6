// SPDX-License-Identifier: MIT
// Opening and painting the spreadsheet's grid. The floor of a painting fills and writes the same cells with their texts
// made beforehand: nobody is asked, nothing is measured, nothing is cut.
#include "gridctrl/GridCtrl.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <charconv>

#include "platform/core/Messages.h"

namespace tallyscope {
namespace {

constexpr int kRows = 50'000'000;
constexpr int kColumns = 30;
constexpr QSize kView(1200, 400);

// Lives to the end of the process, as Qt wants it.
void NeedApplication() {
  static int count = 1;
  static char name[] = "bench";
  static char* arguments[] = {name, nullptr};
  if (qApp == nullptr) new QApplication(count, arguments);
}

CString CellText(int row, int column) {
  if (row == 0) return column == 0 ? "" : "field " + std::to_string(column);
  if (column == 0) return std::to_string(row);
  char text[32];
  const double value = (row % 9973) * 0.37 * column;
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 8).ptr;
  return CString(text, end);
}

class Table : public QWidget, public CWnd {
 public:
  QWidget* GetWidget() override { return this; }
  std::int64_t asked = 0;

 protected:
  bool OnNotify(NMHDR* header) override {
    auto& info = *static_cast<GV_DISPINFO*>(header);
    ++asked;
    info.text = CellText(info.row, info.col);
    info.alignment = CellAlignment::kRight;
    info.hasBackground = info.row > 0 && info.col > 0;
    info.background = info.col % 7 == 3 ? 0xffc0c0 : 0xffffff;
    return true;
  }
};

void Open(CGridCtrl& grid, Table& table) {
  grid.SetNotifyTarget(&table, 1);
  grid.SetRowCount(kRows + 1);
  grid.SetColumnCount(kColumns + 1);
  grid.AutoSizeColumns();
  grid.setFrameShape(QFrame::NoFrame);
  grid.resize(kView);
}

void OpenFiftyMillionRows(benchmark::State& state) {
  NeedApplication();
  QImage image(kView, QImage::Format_RGB32);
  double bytes = 0;
  for (auto _ : state) {
    Table table;
    const auto before = static_cast<double>(mallinfo2().uordblks);
    CGridCtrl grid(&table);
    Open(grid, table);
    grid.render(&image);
    bytes = static_cast<double>(mallinfo2().uordblks) - before;
    if (grid.GetRowCount() != kRows + 1 || table.asked == 0 || table.asked > 100 * (kColumns + 1) * 2) {
      state.SkipWithError("opening asked for a wrong number of cells");
    }
  }
  state.counters["MB"] = bytes / 1e6;
}
BENCHMARK(OpenFiftyMillionRows)->Unit(benchmark::kMillisecond);

// Each painting shows other rows, as while one scrolls.
void Paint(benchmark::State& state) {
  NeedApplication();
  Table table;
  CGridCtrl grid(&table);
  Open(grid, table);
  QImage image(kView, QImage::Format_RGB32);
  grid.render(&image);
  table.asked = 0;
  int row = 1;
  for (auto _ : state) {
    grid.EnsureVisible(row = row % (kRows - 100) + 97, 1);
    grid.render(&image);
  }
  const auto cells = static_cast<double>(table.asked) / static_cast<double>(state.iterations());
  state.counters["cells"] = cells;
  if (cells < 100 || cells > 1000) state.SkipWithError("not the cells in view");
}
BENCHMARK(Paint)->Unit(benchmark::kMillisecond);

void PaintFloor(benchmark::State& state) {
  NeedApplication();
  Table table;
  CGridCtrl grid(&table);
  Open(grid, table);
  QImage image(kView, QImage::Format_RGB32);
  grid.render(&image);
  struct Cell {
    QRect rect;
    QString text;
  };
  std::vector<Cell> cells;
  for (int row = 0; row < 100; ++row) {
    for (int column = 0; column <= kColumns; ++column) {
      const QRect rect = grid.GetCellRect(row, column);
      if (!rect.isEmpty()) cells.push_back({rect, QString::fromStdString(CellText(row, column))});
    }
  }
  for (auto _ : state) {
    QPainter painter(&image);
    painter.setFont(grid.font());
    for (const auto& cell : cells) {
      painter.fillRect(cell.rect, Qt::white);
      painter.drawText(cell.rect, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, cell.text);
    }
  }
  state.counters["cells"] = static_cast<double>(cells.size());
}
BENCHMARK(PaintFloor)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyscope
