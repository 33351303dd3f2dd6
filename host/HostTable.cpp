// SPDX-License-Identifier: MIT
#include "host/HostTable.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace tallyscope {

CHostTable::CHostTable(std::vector<CHostColumn> columns, int stations)
    : columns_(std::move(columns)), stations_(stations) {
  SetAxes({});
}

void CHostTable::SetAxes(std::span<const int> columns) {
  axes_ = static_cast<int>(columns.size());
  dims_.clear();
  for (const int column : columns) dims_.push_back(&columns_[static_cast<std::size_t>(column)]);
  for (const auto& column : columns_) {
    if (std::find(dims_.begin(), dims_.begin() + axes_, &column) == dims_.begin() + axes_) dims_.push_back(&column);
  }
  DataChanged(DataChange::Axes());
}

std::vector<CString> CHostTable::GetColumnNames() const {
  std::vector<CString> names;
  names.reserve(columns_.size());
  for (const auto& column : columns_) names.push_back(column.name);
  return names;
}

int CHostTable::FindDim(const CString& name) const {
  for (int dim = -axes_; dim < GetColumnCount() - axes_; ++dim) {
    if (GetColumn(dim).name == name) return dim;
  }
  return kNoDim;
}

void CHostTable::ChangeColumn(int dim, const std::function<void(CHostColumn&)>& change) {
  try {
    change(columns_[static_cast<std::size_t>(&GetColumn(dim) - columns_.data())]);
  } catch (...) {
    DataChanged(DataChange::Column(dim));
    throw;
  }
  DataChanged(DataChange::Column(dim));
}

double CHostTable::GetValue(int field, int station) {
  return GetColumn(field).GetValues()[static_cast<std::size_t>(station)];
}

bool CHostTable::IsValueValid(int field, int station) {
  return GetColumn(field).IsValid(static_cast<std::size_t>(station));
}

bool CHostTable::GetValue(int field, int station, double& value) {
  const auto& column = GetColumn(field);
  const auto row = static_cast<std::size_t>(station);
  if (!column.IsValid(row)) return false;
  value = column.GetValues()[row];
  return true;
}

// Walks the run in pieces that lie in one validity word each; a piece without nulls is copied in one go.
int CHostTable::ReadValues(int field, int first, int count, double* values, unsigned char* valid) {
  const auto& column = GetColumn(field);
  const double* stored = column.GetValues();
  auto row = static_cast<std::size_t>(first);
  const std::size_t end = row + static_cast<std::size_t>(std::max(count, 0));
  int found = 0;
  while (row < end) {
    const std::size_t length = std::min(64 - row % 64, end - row);
    const std::uint64_t all = length == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << length) - 1;
    const std::uint64_t word = column.GetValidWord(row / 64) >> (row % 64) & all;
    std::memcpy(values, stored + row, length * sizeof(double));  // a null's is of no account
    if (word == all) {
      std::memset(valid, 1, length);
    } else {
      for (std::size_t i = 0; i < length; ++i) valid[i] = word >> i & 1;
    }
    found += std::popcount(word);
    row += length;
    values += length;
    valid += length;
  }
  return found;
}

void CHostTable::ReadRawValues(int field, int first, int count, double* values) {
  if (count <= 0) return;
  std::memcpy(values, GetColumn(field).GetValues() + first, static_cast<std::size_t>(count) * sizeof(double));
}

int CHostTable::ReadValuesAt(int field, const int* stations, int count, double* values, unsigned char* valid) {
  const auto& column = GetColumn(field);
  const double* stored = column.GetValues();
  int found = 0;
  for (int i = 0; i < count; ++i) {
    const auto row = static_cast<std::size_t>(stations[i]);
    valid[i] = column.IsValid(row) ? 1 : 0;
    values[i] = stored[row];
    found += valid[i];
  }
  return found;
}

void CHostTable::ReadRawValuesAt(int field, const int* stations, int count, double* values) {
  const double* stored = GetColumn(field).GetValues();
  for (int i = 0; i < count; ++i) values[i] = stored[static_cast<std::size_t>(stations[i])];
}

}  // namespace tallyscope
