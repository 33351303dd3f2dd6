// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "host/HostColumn.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

// A table in memory, column by column, as the readers leave it.
//   std::unique_ptr<CHostTable> table = OpenTable("meuse.csv", {}, nullptr, error);
//   table->GetValueName(-1);   // "x"
// A column that serves as an axis is no ordinary field any more: the fields are the remaining columns in the order of
// the file. A raw read of a null gives the limit of "<0.01", the value of a declared null, and kEmptyCell for the
// others.
class CHostTable : public CStats_Data {
 public:
  // Every column has been finished with `stations` rows.
  CHostTable(std::vector<CHostColumn> columns, int stations);

  // Takes up to three columns as X, Y, Z; the others become the fields. Says DataChanged.
  // REQUIRES: distinct indices of columns.
  void SetAxes(std::span<const int> columns);

  int GetColumnCount() const { return static_cast<int>(columns_.size()); }
  const CHostColumn& GetColumn(int dim) const { return *dims_[Entry(dim)]; }
  // By place in the file, whatever the axes are.
  const std::vector<CHostColumn>& GetFileColumns() const { return columns_; }
  std::vector<CString> GetColumnNames() const;  // likewise
  int FindDim(const CString& name) const;       // exact, axes too; kNoDim when there is none

  static constexpr int kNoDim = tallyscope::kNoDim;

  // Lets `change` set values, labels and validity of a column, but not the number of rows. Says DataChanged behind it,
  // also where it throws.
  void ChangeColumn(int dim, const std::function<void(CHostColumn&)>& change);

  int GetSize() override { return stations_; }
  int GetSpatialSize() override { return axes_; }
  int GetValueSize() override { return GetColumnCount() - axes_; }
  CString GetValueName(int field) override { return GetColumn(field).name; }
  bool GetValue(int field, int station, double& value) override;
  double GetValue(int field, int station) override;
  bool IsValueValid(int field, int station) override;

  int ReadValues(int field, int first, int count, double* values, unsigned char* valid) override;
  void ReadRawValues(int field, int first, int count, double* values) override;
  int ReadValuesAt(int field, const int* stations, int count, double* values, unsigned char* valid) override;
  void ReadRawValuesAt(int field, const int* stations, int count, double* values) override;

 private:
  // Axes stand in front, so dim -1 is entry 0 and field 0 comes behind the last axis.
  std::size_t Entry(int dim) const { return static_cast<std::size_t>(dim < 0 ? -1 - dim : axes_ + dim); }

  std::vector<CHostColumn> columns_;
  std::vector<const CHostColumn*> dims_;
  int stations_;
  int axes_ = 0;
};

}  // namespace tallyscope
