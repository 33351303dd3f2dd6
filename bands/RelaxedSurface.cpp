// SPDX-License-Identifier: MIT
#include "bands/RelaxedSurface.h"

#include <algorithm>
#include <cmath>

namespace tallyscope {

namespace {

constexpr double kOverrelaxation = 1.4;

// Where a cell's centre stands between two cells of a coarser grid; beyond the outer centres the line goes on.
struct Between {
  int low;
  double share;  // of the next one

  Between(int cell, int ratio, int coarseCells) {
    const double at = (cell + 0.5) / ratio - 0.5;
    low = std::clamp(static_cast<int>(std::floor(at)), 0, std::max(coarseCells - 2, 0));
    share = coarseCells > 1 ? at - low : 0;
  }
};

}  // namespace

RelaxedSurface::RelaxedSurface(int columns, int rows)
    : columns_(columns),
      rows_(rows),
      values_(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows)),
      fixed_(values_.size()) {}

void RelaxedSurface::Fix(int i, int j, double value) {
  values_[Index(i, j)] = value;
  fixed_[Index(i, j)] = 1;
}

void RelaxedSurface::StartFrom(const RelaxedSurface& coarse, int ratio) {
  for (int j = 0; j < rows_; ++j) {
    const Between y(j, ratio, coarse.rows_);
    const int nextRow = std::min(y.low + 1, coarse.rows_ - 1);
    for (int i = 0; i < columns_; ++i) {
      if (fixed_[Index(i, j)] != 0) continue;
      const Between x(i, ratio, coarse.columns_);
      const int next = std::min(x.low + 1, coarse.columns_ - 1);
      const double lower = coarse.Get(x.low, y.low) * (1 - x.share) + coarse.Get(next, y.low) * x.share;
      const double upper = coarse.Get(x.low, nextRow) * (1 - x.share) + coarse.Get(next, nextRow) * x.share;
      values_[Index(i, j)] = lower * (1 - y.share) + upper * y.share;
    }
  }
}

// Slope of the sum in one cell over its curvature there, as the second differences that hold the cell give them.
double RelaxedSurface::GetStep(int i, int j) const {
  double slope = 0;
  double curvature = 0;
  const auto add = [&](double weight, double part, double difference) {
    slope += weight * part * difference;
    curvature += weight * part * part;
  };
  for (int c = std::max(i - 1, 1); c <= std::min(i + 1, columns_ - 2); ++c) {
    add(1, c == i ? -2 : 1, Get(c - 1, j) - 2 * Get(c, j) + Get(c + 1, j));
  }
  for (int c = std::max(j - 1, 1); c <= std::min(j + 1, rows_ - 2); ++c) {
    add(1, c == j ? -2 : 1, Get(i, c - 1) - 2 * Get(i, c) + Get(i, c + 1));
  }
  for (int b = std::max(j - 1, 0); b <= std::min(j, rows_ - 2); ++b) {
    for (int a = std::max(i - 1, 0); a <= std::min(i, columns_ - 2); ++a) {
      add(2, (a == i) == (b == j) ? 1 : -1, Get(a, b) - Get(a + 1, b) - Get(a, b + 1) + Get(a + 1, b + 1));
    }
  }
  return curvature > 0 ? slope / curvature : 0;
}

// The same two cells and more from the edges, in one piece.
double RelaxedSurface::GetInnerStep(std::size_t at) const {
  const auto row = static_cast<std::size_t>(columns_);
  const double* z = values_.data() + at;
  const double* below = z - row;
  const double* above = z + row;
  const double beside = z[-1] + z[1] + below[0] + above[0];
  const double across = below[-1] + below[1] + above[-1] + above[1];
  const double beyond = z[-2] + z[2] + *(below - row) + above[row];
  return (20 * z[0] - 8 * beside + 2 * across + beyond) / 20;
}

// The largest move.
double RelaxedSurface::Sweep() {
  double largest = 0;
  for (int j = 0; j < rows_; ++j) {
    const bool innerRow = j >= 2 && j < rows_ - 2;
    for (int i = 0; i < columns_; ++i) {
      const std::size_t at = Index(i, j);
      if (fixed_[at] != 0) continue;
      const bool inner = innerRow && i >= 2 && i < columns_ - 2;
      const double move = kOverrelaxation * (inner ? GetInnerStep(at) : GetStep(i, j));
      values_[at] -= move;
      if (!(std::fabs(move) <= largest)) largest = std::fabs(move);
    }
  }
  return largest;
}

int RelaxedSurface::Relax(int sweeps, double limit) {
  int done = 0;
  while (done < sweeps) {
    ++done;
    if (Sweep() <= limit) break;
  }
  return done;
}

}  // namespace tallyscope
