// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "statistics/Stats_Data.h"

namespace tallyscope {

// Tables that are made up: columns with closed forms, columns of chance with a fixed seed, tables written as text.
//   CMadeTable table({made::Ramp(500, 0, 499), made::WithNulls(made::Normal(500, 100, 15), made::Every(3))});
//   auto small = TableFrom(R"(X  Y  Au
//                             0  0  1.5
//                             1  0  -   )");

struct MadeColumn {
  CString name;
  std::vector<double> values;
  std::vector<std::uint64_t> valid;  // a bit for each station; a null keeps its raw value

  bool IsValid(int station) const { return (valid[static_cast<std::size_t>(station) / 64] >> (station % 64) & 1) != 0; }
  void SetNull(int station) { valid[static_cast<std::size_t>(station) / 64] &= ~(std::uint64_t{1} << (station % 64)); }
};

namespace made {

MadeColumn Column(std::vector<double> values, CString name = "Made");  // all valid
MadeColumn Ramp(int stations, double from, double to);
MadeColumn Constant(int stations, double value);
MadeColumn Normal(int stations, double mean, double deviation, unsigned seed = 20240611);
// Rounded to multiples of `step`, so that values repeat.
MadeColumn Rounded(MadeColumn column, double step);
MadeColumn WithNulls(MadeColumn column, const std::function<bool(int station)>& isNull);
std::function<bool(int station)> Every(int step);  // stations 0, step, 2 * step ...

}  // namespace made

// Columns in memory as a host keeps them: eight bytes a value, one validity bit a station, and bulk reads of its own.
// The first `axes` columns are X, Y, Z, the others the fields.
class CMadeTable : public CStats_Data {
 public:
  explicit CMadeTable(std::vector<MadeColumn> columns, int axes = 0);

  int GetSize() override { return size_; }
  int GetSpatialSize() override { return axes_; }
  int GetValueSize() override { return static_cast<int>(columns_.size()) - axes_; }
  CString GetValueName(int field) override { return GetMade(field).name; }
  using CStats_Data::GetValue;
  double GetValue(int field, int station) override;
  bool IsValueValid(int field, int station) override { return GetMade(field).IsValid(station); }

  int ReadValues(int field, int first, int count, double* values, unsigned char* valid) override;
  void ReadRawValues(int field, int first, int count, double* values) override;

  MadeColumn& GetMade(int field) { return columns_[static_cast<std::size_t>(field < 0 ? -1 - field : axes_ + field)]; }

 private:
  std::vector<MadeColumn> columns_;
  int size_;
  int axes_;
};

// Headings, then a line a station; "-" is a null with the raw value -999. Headings X, Y, Z in front are axes.
CMadeTable TableFrom(std::string_view text);

// Another table read value by value, through the single reads alone.
class CSingleReads : public CStats_Data {
 public:
  explicit CSingleReads(CStats_Data& table) : table_(table) {}

  int GetSize() override { return table_.GetSize(); }
  int GetSpatialSize() override { return table_.GetSpatialSize(); }
  int GetValueSize() override { return table_.GetValueSize(); }
  using CStats_Data::GetValue;
  double GetValue(int field, int station) override {
    ++rawReads;
    return table_.GetValue(field, station);
  }
  bool IsValueValid(int field, int station) override { return table_.IsValueValid(field, station); }
  bool CanSort() override { return canSort && CStats_Data::CanSort(); }

  bool canSort = true;
  long rawReads = 0;

 private:
  CStats_Data& table_;
};

}  // namespace tallyscope
