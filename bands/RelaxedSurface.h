// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tallyscope {

// A grid of cells, some of which are fixed, whose free ones move to where the sum of squared second differences over
// the grid (along x, along y and twice the mixed one) is least: the surface of least curvature through the fixed cells
// (I. C. Briggs, Geophysics 39, 1974). Column i and row j count from 0 and are not checked.
class RelaxedSurface {
 public:
  RelaxedSurface(int columns, int rows);  // all free, and 0

  int GetColumns() const { return columns_; }
  int GetRows() const { return rows_; }
  double Get(int i, int j) const { return values_[Index(i, j)]; }
  void Fix(int i, int j, double value);
  // Free cells start from a coarser grid over the same area, whose cells are `ratio` of these wide.
  void StartFrom(const RelaxedSurface& coarse, int ratio);
  // Sweeps until no cell moves by more than `limit`, `sweeps` times at most; returns how often.
  int Relax(int sweeps, double limit);

 private:
  std::size_t Index(int i, int j) const {
    return static_cast<std::size_t>(j) * static_cast<std::size_t>(columns_) + static_cast<std::size_t>(i);
  }
  double GetStep(int i, int j) const;
  double GetInnerStep(std::size_t at) const;
  double Sweep();

  int columns_;
  int rows_;
  std::vector<double> values_;
  std::vector<std::uint8_t> fixed_;
};

}  // namespace tallyscope
