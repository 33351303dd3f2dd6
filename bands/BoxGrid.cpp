// SPDX-License-Identifier: MIT
#include "bands/BoxGrid.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "platform/core/WideVectors.h"

namespace tallyscope {

namespace {

constexpr int kChunk = 32;
constexpr int kSegments = 4;  // of chunks, that a window is taken to be

// Of numbers without their signs, as the integers that their bits are.
struct Sizes {
  std::uint32_t largest = 0;
  // The smallest less 1: 0 less 1 is the largest of all, so zeros don't count.
  std::uint32_t lessOne = ~std::uint32_t{0};
};

TALLYSCOPE_WIDE_VECTORS
Sizes GetSizes(const float* samples, int count) {
  Sizes sizes;
  for (int i = 0; i < count; ++i) {
    const std::uint32_t size = std::bit_cast<std::uint32_t>(samples[i]) & 0x7fffffff;
    sizes.largest = size > sizes.largest ? size : sizes.largest;
    sizes.lessOne = size - 1 < sizes.lessOne ? size - 1 : sizes.lessOne;
  }
  return sizes;
}

using Doubles [[gnu::vector_size(32)]] = double;
using Floats [[gnu::vector_size(16), gnu::aligned(alignof(float)), gnu::may_alias]] = float;

// The sum of each chunk; and the largest that one's samples without their signs have.
TALLYSCOPE_WIDE_VECTORS
double SumChunks(const float* samples, int chunks, double* sums) {
  double largest = 0;
  for (int c = 0; c < chunks; ++c) {
    Doubles sum{};
    Doubles size{};
    for (int i = 0; i < kChunk; i += 4, samples += 4) {
      const Doubles four = __builtin_convertvector(*reinterpret_cast<const Floats*>(samples), Doubles);
      sum += four;
      size += four < 0 ? -four : four;
    }
    sums[c] = (sum[0] + sum[1]) + (sum[2] + sum[3]);
    const double all = (size[0] + size[1]) + (size[2] + size[3]);
    largest = all > largest ? all : largest;
  }
  return largest;
}

// How many samples of each chunk, of which the last may be shorter, are no multiples of a power of two.
TALLYSCOPE_WIDE_VECTORS
void CountFineOfChunks(const float* samples, double beside, int count, int* fine) {
  const auto isFine = [&](int i) {
    const auto sample = static_cast<double>(samples[i]);
    return (sample + beside) - beside != sample ? 1 : 0;
  };
  int first = 0;
  for (; first + kChunk <= count; first += kChunk) {
    int in = 0;
    for (int i = 0; i < kChunk; ++i) in += isFine(first + i);
    *fine++ = in;
  }
  int in = 0;
  for (; first < count; ++first) in += isFine(first);
  *fine = in;
}

}  // namespace

// Of the sums of up to `width` samples in a row, sign aside, and of all that are passed on the way to them: the range
// of the sums before each chunk, over the chunks that a window can meet. What lies between adds at most a chunk at each
// end.
double CBoxGrid::GetLargestSum(std::span<const float> samples, int width) {
  const auto chunks = static_cast<int>(samples.size() / kChunk);
  sums_.resize(static_cast<std::size_t>(chunks));
  double chunk = SumChunks(samples.data(), chunks, sums_.data());
  double rest = 0;
  for (const float sample : samples.subspan(sums_.size() * kChunk)) rest += std::fabs(static_cast<double>(sample));
  chunk = std::max(chunk, rest);

  const int reach = width / kChunk + 2;
  const int segment = std::max(1, reach / kSegments);
  ranges_.clear();
  double sum = 0;
  for (int first = 0; first <= chunks; first += segment) {
    Range range{sum, sum};
    for (int c = first; c < std::min(first + segment, chunks); ++c) {
      range = {std::min(range.low, sum), std::max(range.high, sum)};
      sum += sums_[static_cast<std::size_t>(c)];
    }
    if (chunks < first + segment) range = {std::min(range.low, sum), std::max(range.high, sum)};
    ranges_.push_back(range);
  }
  const auto met = static_cast<std::size_t>((segment - 1 + reach) / segment);
  double between = 0;
  for (std::size_t s = 0; s < ranges_.size(); ++s) {
    Range range = ranges_[s];
    for (std::size_t t = s + 1; t <= s + met && t < ranges_.size(); ++t) {
      range = {std::min(range.low, ranges_[t].low), std::max(range.high, ranges_[t].high)};
    }
    between = std::max(between, range.high - range.low);
  }
  // What the sums have lost themselves: each addition at most half an ulp of what the chunks so far hold.
  const double lost = 0x1p-50 * chunks * chunks * chunk;
  return std::max(between + 2 * chunk, kSlack * chunk) + lost;
}

// The largest number of fine samples in a window.
int CBoxGrid::CountFine(std::span<const float> samples, int width) {
  const auto count = static_cast<int>(samples.size());
  fine_.resize(static_cast<std::size_t>(count / kChunk) + 1);
  CountFineOfChunks(samples.data(), 0x1.8p52 * step_, count, fine_.data());
  const auto reach = static_cast<std::size_t>(width / kChunk) + 2;
  int most = 0;
  int inWindow = 0;
  for (std::size_t c = 0; c < fine_.size(); ++c) {
    inWindow += fine_[c];
    if (c >= reach) inWindow -= fine_[c - reach];
    most = std::max(most, inWindow);
  }
  return most;
}

// A float is a whole number of units, 2^-23 of its power of two.
bool CBoxGrid::Fit(std::span<const float> samples, int width) {
  constexpr std::uint32_t kNoNumber = 0x7f800000;  // infinity; NaNs are beyond
  constexpr int kBias = 127;
  bound_ = 0;
  const Sizes sizes = GetSizes(samples.data(), static_cast<int>(samples.size()));
  if (sizes.largest >= kNoNumber) return false;
  if (sizes.largest == 0) return true;
  const int largest = static_cast<int>(sizes.largest >> 23);
  const int smallest = static_cast<int>((sizes.lessOne + 1) >> 23);
  const double unit = std::ldexp(1.0, std::max(smallest, 1) - kBias - 23);
  if (std::ldexp(1.0, largest + 1 - kBias) * (width + 2.0 + kSlack) < 0x1p53 * unit) return true;
  int power = 0;
  std::frexp(GetLargestSum(samples, width) * (1 + 0x1p-16), &power);
  step_ = std::ldexp(1.0, power - 53);
  if (step_ > unit) bound_ = 2.0 * CountFine(samples, width) * step_;
  return true;
}

}  // namespace tallyscope
