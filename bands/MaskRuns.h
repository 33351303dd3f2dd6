// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

#include "bands/MaskBits.h"

namespace tallyscope {

// First bit from `first` on that is `value`, below `end`; `end` if there is none.
inline int FindBit(const bvector& mask, int first, int end, bool value) {
  while (first < end) {
    const int count = std::min(kMaskWord, end - first);
    std::uint64_t word = LoadBits(mask, first, count);
    if (!value) word = ~word & LowBits(count);
    if (word != 0) return first + std::countr_zero(word);
    first += count;
  }
  return end;
}

// Last bit below `end` that is `value`, not before `first`; first - 1 if there is none.
inline int FindBitBefore(const bvector& mask, int first, int end, bool value) {
  while (end > first) {
    const int count = std::min(kMaskWord, end - first);
    std::uint64_t word = LoadBits(mask, end - count, count);
    if (!value) word = ~word & LowBits(count);
    if (word != 0) return end - count + kMaskWord - 1 - std::countl_zero(word);
    end -= count;
  }
  return first - 1;
}

}  // namespace tallyscope
