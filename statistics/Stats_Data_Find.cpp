// SPDX-License-Identifier: MIT
#include <algorithm>

#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

// A column in the order of its sort table, read by position.
class SortedColumn {
 public:
  SortedColumn(CStats_Data* data, int field)
      : data_(data), field_(field), size_(data->GetSize()), descending_(ValueAt(size_ - 1) < ValueAt(0)) {}

  double ValueAt(int position) const { return data_->GetValue(field_, data_->GetSortedStation(field_, position)); }
  int Clip(int position) const { return std::clamp(position, 0, size_ - 1); }

  // The ends of a run of `value`, or the places beside it where there is none; both may lie one outside the table.
  int TowardsLower(double value) const {  // the nearest to the low end with raw >= value
    return descending_ ? FirstWhere([=](double raw) { return raw < value; }) - 1
                       : FirstWhere([=](double raw) { return raw >= value; });
  }
  int TowardsHigher(double value) const {  // the nearest to the high end with raw <= value
    return descending_ ? FirstWhere([=](double raw) { return raw <= value; })
                       : FirstWhere([=](double raw) { return raw > value; }) - 1;
  }
  int Below(int position) const { return descending_ ? position + 1 : position - 1; }
  int Above(int position) const { return descending_ ? position - 1 : position + 1; }

  // Plain binary search; the last upper bound when the value is absent.
  bool FindAny(double value, int& position) const {
    int low = 0;
    int high = size_ - 1;
    while (low <= high) {
      position = low + (high - low) / 2;
      const double raw = ValueAt(position);
      if (raw == value) return true;
      if (descending_ ? raw > value : raw < value) {
        low = position + 1;
      } else {
        high = position - 1;
      }
    }
    position = std::max(high, 0);
    return false;
  }

  int FindNearest(double value) const {
    const int above = Clip(TowardsLower(value));
    const int below = Below(above);
    if (below != Clip(below)) return above;
    return value - ValueAt(below) < ValueAt(above) - value ? below : above;
  }

 private:
  template <class Passed>
  int FirstWhere(Passed passed) const {
    int low = 0;
    int high = size_;
    while (low < high) {
      const int middle = low + (high - low) / 2;
      if (passed(ValueAt(middle))) {
        high = middle;
      } else {
        low = middle + 1;
      }
    }
    return low;
  }

  CStats_Data* data_;
  int field_;
  int size_;
  bool descending_;
};

bool Satisfies(double raw, int comparison, double value) {
  switch (comparison) {
    case 0:
      return raw < value;
    case 1:
      return raw <= value;
    case 2:
      return raw == value;
    case 3:
      return raw >= value;
    default:
      return raw > value;
  }
}

// The end of the run of `value` at `position` that `duplicates` asks for.
int EndOfRun(const SortedColumn& column, double value, int position, int duplicates) {
  if (duplicates != 1 && duplicates != 2) return position;
  if (column.ValueAt(position) != value) return position;
  const int end = column.Clip(duplicates == 1 ? column.TowardsLower(value) : column.TowardsHigher(value));
  return column.ValueAt(end) == value ? end : position;
}

}  // namespace

bool CStats_Data::Find(int field, double value, int& position, int comparison, int duplicates) {
  position = GetSize();
  if (position < 1) return false;
  const SortedColumn column(this, field);
  switch (comparison) {
    case 0:
      position = column.Clip(column.Below(column.TowardsLower(value)));
      break;
    case 1:
      position = EndOfRun(column, value, column.Clip(column.TowardsHigher(value)), duplicates);
      break;
    case 2:
      if (column.FindAny(value, position)) position = EndOfRun(column, value, position, duplicates);
      break;
    case 3:
      position = EndOfRun(column, value, column.Clip(column.TowardsLower(value)), duplicates);
      break;
    case 4:
      position = column.Clip(column.Above(column.TowardsHigher(value)));
      break;
    case 5:
      position = column.FindNearest(value);
      return true;
    default:
      return false;
  }
  return Satisfies(column.ValueAt(position), comparison, value);
}

}  // namespace tallyscope
