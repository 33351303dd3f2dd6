// SPDX-License-Identifier: MIT
#include "statistics/Stats_Data.h"

#include <cassert>
#include <cstdint>
#include <exception>
#include <utility>

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

const CStats_Data::ColumnOrder* CStats_Data::FindOrder(int field) {
  const auto column = GetColumn(field);
  return column < orders_.size() ? &orders_[column] : nullptr;
}

CStats_Data::ColumnOrder& CStats_Data::UseOrder(int field) {
  const auto column = GetColumn(field);
  if (orders_.size() <= column) orders_.resize(column + 1);
  return orders_[column];
}

bool CStats_Data::IsSorted(int field, int descending) {
  const auto* order = FindOrder(field);
  return order != nullptr && order->sorted && order->direction == descending;
}

void CStats_Data::SetSorted(bool sorted, int field, int descending) {
  auto& order = UseOrder(field);
  order.sorted = sorted;
  order.direction = descending;
}

void CStats_Data::ClearSort() {
  orders_.clear();
}

void CStats_Data::Sort(int field, int descending, CProgressSink* progress) {
  if (IsSorted(field, descending) || !CanSort()) return;
  if (auto table = MakeSortTable(*this, field, descending != 0, progress)) {
    TakeSortTable(field, descending, std::move(table));
  }
}

std::shared_ptr<const SortTable> CStats_Data::GetSortTable(int field) {
  const auto* order = FindOrder(field);
  return order != nullptr ? order->table : nullptr;
}

void CStats_Data::TakeSortTable(int field, int descending, std::shared_ptr<const SortTable> table) {
  UseOrder(field).table = std::move(table);
  SetSorted(true, field, descending);
}

void CStats_Data::GetRanks(int field, std::vector<int>& ranks) {
  const auto* order = FindOrder(field);
  if (order == nullptr || !order->sorted) return;
  const int n = GetSize();
  ranks.resize(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) ranks[static_cast<std::size_t>(GetSortedStation(field, i))] = i;
}

int CStats_Data::GetSortedStation(int field, int position) {
  const auto* order = FindOrder(field);
  assert(order != nullptr && order->table != nullptr);
  return (*order->table)[static_cast<std::size_t>(position)];
}

// Changes.

void CStats_Data::DataChanged(const DataChange& change) {
  if (change.kind != DataChange::kColumn) {
    ClearSort();
  } else if (FindOrder(change.dim) != nullptr) {
    SetSorted(false, change.dim, 0);
    UseOrder(change.dim).table.reset();
  }
  DropPointSearch(change);

  std::exception_ptr failure;
  const auto listeners = listeners_;  // one may add another
  for (const auto& listener : listeners) {
    try {
      if (const auto alive = listener.lock()) alive->OnDataChanged(change);
    } catch (...) {
      failure = std::current_exception();
    }
  }
  if (failure) std::rethrow_exception(failure);
}

void CStats_Data::AddListener(std::weak_ptr<CDataListener> listener) {
  std::erase_if(listeners_, [](const auto& known) { return known.expired(); });
  listeners_.push_back(std::move(listener));
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
