// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tallyscope {

// Whether a result of so many cells along each axis, none negative, is one that memory is given to: 2^24 cells, and in
// all 2^31 bytes of what each of them needs from the start.
inline bool IsReasonableCellCount(const std::array<int, 3>& counts, std::size_t bytesPerCell) {
  constexpr std::uint64_t kMostCells = std::uint64_t{1} << 24;
  constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 31;
  std::uint64_t cells = 1;
  for (const int count : counts) {
    if (count == 0) return true;
    if (cells <= kMostCells) cells *= static_cast<std::uint64_t>(count);
  }
  return cells <= kMostCells && cells * bytesPerCell <= kMostBytes;
}

}  // namespace tallyscope
