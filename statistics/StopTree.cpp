// SPDX-License-Identifier: MIT
#include "statistics/StopTree.h"

#include <algorithm>
#include <limits>

namespace tallyscope {

namespace {

constexpr std::size_t kBlock = 16;  // entries of a level that one entry of the next stands for
constexpr std::ptrdiff_t kStep = kBlock;
constexpr double kInf = std::numeric_limits<double>::infinity();

}  // namespace

StopTree::StopTree(const double* values, std::ptrdiff_t size) : values_(values), size_(static_cast<std::size_t>(size)) {
  for (std::size_t below = size_; below > kBlock;) {
    const std::size_t blocks = (below + kBlock - 1) / kBlock;
    levels_.push_back({std::vector<double>(blocks, -kInf), std::vector<double>(blocks, kInf)});
    for (std::size_t block = 0; block < blocks; ++block) UpdateBlock(levels_.size() - 1, block);
    below = blocks;
  }
}

std::ptrdiff_t StopTree::FindNotBefore(std::ptrdiff_t position, double pivot) const {
  std::size_t level = 0;
  for (const double* entries = values_; entries[position] < pivot;) {
    if (++position % kStep != 0) continue;
    position /= kStep;
    entries = GetHighest(++level);
  }
  while (level > 0) {
    const double* entries = GetHighest(--level);
    position *= kStep;
    while (entries[position] < pivot) ++position;
  }
  return position;
}

std::ptrdiff_t StopTree::FindNotBehind(std::ptrdiff_t position, double pivot) const {
  std::size_t level = 0;
  for (const double* entries = values_; pivot < entries[position];) {
    if (position-- % kStep != 0) continue;
    position = (position + 1) / kStep - 1;
    entries = GetLowest(++level);
  }
  while (level > 0) {
    const double* entries = GetLowest(--level);
    const auto count = static_cast<std::ptrdiff_t>(level == 0 ? size_ : levels_[level - 1].lowest.size());
    position = std::min(position * kStep + kStep, count) - 1;
    while (pivot < entries[position]) --position;
  }
  return position;
}

void StopTree::Update(std::ptrdiff_t position) {
  auto entry = static_cast<std::size_t>(position);
  for (std::size_t level = 0; level < levels_.size(); ++level) {
    entry /= kBlock;
    if (!UpdateBlock(level, entry)) return;
  }
}

// Takes the extremes of a block anew. False when they stay what they were.
bool StopTree::UpdateBlock(std::size_t level, std::size_t block) {
  const double* highest = GetHighest(level);
  const double* lowest = GetLowest(level);
  const std::size_t count = level == 0 ? size_ : levels_[level - 1].highest.size();
  const std::size_t first = block * kBlock;
  const std::size_t last = std::min(first + kBlock, count);
  double high = -kInf;
  double low = kInf;
  for (std::size_t i = first; i < last; ++i) {
    high = highest[i] <= high ? high : highest[i] == highest[i] ? highest[i] : kInf;  // a NaN stops every scan
    low = lowest[i] >= low ? low : lowest[i] == lowest[i] ? lowest[i] : -kInf;
  }
  Level& extremes = levels_[level];
  if (extremes.highest[block] == high && extremes.lowest[block] == low) return false;
  extremes.highest[block] = high;
  extremes.lowest[block] = low;
  return true;
}

}  // namespace tallyscope
