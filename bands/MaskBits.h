// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "statistics/bvector.h"

namespace tallyscope {

// Sixty-four mask bits at a time, bit i of a word being the mask's bit first + i. Indices are not checked.

constexpr int kMaskWord = 64;

// The lowest `count` set; all of them from 64 on.
constexpr std::uint64_t LowBits(int count) {
  return count >= kMaskWord ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
}

namespace detail {

inline std::uint64_t LoadBytes(const std::uint8_t* bytes, std::size_t count) {
  std::uint64_t word = 0;
  if (std::endian::native == std::endian::little && count >= sizeof word) {
    std::memcpy(&word, bytes, sizeof word);
    return word;
  }
  for (std::size_t i = 0; i < count && i < sizeof word; ++i) word |= std::uint64_t{bytes[i]} << (8 * i);
  return word;
}

}  // namespace detail

// `count` bits from `first`, 0 to 64 of them; the others are 0.
inline std::uint64_t LoadBits(const bvector& mask, int first, int count) {
  if (count <= 0) return 0;
  const int shift = first % 8;
  const std::uint8_t* bytes = mask.GetBytes().data() + first / 8;
  const auto touched = static_cast<std::size_t>((shift + count + 7) / 8);
  std::uint64_t word = detail::LoadBytes(bytes, touched) >> shift;
  if (touched > sizeof word) word |= std::uint64_t{bytes[8]} << (kMaskWord - shift);
  return word & LowBits(count);
}

// The lowest `count` bits of the word, from bit `first` on; those around them stay.
inline void StoreBits(bvector& mask, int first, int count, std::uint64_t word) {
  std::uint8_t* bytes = mask.GetData() + first / 8;
  if (std::endian::native == std::endian::little && first % 8 == 0 && count == kMaskWord) {
    std::memcpy(bytes, &word, sizeof word);
    return;
  }
  for (int shift = first % 8; count > 0; ++bytes, shift = 0) {
    const int taken = count < 8 - shift ? count : 8 - shift;
    const auto kept = static_cast<unsigned>(LowBits(taken)) << shift;
    *bytes = static_cast<std::uint8_t>((*bytes & ~kept) | ((static_cast<unsigned>(word) << shift) & kept));
    word >>= taken;
    count -= taken;
  }
}

// No null among `count` bits from `first`.
inline bool AllClear(const bvector& mask, int first, int count) {
  std::uint64_t any = 0;
  int done = 0;
  for (; done + kMaskWord <= count && any == 0; done += kMaskWord) any = LoadBits(mask, first + done, kMaskWord);
  return any == 0 && (done >= count || LoadBits(mask, first + done, count - done) == 0);
}

}  // namespace tallyscope
