// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

namespace tallyscope {

// Finds where the two scans of a partition stop, in logarithmic time: the highest and lowest values of blocks of a
// column, of blocks of these, and so on. It looks at the column's values, not owned, which may move under it as long as
// Update hears of each that an answer can depend on.
class StopTree {
 public:
  StopTree(const double* values, std::ptrdiff_t size);

  // The first position from `position` on whose value isn't before `pivot`, and the last position up to `position`
  // whose value `pivot` isn't before. There must be one. Where either is NaN, neither is before the other.
  std::ptrdiff_t FindNotBefore(std::ptrdiff_t position, double pivot) const;
  std::ptrdiff_t FindNotBehind(std::ptrdiff_t position, double pivot) const;

  void Update(std::ptrdiff_t position);  // the value there has changed

 private:
  struct Level {
    std::vector<double> highest;
    std::vector<double> lowest;
  };
  bool UpdateBlock(std::size_t level, std::size_t block);
  const double* GetHighest(std::size_t level) const { return level == 0 ? values_ : levels_[level - 1].highest.data(); }
  const double* GetLowest(std::size_t level) const { return level == 0 ? values_ : levels_[level - 1].lowest.data(); }

  const double* values_;
  std::size_t size_;
  std::vector<Level> levels_;  // above the values; the last one has a block's worth of entries at most
};

}  // namespace tallyscope
