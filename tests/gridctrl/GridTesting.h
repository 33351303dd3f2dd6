// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QTest>
#include <QWheelEvent>
#include <string>
#include <vector>

#include "gridctrl/GridCtrl.h"
#include "platform/core/Messages.h"

namespace tallyscope {

// A window that answers a grid with made-up cells and keeps what it was asked and told.
class GridOwner : public QWidget, public CWnd {
 public:
  QWidget* GetWidget() override { return this; }

  struct Told {
    int code, row, col;
    bool operator==(const Told&) const = default;
  };
  std::vector<CCellID> asked;
  std::vector<Told> told;
  std::function<void(GV_DISPINFO&)> fill = [](GV_DISPINFO& info) {
    info.text = std::to_string(info.row) + ":" + std::to_string(info.col);
  };

 protected:
  bool OnNotify(NMHDR* header) override {
    if (header->code == kNotifyCellRequest) {
      auto& info = *static_cast<GV_DISPINFO*>(header);
      asked.push_back({info.row, info.col});
      fill(info);
      return true;
    }
    const auto& click = *static_cast<NM_GRIDVIEW*>(header);
    told.push_back({click.code, click.row, click.col});
    return true;
  }
};

class ClickedGrid : public CGridCtrl {
 public:
  using CGridCtrl::CGridCtrl;
  std::vector<int> rowClicks, columnClicks;

 protected:
  void OnFixedColumnClick(CCellID& cell) override { rowClicks.push_back(cell.row); }
  void OnFixedRowClick(CCellID& cell) override { columnClicks.push_back(cell.col); }
};

// A shown grid whose body is exactly `fullRows` rows and a bit high.
struct ShownGrid {
  GridOwner owner;
  ClickedGrid grid{&owner};

  ShownGrid(int rows, int columns, QSize size = QSize(600, 300)) {
    grid.SetNotifyTarget(&owner, 7);
    grid.SetRowCount(rows);
    grid.SetColumnCount(columns);
    owner.resize(size);
    grid.resize(size);
    owner.show();
    grid.setFocus();
    QApplication::setActiveWindow(&owner);
    (void)QTest::qWaitForWindowActive(&owner);
    Paint();
  }

  // What one whole painting asks for.
  const std::vector<CCellID>& Paint() {
    owner.asked.clear();
    grid.grab();
    return owner.asked;
  }
  QPoint Middle(int row, int col) const { return grid.GetCellRect(row, col).center(); }
  void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&grid, static_cast<Qt::Key>(key), modifiers);
  }
  void Click(int row, int col, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseClick(grid.viewport(), button, Qt::NoModifier, Middle(row, col));
  }
  void Wheel(QPoint angle, QPoint pixels = QPoint(), Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    const QPointF at = grid.viewport()->rect().center();
    QWheelEvent event(at, grid.viewport()->mapToGlobal(at), pixels, angle, Qt::NoButton, modifiers,
                      pixels.isNull() ? Qt::NoScrollPhase : Qt::ScrollUpdate, false);
    QApplication::sendEvent(grid.viewport(), &event);
  }
};

}  // namespace tallyscope
