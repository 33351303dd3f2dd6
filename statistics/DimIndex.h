// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

// Lists of a table's columns (field boxes, grid columns, caches) show the axes first, then the ordinary fields.
constexpr int IndexFromDim(int dim, int axes) {
  return dim < 0 ? -dim - 1 : dim + axes;
}
constexpr int DimFromIndex(int index, int axes) {
  return index < axes ? -1 - index : index - axes;
}

// Column 0 of the spreadsheet holds the row numbers; it stands for dim 0 where a dim is wanted.
constexpr int DimFromColumn(int column, int axes) {
  return column < 1 ? 0 : DimFromIndex(column - 1, axes);
}

constexpr bool IsDimInRange(int dim, int axes, int fields) {
  return -axes <= dim && dim < fields;
}

}  // namespace tallyscope
