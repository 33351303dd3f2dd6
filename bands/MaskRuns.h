// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

#include "bands/MaskBits.h"

namespace tallyscope {

// Runs of set or clear bits in a mask, found a word at a time: a band with few nulls is passed over quickly.

// First bit from `first` on that is `value`, below `end`; `end` if there is none. REQUIRES: bits up to `end`.
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
