// SPDX-License-Identifier: MIT
#include "statistics/Stats_Data.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "statistics/SortTable.h"

namespace tallyscope {

namespace {

constexpr std::int64_t kSortAllowance = std::int64_t{1} << 28;  // bytes of the sort tables of all columns

}  // namespace

CStats_Data::~CStats_Data() = default;

CString CStats_Data::GetValueName(int field) {
  switch (field) {
    case -1:
      return "X";
    case -2:
      return "Y";
    case -3:
      return "Z";
    default:
      return "Field " + std::to_string(field);
  }
}

bool CStats_Data::GetValue(int field, int station, double& value) {
  if (!IsValueValid(field, station)) return false;
  value = GetValue(field, station);
  return true;
}

double CStats_Data::GetValue(int, int) {
  return 0.0;
}

bool CStats_Data::IsValueValid(int, int) {
  return true;
}

// Sorting.

bool CStats_Data::CanSort() {
  const std::int64_t columns = std::int64_t{GetValueSize()} + GetSpatialSize();
  return columns <= 0 || std::int64_t{GetSize()} * 4 <= kSortAllowance / columns;
}

void CStats_Data::GrowSortFlags() {
  const auto columns = static_cast<std::size_t>(GetValueSize() + GetSpatialSize());
  if (sortedFlags_.size() < columns) sortedFlags_.resize(columns);
  if (sortDirections_.size() < columns) sortDirections_.resize(columns);
}

bool CStats_Data::IsSorted(int field, int descending) {
  GrowSortFlags();
  const auto column = GetColumn(field);
  return sortedFlags_[column] && sortDirections_[column] == descending;
}

void CStats_Data::SetSorted(bool sorted, int field, int descending) {
  GrowSortFlags();
  const auto column = GetColumn(field);
  sortedFlags_[column] = sorted;
  sortDirections_[column] = descending;
}

void CStats_Data::ClearSort() {
  sortedFlags_.clear();
  sortDirections_.clear();
  sortTables_.clear();
}

void CStats_Data::Sort(int field, int descending, CProgressSink*) {
  if (IsSorted(field, descending) || !CanSort()) return;
  const auto columns = static_cast<std::size_t>(GetValueSize() + GetSpatialSize());
  if (sortTables_.size() < columns) sortTables_.resize(columns);
  SetSorted(true, field, descending);
  const int size = std::max(GetSize(), 0);
  std::vector<double> values(static_cast<std::size_t>(size));
  ReadRawValues(field, 0, size, values.data());
  sortTables_[GetColumn(field)] = MakeSortTable(std::move(values), descending != 0);
}

void CStats_Data::GetRanks(int field, std::vector<int>& ranks) {
  GrowSortFlags();
  if (!sortedFlags_[GetColumn(field)]) return;
  const int n = GetSize();
  ranks.resize(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) ranks[static_cast<std::size_t>(GetSortedStation(field, i))] = i;
}

int CStats_Data::GetSortedStation(int field, int position) {
  return sortTables_[GetColumn(field)][static_cast<std::size_t>(position)];
}

// Bulk reads.

int CStats_Data::ReadValues(int field, int first, int count, double* values, unsigned char* valid) {
  int good = 0;
  for (int i = 0; i < count; ++i) {
    valid[i] = GetValue(field, first + i, values[i]) ? 1 : 0;
    good += valid[i];
  }
  return good;
}

void CStats_Data::ReadRawValues(int field, int first, int count, double* values) {
  for (int i = 0; i < count; ++i) values[i] = GetValue(field, first + i);
}

int CStats_Data::ReadValuesAt(int field, const int* stations, int count, double* values, unsigned char* valid) {
  int good = 0;
  for (int i = 0; i < count; ++i) {
    valid[i] = GetValue(field, stations[i], values[i]) ? 1 : 0;
    good += valid[i];
  }
  return good;
}

void CStats_Data::ReadRawValuesAt(int field, const int* stations, int count, double* values) {
  for (int i = 0; i < count; ++i) values[i] = GetValue(field, stations[i]);
}

}  // namespace tallyscope
