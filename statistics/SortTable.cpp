// SPDX-License-Identifier: MIT
#include "statistics/SortTable.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <memory>
#include <utility>

namespace tallyscope {

namespace {

constexpr int kShortest = 100;  // quicksort from here on

// A value that travels with its station, so that no comparison has to look a value up.
struct Entry {
  double value;
  int station;
};

template <bool kDescending>
bool IsBefore(double a, double b) {
  return kDescending ? a > b : a < b;
}

template <bool kDescending>
void CombSort(std::vector<Entry>& table) {
  const int n = static_cast<int>(table.size());
  const auto wrong = [&](int a, int b) { return IsBefore<kDescending>(table[b].value, table[a].value); };
  int first = 0;
  while (first + 1 < n && !wrong(first, first + 1)) ++first;
  if (first + 1 >= n) return;  // in order already
  int gap = n;
  bool swapped = true;
  while (gap != 1 || swapped) {
    gap = gap * 10 / 13;
    if (gap == 9 || gap == 10) gap = 11;
    if (gap < 1) gap = 1;
    swapped = false;
    for (int i = 0; i < n - gap; ++i) {
      if (!wrong(i, i + gap)) continue;
      std::swap(table[i], table[i + gap]);
      swapped = true;
    }
  }
}

// Hoare's partition round the value in the middle. The pivot's value is what every comparison uses, wherever its station
// moves to.
template <bool kDescending>
std::pair<int, int> Partition(Entry* table, int left, int right) {
  const double pivot = table[(left + right) / 2].value;
  int i = left;
  int j = right;
  while (i <= j) {
    while (IsBefore<kDescending>(table[i].value, pivot)) ++i;
    while (IsBefore<kDescending>(pivot, table[j].value)) --j;
    if (i > j) break;
    std::swap(table[i], table[j]);
    ++i;
    --j;
  }
  return {i, j};
}

template <bool kDescending>
void QuickSort(std::vector<Entry>& entries) {
  Entry* table = entries.data();
  std::array<std::pair<int, int>, 64> stack;  // enough, since the larger part is always the one that waits
  int depth = 0;
  stack[depth++] = {0, static_cast<int>(entries.size()) - 1};
  while (depth > 0) {
    auto [left, right] = stack[--depth];
    while (left < right) {
      const auto [i, j] = Partition<kDescending>(table, left, right);
      if (j - left < right - i) {
        if (i < right) stack[depth++] = {i, right};
        right = j;
      } else {
        if (left < j) stack[depth++] = {left, j};
        left = i;
      }
    }
  }
}

std::vector<int> GetStations(const std::vector<Entry>& entries) {
  std::vector<int> stations(entries.size());
  std::transform(entries.begin(), entries.end(), stations.begin(), [](const Entry& entry) { return entry.station; });
  return stations;
}

template <bool kDescending>
std::vector<int> SortAsPrescribed(const std::vector<double>& values) {
  std::vector<Entry> entries(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) entries[i] = {values[i], static_cast<int>(i)};
  if (values.size() < kShortest) {
    CombSort<kDescending>(entries);
  } else {
    QuickSort<kDescending>(entries);
  }
  return GetStations(entries);
}

// Radix sort, for columns in which no two values are equal: any sort gives the same table then.

constexpr int kDigitBits = 11;
constexpr int kDigits = 6;
constexpr std::size_t kBuckets = std::size_t{1} << kDigitBits;

struct Keyed {
  std::uint64_t key;
  std::uint32_t station;
};

// Bits whose unsigned order is that of the values. The two zeros are one value.
std::uint64_t GetKey(double value, bool descending) {
  const auto bits = std::bit_cast<std::uint64_t>(value + 0.0);
  const auto ascending = bits ^ (bits >> 63 != 0 ? ~std::uint64_t{0} : std::uint64_t{1} << 63);
  return descending ? ~ascending : ascending;
}

using Counts = std::array<std::array<std::uint32_t, kBuckets>, kDigits>;

std::size_t GetDigit(std::uint64_t key, int digit) { return key >> (digit * kDigitBits) & (kBuckets - 1); }

// Whether some of a sample spread over the column are equal: then the column hardly holds distinct values.
bool SampleHasTies(const std::vector<double>& values) {
  std::array<double, 256> sample;
  const std::size_t step = values.size() / sample.size();
  if (step == 0) return false;
  for (std::size_t i = 0; i < sample.size(); ++i) sample[i] = values[i * step];
  std::sort(sample.begin(), sample.end());
  return std::adjacent_find(sample.begin(), sample.end()) != sample.end();
}

// The table, or nothing when two values are equal.
std::vector<int> SortDistinct(const std::vector<double>& values, bool descending) {
  const std::size_t n = values.size();
  auto from = std::make_unique_for_overwrite<Keyed[]>(n);
  auto to = std::make_unique_for_overwrite<Keyed[]>(n);
  auto counts = std::make_unique<Counts>();
  for (std::size_t i = 0; i < n; ++i) {
    const auto key = GetKey(values[i], descending);
    from[i] = {key, static_cast<std::uint32_t>(i)};
    for (int digit = 0; digit < kDigits; ++digit) ++(*counts)[digit][GetDigit(key, digit)];
  }
  for (int digit = 0; digit < kDigits; ++digit) {
    auto& places = (*counts)[digit];
    if (places[GetDigit(from[0].key, digit)] == n) continue;  // all alike in this digit
    std::uint32_t place = 0;
    for (auto& count : places) place += std::exchange(count, place);
    for (std::size_t i = 0; i < n; ++i) to[places[GetDigit(from[i].key, digit)]++] = from[i];
    from.swap(to);
  }
  for (std::size_t i = 1; i < n; ++i) {
    if (from[i - 1].key == from[i].key) return {};
  }
  std::vector<int> stations(n);
  for (std::size_t i = 0; i < n; ++i) stations[i] = static_cast<int>(from[i].station);
  return stations;
}

}  // namespace

std::vector<int> MakeSortTable(const std::vector<double>& values, bool descending) {
  const bool hasNan = std::any_of(values.begin(), values.end(), [](double value) { return std::isnan(value); });
  if (values.size() >= kShortest && !hasNan && !SampleHasTies(values)) {
    auto table = SortDistinct(values, descending);
    if (!table.empty()) return table;
  }
  return descending ? SortAsPrescribed<true>(values) : SortAsPrescribed<false>(values);
}

}  // namespace tallyscope
