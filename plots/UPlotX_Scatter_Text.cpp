// SPDX-License-Identifier: MIT
// What a scatter says in words: a station for the status line, its table for the clipboard.
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "platform/core/NumberText.h"
#include "plots/UPlotX_Scatter.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr int kBlock = 512;

void AddOnce(std::vector<int>& dims, int dim) {
  if (dim != kNoDim && std::find(dims.begin(), dims.end(), dim) == dims.end()) dims.push_back(dim);
}

// Columns of a table, read by blocks.
class TextColumns {
 public:
  TextColumns(CStats_Data& data, std::vector<int> dims) : data_(data), dims_(std::move(dims)), columns_(dims_.size()) {}

  void Read(int first, int count) {
    for (std::size_t k = 0; k < dims_.size(); ++k) {
      data_.ReadValues(dims_[k], first, count, columns_[k].values.data(), columns_[k].valid.data());
    }
  }
  bool IsValid(std::size_t column, int row) const { return columns_[column].valid[static_cast<std::size_t>(row)] != 0; }
  // A null is an empty cell.
  void Append(CString& text, int row) const {
    for (const Column& column : columns_) {
      text += '\t';
      const auto at = static_cast<std::size_t>(row);
      if (column.valid[at] != 0) text += FormatLocale(column.values[at], 15);
    }
  }

 private:
  struct Column {
    std::array<double, kBlock> values;
    std::array<unsigned char, kBlock> valid;
  };

  CStats_Data& data_;
  std::vector<int> dims_;
  std::vector<Column> columns_;
};

}  // namespace

CString CUPlotX_Scatter::Describe(int station) {
  Fields fields;
  if (!GetFields(fields) || station < 0 || station >= GetStationCount()) return {};
  return DescribeStation(station, {fields.x, fields.y});
}

// The first station with a place ends the search, so this is quick wherever there is something to show.
CString CUPlotX_Scatter::FindEmptyReason(const Fields& fields) const {
  TextColumns columns(*data, {fields.x, fields.y});
  bool hasX = false;
  bool hasY = false;
  const int total = GetStationCount();
  for (int first = 0; first < total; first += kBlock) {
    const int count = std::min(kBlock, total - first);
    columns.Read(first, count);
    for (int i = 0; i < count; ++i) {
      hasX = hasX || columns.IsValid(0, i);
      hasY = hasY || columns.IsValid(1, i);
      if (columns.IsValid(0, i) && columns.IsValid(1, i)) return {};
    }
  }
  const CString x = data->GetValueName(fields.x);
  const CString y = data->GetValueName(fields.y);
  if (!hasX) return "No valid values in " + x;
  if (!hasY) return "No valid values in " + y;
  return "No station has a value in both " + x + " and " + y;
}

CString CUPlotX_Scatter::GetDataText() {
  Fields fields;
  if (!GetFields(fields)) return {};
  std::vector<int> dims{fields.x};
  for (const int dim : {fields.y, colourDim, sizeDim}) AddOnce(dims, dim);
  const std::size_t yColumn = fields.y == fields.x ? 0 : 1;
  const bvector* selection = GetShownSelection();

  CString text = "Station";
  for (const int dim : dims) text += "\t" + data->GetValueName(dim);
  text += selection != nullptr ? "\tSelected\n" : "\n";
  TextColumns columns(*data, dims);
  const int total = GetStationCount();
  for (int first = 0; first < total; first += kBlock) {
    const int count = std::min(kBlock, total - first);
    columns.Read(first, count);
    for (int i = 0; i < count; ++i) {
      if (!columns.IsValid(0, i) || !columns.IsValid(yColumn, i)) continue;
      text += std::to_string(first + i + 1);
      columns.Append(text, i);
      if (selection != nullptr) text += selection->Get(first + i) ? "\t1" : "\t0";
      text += '\n';
    }
  }
  return text;
}

}  // namespace tallyscope
