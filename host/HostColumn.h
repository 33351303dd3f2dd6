// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "platform/core/String.h"

namespace tallyscope {

// What a raw read gives for an empty cell, and for every other null that has no value of its own.
inline constexpr double kEmptyCell = -1e32;

// What the reader left out of a column, or found in it.
struct ColumnCounts {
  int nulls = 0;           // of every kind, those below apart
  int declaredNulls = 0;   // of these: values declared as null
  int belowDetection = 0;  // cells such as "<0.01"
  int aboveDetection = 0;  // cells such as ">1000"
  int badCells = 0;        // cells of a numeric column that are no numbers
};

// One column in memory: 8 bytes a value in one piece, and a bit that says whether it is valid. A text column holds the
// codes 1, 2, ... of its labels in order of first appearance.
class CHostColumn {
 public:
  CString name;
  bool holdsTexts = false;      // stays, also when no label is left
  std::vector<CString> labels;  // labels[code - 1]; empty for a column of numbers
  ColumnCounts counts;

  bool IsText() const { return holdsTexts; }

  // Room for `rows` values. Values that were there stay, new ones are unset and valid. Throws bad_alloc.
  void Reserve(std::size_t rows);
  // Fixes the number of rows and gives back what Reserve took beyond it.
  void Finish(std::size_t rows);
  std::size_t GetCapacity() const { return capacity_; }

  double* GetValues() { return values_.get(); }
  const double* GetValues() const { return values_.get(); }
  bool IsValid(std::size_t row) const { return (valid_[row / 64] >> (row % 64) & 1) != 0; }
  void SetValid(std::size_t row, bool valid) {
    const std::uint64_t bit = std::uint64_t{1} << (row % 64);
    valid_[row / 64] = valid ? valid_[row / 64] | bit : valid_[row / 64] & ~bit;
  }
  void SetNull(std::size_t row, double raw) {
    values_.get()[row] = raw;
    SetValid(row, false);
  }
  // Validity of the 64 rows from 64 * `word`, the first in the lowest bit. Bits behind the last row are 0.
  std::uint64_t GetValidWord(std::size_t word) const { return valid_[word]; }
  std::size_t CountValid() const;

 private:
  struct Free {
    void operator()(double* block) const { std::free(block); }  // NOLINT: the block comes from realloc
  };
  void Resize(std::size_t rows);

  // From realloc: the system moves pages of a large block instead of copying them, so growing never needs twice the
  // room.
  std::unique_ptr<double, Free> values_;
  std::vector<std::uint64_t> valid_;
  std::size_t capacity_ = 0;
};

}  // namespace tallyscope
