// SPDX-License-Identifier: MIT
#include "statistics/RadixOrder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
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
constexpr std::size_t kLongRun = std::size_t{1} << 20;  // stations under equal leading bits
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

// Of the numbers up to here.
struct KeyRange {
  std::uint64_t low = ~std::uint64_t{0};
  std::uint64_t high = 0;
  bool numbers = true;

  void Add(std::span<const double> values) {
    KeyRange range = *this;
    for (const double value : values) {
      const auto key = Key(value);
      range.low = std::min(range.low, key);
      range.high = std::max(range.high, key);
      range.numbers &= value == value;
    }
    *this = range;
  }
};

// Whether some of a sample spread over the column are equal: then the column hardly holds distinct values.
bool SampleHasTies(const std::vector<double>& values) {
  std::array<double, 256> sample;
  const std::size_t step = values.size() / sample.size();
  if (step == 0) return false;
  for (std::size_t i = 0; i < sample.size(); ++i) sample[i] = values[i * step];
  std::sort(sample.begin(), sample.end());
  return std::adjacent_find(sample.begin(), sample.end()) != sample.end();
}

// The steps of the sort over a part of the column each.
class RadixSort {
 public:
  RadixSort(const std::vector<double>& values, const KeyRange& range)
      : values_(values),
        low_(range.low),
        shift_(std::max(static_cast<int>(std::bit_width(range.high - range.low)) - 32, 0)),
        records_(std::make_unique_for_overwrite<Record[]>(values.size())),
        sorted_(std::make_unique_for_overwrite<Record[]>(values.size())) {}

  void Make(std::size_t first, std::size_t last) {
    for (std::size_t station = first; station < last; ++station) {
      const Record record = (Key(values_[station]) - low_) >> shift_ << 32 | station;
      for (int digit = 0; digit < kDigits; ++digit) ++counts_[static_cast<std::size_t>(digit)][Digit(record, digit)];
      records_[station] = record;
    }
  }
  void StartDigit(int digit) {
    std::uint32_t position = 0;
    for (auto& count : counts_[static_cast<std::size_t>(digit)]) position += std::exchange(count, position);
  }
  void Place(int digit, std::size_t first, std::size_t last) {
    std::uint32_t* next = counts_[static_cast<std::size_t>(digit)].data();
    const Record* from = records_.get();
    Record* to = sorted_.get();
    for (std::size_t i = first; i < last; ++i) to[next[Digit(from[i], digit)]++] = from[i];
  }
  void EndDigit() { records_.swap(sorted_); }

  const Record* GetRecords() const { return records_.get(); }

 private:
  const std::vector<double>& values_;
  std::uint64_t low_;
  int shift_;
  Records records_;
  Records sorted_;
  Counts counts_{};
};

// Puts the stations of a run of equal records in order. False when values are equal.
bool OrderRun(const std::vector<double>& values, int* first, int* last) {
  const auto value = [&](int station) { return values[static_cast<std::size_t>(station)]; };
  std::sort(first, last, [&](int a, int b) { return value(a) < value(b); });
  return std::adjacent_find(first, last, [&](int a, int b) { return value(a) == value(b); }) == last;
}

}  // namespace

bool OrderDistinct(const std::vector<double>& values, std::vector<int>& stations, double begin, double end,
                   CWorkProgress& progress) {
  const std::size_t size = values.size();
  const double step = (end - begin) / 6;
  double share = begin;
  const auto run = [&](auto part) { return progress.Run(size, share, share + step, part) && (share += step, true); };

  KeyRange range;
  const auto addKeys = [&](std::size_t first, std::size_t last) {
    range.Add(std::span(values).subspan(first, last - first));
  };
  if (!run(addKeys) || !range.numbers || SampleHasTies(values)) return false;
  RadixSort sort(values, range);
  if (!run([&](std::size_t first, std::size_t last) { sort.Make(first, last); })) return false;
  for (int digit = 0; digit < kDigits; ++digit) {
    sort.StartDigit(digit);
    if (!run([&](std::size_t first, std::size_t last) { sort.Place(digit, first, last); })) return false;
    sort.EndDigit();
  }

  const Record* records = sort.GetRecords();
  stations.resize(size);
  const auto takeStations = [&](std::size_t first, std::size_t last) {
    for (std::size_t i = first; i < last; ++i) stations[i] = static_cast<int>(static_cast<std::uint32_t>(records[i]));
  };
  if (!run(takeStations)) return false;
  for (std::size_t first = 0, last = 0; first < size; first = last) {
    while (last < size && records[last] >> 32 == records[first] >> 32) ++last;
    if (last - first > kLongRun) return false;
    if (last - first > 1 && !OrderRun(values, stations.data() + first, stations.data() + last)) return false;
  }
  return true;
}

}  // namespace tallyscope
