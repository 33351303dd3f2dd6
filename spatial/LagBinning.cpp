// SPDX-License-Identifier: MIT
#include "spatial/LagBinning.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "spatial/CellLimit.h"
#include "spatial/LagGrid.h"
#include "spatial/LeafTests.h"

namespace tallyscope {

namespace {

using leaf_tests::kFlat;
using leaf_tests::kPi;

constexpr double kVertical = 1e-12;  // a shorter horizontal part counts as none
constexpr double kLevel = 1e-12;     // so does a smaller difference in height

// The C library's atan, without the call where its result is known.
double Atan(double ratio) {
  static const double ofOne = std::atan(1.0);
  if (ratio == 0) return ratio;
  return std::fabs(ratio) == 1 ? std::copysign(ofOne, ratio) : std::atan(ratio);
}

// leaf_tests::FullCircleAngle with that atan.
double GetAngle(double dx, double dy) {
  if (!(std::fabs(dx) > kFlat)) return leaf_tests::FullCircleAngle(dx, dy);
  const double angle = Atan(dy / dx);
  if (dx < 0) return angle + kPi;
  return dy < 0 ? angle + 2 * kPi : angle;
}

}  // namespace

LagBinning::LagBinning(const LagSettings& settings) : polar_(settings.IsPolar()) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    active_[axis] = settings.IsActive(static_cast<int>(axis));
    if (active_[axis]) counts_[axis] = std::max(0, settings.count[axis]);
    if (active_[axis] && !polar_) halves_[axis] = std::max(1, counts_[axis] / 2);
  }
  const std::array<int, 3> cells{std::max(1, counts_[0]), std::max(1, counts_[1]), std::max(1, counts_[2])};
  if (IsReasonableCellCount(cells, sizeof(LagCell))) cellCount_ = counts_[0] * counts_[1] * counts_[2];
  for (std::size_t axis = 0; axis < 3; ++axis) {
    widths_[axis] = polar_ ? settings.range[0] / counts_[0] : 2 * settings.range[axis] / counts_[axis];
  }
}

int LagBinning::GetNumber(int level, int row, int column) const {
  const auto isOutside = [](int bin, int count) { return bin < 0 || bin >= count; };
  if (isOutside(level, counts_[2]) || isOutside(row, counts_[1]) || isOutside(column, counts_[0])) return kNoCell;
  return (level * counts_[1] + row) * counts_[0] + column;
}

int LagBinning::GetPolarCell(double dx, double dy, double dz) const {
  const double h = std::sqrt(dx * dx + dy * dy);
  const double d = active_[2] ? std::sqrt(dz * dz + h * h) : h;
  const double lags = d / widths_[0];
  if (!(lags > -1 && lags < counts_[0])) return kNoCell;
  // A bin past the end through rounding is the last bin.
  const int row = std::min(counts_[1] - 1, static_cast<int>(counts_[1] * GetAngle(dx, dy) / (2 * kPi)));
  return GetNumber(active_[2] ? GetDip(h, dz) : 0, row, static_cast<int>(lags));
}

int LagBinning::GetDip(double h, double dz) const {
  const int half = counts_[2] / 2;
  if (std::fabs(h) <= kVertical) return dz < 0 ? 0 : dz > 0 ? counts_[2] - 1 : half;
  if (std::fabs(dz) <= kLevel) return half;
  return std::min(counts_[2] - 1, static_cast<int>(Atan(dz / h) * half / (kPi / 2) + half));
}

int LagBinning::GetBox(double dx, double dy, double dz) const {
  const double separation[3] = {dx, dy, dz};
  int bins[3] = {};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (!active_[axis]) continue;
    const double place = std::floor(separation[axis] / widths_[axis]);
    if (!(place >= -halves_[axis] && place < halves_[axis])) return kNoCell;
    bins[axis] = static_cast<int>(place) + halves_[axis];
  }
  const int cell = GetNumber(bins[2], bins[1], bins[0]);
  if (cell != kNoCell) return cell;
  // An axis of one cell has only the lower of its two halves.
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (active_[axis]) bins[axis] = 2 * halves_[axis] - 1 - bins[axis];
  }
  return GetNumber(bins[2], bins[1], bins[0]);
}

int LagBinning::GetMirror(int cell) const {
  int bins[3] = {cell % counts_[0], cell / counts_[0] % counts_[1], cell / counts_[0] / counts_[1]};
  if (polar_) {
    bins[1] += counts_[1] / 2;
    if (bins[1] >= counts_[1]) bins[1] -= counts_[1];
    // With an odd number of dips the last one would have its opposite below the first.
    if (active_[2]) bins[2] = std::max(0, counts_[2] / 2 * 2 - 1 - bins[2]);
  } else {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (active_[axis]) bins[axis] = 2 * halves_[axis] - 1 - bins[axis];
    }
  }
  return GetNumber(bins[2], bins[1], bins[0]);
}

bool LagBinning::IsMirrorMutual() const {
  const auto isEven = [this](int axis) { return counts_[static_cast<std::size_t>(axis)] % 2 == 0; };
  return !polar_ || (isEven(1) && (!active_[2] || isEven(2)));
}

}  // namespace tallyscope
