// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "platform/core/String.h"
#include "statistics/DataChange.h"
#include "statistics/SortTable.h"

namespace tallyscope {

class CProgressSink;
class CStats_ModelVariogram;
class CStats_PointSearch;
class CStats_SampleVariogram;

// The one view of a table that the whole system reads: stations (rows) by fields (columns), plus up to three spatial
// axes.
//
// A column is named by a dim: 0, 1, ... are the ordinary fields, -1, -2, -3 the axes X, Y, Z. A station is a row index
// from 0. Every operation takes the field first and the station second; indices are not checked.
//
// A host overrides at least GetSize, GetValueSize, GetValueName, the raw GetValue and IsValueValid, and GetSpatialSize
// when it has coordinates (its reads then answer the negative dims too). The raw GetValue must answer for a null as
// well: sorting and searching read raw values only. A host whose values change says so by DataChanged.
//
// A host's read, or a sink, may throw: the exception passes through every operation and calculator, and leaves them as
// after a cancel.
//
// Reads change nothing, nor do IsSorted, GetSortTable, GetSortedStation, GetRanks and Find: several threads may do
// these at once, as far as the host's own reads allow it, while none sorts, takes a table, builds the search or says
// DataChanged.
class CStats_Data {
 public:
  CStats_Data() = default;
  CStats_Data(const CStats_Data&) = delete;
  CStats_Data& operator=(const CStats_Data&) = delete;
  virtual ~CStats_Data();

  virtual int GetSize() { return 0; }  // stations

  // The host's word that its values have changed, after they have. Drops what hangs on them: sort tables, the search,
  // and what each listener keeps. No query of the search may be under way, and no other thread may read.
  void DataChanged(const DataChange& change);
  // Who is told of each change, as long as it lives. One that throws keeps no other from hearing of it.
  void AddListener(std::weak_ptr<CDataListener> listener);

  // Sort tables. A column has one at most, from sorted position to station. Tables don't change once they are made.

  // True when the tables of all columns at once would take at most 2^28 bytes.
  virtual bool CanSort();

  // Gives the column a table unless it has one in that direction (0 ascending, otherwise descending). Past CanSort it
  // does nothing, and after a cancel the table that stood still stands, so a caller that needs the table asks IsSorted
  // afterwards. Nulls sort by their raw value. Not stable: the order of equal values is what comb sort (below 100
  // stations) and quicksort leave, and is always the same. The sink hears of large tables only.
  virtual void Sort(int field, int descending, CProgressSink* progress);
  // Whether the column has a table in that direction, told by the same number that Sort was given.
  virtual bool IsSorted(int field, int descending);
  virtual void SetSorted(bool sorted, int field, int descending);  // the mark alone; for a table of the host's own
  virtual void ClearSort();  // of all columns; for memory, since DataChanged does it for changed values

  // The table that the column has, sorted or marked otherwise since; null without one. Whoever holds it may read it
  // while the column is sorted anew.
  std::shared_ptr<const SortTable> GetSortTable(int field);
  // Gives the column a table that MakeSortTable has made of it, on a worker's thread perhaps.
  void TakeSortTable(int field, int descending, std::shared_ptr<const SortTable> table);

  // Position of each station in the column's table; leaves `ranks` alone when the column is sorted in neither
  // direction.
  virtual void GetRanks(int field, std::vector<int>& ranks);
  virtual int GetSortedStation(int field, int position);  // the table must exist

  // Binary search in the column's table, which must exist. `comparison`: 0 "<", 1 "<=", 2 "==", 3 ">=", 4 ">",
  // 5 nearest. `duplicates`: of a run of equal values 1 takes the end towards lower values, 2 the one towards higher,
  // anything else whichever the search met. False when nothing satisfies the test; `position` is then still an index of
  // the table, unless that is empty.
  virtual bool Find(int field, double value, int& position, int comparison, int duplicates);

  virtual int GetSpatialSize() { return 0; }  // axes, 0 to 3
  virtual int GetValueSize() { return 1; }    // ordinary fields
  virtual CString GetValueName(int field);    // "X", "Y", "Z", "Field 0" ... by default

  // Checked read: false for a null, which leaves `value` alone.
  virtual bool GetValue(int field, int station, double& value);
  // Raw read: the stored value, null or not.
  virtual double GetValue(int field, int station);
  virtual bool IsValueValid(int field, int station);

  // Station in the data set that this one was derived from, followed to the root.
  virtual int GetSourceStation(int station) { return station; }

  // The spatial search over this table: made on first call, owned here. DestroyPointSearch ends it; the next call makes
  // another, on the axes.
  virtual CStats_PointSearch* GetPointSearch();
  virtual void DestroyPointSearch();
  // Builds the search over the columns that it has been given, unless it stands. True as well, with nothing built, when
  // those are fewer than two: ask IsPartitioned. False when the sink cancels.
  bool PreparePointSearch(CProgressSink* progress);

  // A host that keeps the variograms of its fields itself answers with them; a session then uses these objects, which
  // must outlive it, instead of its own. Null: it keeps none.
  virtual CStats_SampleVariogram* GetVariogram(int /*field*/) { return nullptr; }
  virtual CStats_ModelVariogram* GetVariogramModel(int /*field*/) { return nullptr; }

  // Bulk reads give exactly what the single reads would, and the defaults loop over those. A subclass that overrides
  // the single reads of a class with bulk reads of its own must override these too.

  // Checked reads of `count` stations from `first`: valid[i] is 1 or 0, values[i] is left unset for a null. Returns the
  // number of valid ones.
  virtual int ReadValues(int field, int first, int count, double* values, unsigned char* valid);
  // Raw reads of `count` stations from `first`.
  virtual void ReadRawValues(int field, int first, int count, double* values);
  // The same for stations in any order.
  virtual int ReadValuesAt(int field, const int* stations, int count, double* values, unsigned char* valid);
  virtual void ReadRawValuesAt(int field, const int* stations, int count, double* values);

 private:
  struct ColumnOrder {
    std::shared_ptr<const SortTable> table;
    bool sorted = false;
    int direction = 0;
  };
  std::size_t GetColumn(int field) { return static_cast<std::size_t>(GetSpatialSize() + field); }
  const ColumnOrder* FindOrder(int field);  // null before the column has been sorted or marked
  ColumnOrder& UseOrder(int field);
  void DropPointSearch(const DataChange& change);

  std::vector<ColumnOrder> orders_;  // by column, as far as any is sorted
  std::vector<std::weak_ptr<CDataListener>> listeners_;

  struct PointSearchDeleter {
    void operator()(CStats_PointSearch* search) const;
  };
  std::unique_ptr<CStats_PointSearch, PointSearchDeleter> pointSearch_;
};

}  // namespace tallyscope
