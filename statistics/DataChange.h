// SPDX-License-Identifier: MIT
#pragma once

#include "statistics/Dim.h"

namespace tallyscope {

// What of a table its host has changed. kColumn: values, nulls or the heading of the column `dim`. kAxes: which columns
// are the axes, so that every dim may name another column than before. kAll: anything, the number of stations too.
struct DataChange {
  enum Kind { kColumn, kAxes, kAll };
  Kind kind = kAll;
  int dim = kNoDim;

  static DataChange Column(int dim) { return {kColumn, dim}; }
  static DataChange Axes() { return {kAxes, kNoDim}; }
  static DataChange All() { return {kAll, kNoDim}; }

  bool Concerns(int column) const { return kind != kColumn || dim == column; }
};

// Who keeps something that hangs on a table's values: it drops it when told. See CStats_Data::AddListener.
class CDataListener {
 public:
  virtual ~CDataListener() = default;
  virtual void OnDataChanged(const DataChange& change) = 0;
};

}  // namespace tallyscope
