// SPDX-License-Identifier: MIT
#include "statistics/RadixOrder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace tallyscope {

namespace {

// A record is a station (low half) under the leading 32 of the bits in which the column's keys differ (high half), so
// that three passes over 8 bytes a station do.
using Record = std::uint64_t;
using Records = std::unique_ptr<Record[]>;
constexpr int kDigitBits = 11;
constexpr int kDigits = 3;
constexpr std::size_t kDigitValues = std::size_t{1} << kDigitBits;
using Counts = std::array<std::array<std::uint32_t, kDigitValues>, kDigits>;

// An integer in the order of the values; -0.0 counts as 0.0.
std::uint64_t Key(double value) {
  constexpr auto kSign = std::uint64_t{1} << 63;
  const auto bits = std::bit_cast<std::uint64_t>(value + 0.0);
  return (bits & kSign) != 0 ? ~bits : bits | kSign;
}

std::size_t Digit(Record record, int digit) {
  return static_cast<std::size_t>(record >> (32 + kDigitBits * digit)) & (kDigitValues - 1);
}

bool GetKeyRange(const std::vector<double>& values, std::uint64_t& low, std::uint64_t& high) {
  low = ~std::uint64_t{0};
  high = 0;
  bool numbers = true;
  for (const double value : values) {
    const auto key = Key(value);
    low = std::min(low, key);
    high = std::max(high, key);
    numbers &= value == value;
  }
  return numbers;
}

// Whether some of a sample spread over the column are equal: then the column hardly holds distinct values.
bool SampleHasTies(const std::vector<double>& values) {
  std::array<double, 256> sample;
  const std::size_t step = values.size() / sample.size();
  if (step == 0) return false;
  for (std::size_t i = 0; i < sample.size(); ++i) sample[i] = values[i * step];
  std::sort(sample.begin(), sample.end());
  return std::adjacent_find(sample.begin(), sample.end()) != sample.end();
}

void MakeRecords(const std::vector<double>& values, std::uint64_t low, std::uint64_t high, Record* records,
                 Counts& counts) {
  const int shift = std::max(static_cast<int>(std::bit_width(high - low)) - 32, 0);
  for (std::size_t station = 0; station < values.size(); ++station) {
    const Record record = (Key(values[station]) - low) >> shift << 32 | station;
    for (int digit = 0; digit < kDigits; ++digit) ++counts[static_cast<std::size_t>(digit)][Digit(record, digit)];
    records[station] = record;
  }
}

void SortByDigits(Records& records, std::size_t size, Counts& counts) {
  auto sorted = std::make_unique_for_overwrite<Record[]>(size);
  for (int digit = 0; digit < kDigits; ++digit) {
    auto& next = counts[static_cast<std::size_t>(digit)];
    std::uint32_t position = 0;
    for (auto& count : next) position += std::exchange(count, position);
    for (std::size_t i = 0; i < size; ++i) sorted[next[Digit(records[i], digit)]++] = records[i];
    records.swap(sorted);
  }
}

// Puts the stations of a run of equal records in order. False when values are equal.
bool OrderRun(const std::vector<double>& values, int* first, int* last) {
  const auto value = [&](int station) { return values[static_cast<std::size_t>(station)]; };
  std::sort(first, last, [&](int a, int b) { return value(a) < value(b); });
  return std::adjacent_find(first, last, [&](int a, int b) { return value(a) == value(b); }) == last;
}

}  // namespace

bool OrderDistinct(const std::vector<double>& values, std::vector<int>& stations) {
  std::uint64_t low = 0;
  std::uint64_t high = 0;
  if (!GetKeyRange(values, low, high) || SampleHasTies(values)) return false;
  const std::size_t size = values.size();
  auto records = std::make_unique_for_overwrite<Record[]>(size);
  Counts counts{};
  MakeRecords(values, low, high, records.get(), counts);
  SortByDigits(records, size, counts);

  stations.resize(size);
  for (std::size_t i = 0; i < size; ++i) stations[i] = static_cast<int>(static_cast<std::uint32_t>(records[i]));
  for (std::size_t first = 0, last = 0; first < size; first = last) {
    while (last < size && records[last] >> 32 == records[first] >> 32) ++last;
    if (last - first > 1 && !OrderRun(values, stations.data() + first, stations.data() + last)) return false;
  }
  return true;
}

}  // namespace tallyscope
