// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

#include "statistics/Stats_Data.h"

namespace tallyscope {

// A table of columns in memory that answers single reads only. Nulls keep their raw value.
class PairTable : public CStats_Data {
 public:
  struct Cell {
    double value;
    bool null = false;
  };
  using Column = std::vector<Cell>;

  explicit PairTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

  bool sortable = true;
  int reads = 0;

  using CStats_Data::GetValue;
  int GetSize() override { return columns_.empty() ? 0 : static_cast<int>(columns_[0].size()); }
  int GetValueSize() override { return static_cast<int>(columns_.size()); }
  bool CanSort() override { return sortable; }
  double GetValue(int field, int station) override {
    ++reads;
    return At(field, station).value;
  }
  bool IsValueValid(int field, int station) override { return !At(field, station).null; }

 private:
  const Cell& At(int field, int station) const {
    return columns_.at(static_cast<std::size_t>(field)).at(static_cast<std::size_t>(station));
  }

  std::vector<Column> columns_;
};

inline constexpr PairTable::Cell kNull{-1e32, true};

// Whole numbers, no two alike, in random order; every station that `isNull` names is null.
template <class IsNull>
PairTable::Column Shuffled(int count, unsigned seed, IsNull isNull) {
  PairTable::Column column;
  for (int i = 0; i < count; ++i) column.push_back({3.0 * i - count});
  std::shuffle(column.begin(), column.end(), std::mt19937(seed));
  for (int i = 0; i < count; ++i) column[static_cast<std::size_t>(i)].null = isNull(i);
  return column;
}

}  // namespace tallyscope
