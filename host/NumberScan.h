// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tallyscope {

// Reads a whole text as a decimal number: sign, digits with `decimal` among them, exponent. Rounds as strtod does, to 0
// where the number is too small for a double. False for anything else, for hexadecimal, for the words of infinity and
// NaN, and for what is too large for a double.
bool ParseNumber(std::string_view text, char decimal, double& value);

// The number that starts at `p`, in the same form but for a leading "+": the place behind it, or null when there is
// none. With a decimal point only. Never reads `end` or beyond.
const char* ScanNumber(const char* p, const char* end, double& value);

// The bytes that ScanPlainNumber may look at.
inline constexpr std::ptrdiff_t kPlainNumberReach = 32;

namespace number_scan {

// Bit i is set where byte i of the 16 from `p` is no digit.
inline std::uint32_t NonDigits(const char* p) {
#if defined(__SSE2__)
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  const __m128i digits = _mm_sub_epi8(bytes, _mm_set1_epi8('0'));
  const __m128i isDigit = _mm_cmpeq_epi8(_mm_min_epu8(digits, _mm_set1_epi8(9)), digits);
  return ~static_cast<std::uint32_t>(_mm_movemask_epi8(isDigit)) & 0xFFFF;
#else
  std::uint32_t mask = 0;
  for (int i = 0; i < 16; ++i) mask |= static_cast<std::uint32_t>(static_cast<unsigned char>(p[i] - '0') > 9) << i;
  return mask;
#endif
}

// The number that the first `count` bytes at `p` spell, all digits, at most 8. Reads 8 bytes. The digits are pushed to
// the upper end of a word, which fills the lower end with zeros; then neighbours are joined to pairs, fours and eights.
inline std::uint64_t Digits8(const char* p, unsigned count) {
  std::uint64_t word = 0;
  std::memcpy(&word, p, sizeof word);
  if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
  word -= 0x3030303030303030;
  word = word << (32 - 4 * count) << (32 - 4 * count);  // in two steps, as a shift by 64 has no meaning
  word = word * 10 + (word >> 8);
  constexpr std::uint64_t kPairs = 0x000000FF000000FF;
  return ((word & kPairs) * (100 + (std::uint64_t{1000000} << 32)) +
          (word >> 16 & kPairs) * (1 + (std::uint64_t{10000} << 32))) >>
         32;
}

inline constexpr double kPowers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8};
inline constexpr std::uint64_t kWholePowers[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};

}  // namespace number_scan

// The quick way for the numbers that tables are full of: a minus at most, up to 8 digits, and `decimal` with up to 8
// more. Returns the place of the first byte behind the number, and null when the number is of another kind. That the
// byte ends the cell is for the caller to see: an exponent may begin there. The digits make a whole number below 2^53,
// and the power of ten is exact as well, so the one division rounds as strtod. REQUIRES: kPlainNumberReach readable
// bytes from `p`.
[[gnu::always_inline]] inline const char* ScanPlainNumber(const char* p, char decimal, double& value) {
  const std::uint32_t negative = *p == '-' ? 1 : 0;
  const std::uint32_t others = (number_scan::NonDigits(p) & ~negative) | 0x10000;
  const auto whole = static_cast<std::uint32_t>(std::countr_zero(others));  // with the minus
  std::uint32_t fraction = 0;
  std::uint32_t end = whole;
  if (p[whole] == decimal) {
    end = static_cast<std::uint32_t>(std::countr_zero((others & (others - 1)) | 0x20000));
    fraction = end - whole - 1;
  }
  const std::uint32_t digitsBefore = whole - negative;
  if (digitsBefore > 8 || fraction > 8 || end > 15 || digitsBefore + fraction == 0) return nullptr;
  const std::uint64_t digits = number_scan::Digits8(p + negative, digitsBefore) * number_scan::kWholePowers[fraction] +
                               number_scan::Digits8(p + whole + 1, fraction);
  const double size = static_cast<double>(static_cast<std::int64_t>(digits)) / number_scan::kPowers[fraction];
  value = negative != 0 ? -size : size;
  return p + end;
}

}  // namespace tallyscope
