// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>

#include "spatial/LagSettings.h"

namespace tallyscope {

// Which cell of a lag grid a separation falls into, by the plain formula in double. A cell has a number, from 0 to
// GetCellCount() - 1: level by level, row by row, column by column.
class LagBinning {
 public:
  static constexpr int kNoCell = -1;

  explicit LagBinning(const LagSettings& settings);

  bool IsPolar() const { return polar_; }
  bool IsActive(int axis) const { return active_[static_cast<std::size_t>(axis)]; }
  int GetCount(int axis) const { return counts_[static_cast<std::size_t>(axis)]; }     // 1 on an inactive axis
  double GetWidth(int axis) const { return widths_[static_cast<std::size_t>(axis)]; }  // polar: of a lag, on all axes
  // Cartesian: the cells on each side of zero; 0 on an inactive axis.
  int GetHalf(int axis) const { return halves_[static_cast<std::size_t>(axis)]; }
  int GetCellCount() const { return cellCount_; }        // may be 0
  bool IsReasonable() const { return cellCount_ >= 0; }  // false for more cells than memory is given to

  // The cell of the separation from a pair's first station to its second; inactive axes are 0. kNoCell: too far.
  int GetCell(double dx, double dy, double dz) const { return polar_ ? GetPolarCell(dx, dy, dz) : GetBox(dx, dy, dz); }
  // The cell of the opposite sense; kNoCell if the grid has none.
  int GetMirror(int cell) const;
  // Whether the mirror of the mirror is the cell itself, so that a pair may enter either of them first.
  bool IsMirrorMutual() const;

 private:
  int GetPolarCell(double dx, double dy, double dz) const;
  int GetDip(double h, double dz) const;
  int GetBox(double dx, double dy, double dz) const;
  int GetNumber(int level, int row, int column) const;

  bool polar_;
  std::array<bool, 3> active_{};
  std::array<int, 3> counts_{1, 1, 1};
  std::array<int, 3> halves_{};
  Point3 widths_{};
  int cellCount_ = -1;
};

}  // namespace tallyscope
