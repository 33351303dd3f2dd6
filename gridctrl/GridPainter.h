// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "gridctrl/GridCell.h"
#include "gridctrl/GridColours.h"
#include "gridctrl/GridGeometry.h"
#include "gridctrl/GridText.h"

class QPainter;

namespace tallyscope {

// All that a grid's picture depends on.
struct GridScene {
  const GridGeometry& geometry;
  const GridText& text;
  GridColours colours;
  int padding = 0;     // beside a cell's text
  int arrowWidth = 0;  // of the sort arrow, its gap included
  int sortColumn = -1;
  bool sortAscending = true;
  CCellID current{};
  bool focused = false;
  std::function<void(GV_DISPINFO&)> request{};  // fills in one cell
};

// The room for a cell's text, which the sort arrow narrows.
QRect TextRoom(const GridScene& scene, int row, int column);

// Paints the cells that `exposed` touches, and requests no others.
void PaintGrid(QPainter& painter, const QRect& exposed, const GridScene& scene);

}  // namespace tallyscope
