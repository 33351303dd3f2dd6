// SPDX-License-Identifier: MIT
#include "tests/support/Made.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <random>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace tallyscope {

namespace made {

MadeColumn Column(std::vector<double> values, CString name) {
  MadeColumn column;
  column.name = std::move(name);
  column.valid.assign(values.size() / 64 + 1, ~std::uint64_t{0});
  column.values = std::move(values);
  return column;
}

MadeColumn Ramp(int stations, double from, double to) {
  std::vector<double> values(static_cast<std::size_t>(stations));
  for (int i = 0; i < stations; ++i) {
    values[static_cast<std::size_t>(i)] = from + (to - from) * i / std::max(stations - 1, 1);
  }
  return Column(std::move(values));
}

MadeColumn Constant(int stations, double value) {
  return Column(std::vector<double>(static_cast<std::size_t>(stations), value));
}

MadeColumn Normal(int stations, double mean, double deviation, unsigned seed) {
  std::mt19937_64 random(seed);
  std::normal_distribution<double> normal(mean, deviation);
  std::vector<double> values(static_cast<std::size_t>(stations));
  for (auto& value : values) value = normal(random);
  return Column(std::move(values));
}

MadeColumn Rounded(MadeColumn column, double step) {
  for (auto& value : column.values) value = std::round(value / step) * step;
  return column;
}

MadeColumn WithNulls(MadeColumn column, const std::function<bool(int)>& isNull) {
  for (int i = 0; i < static_cast<int>(column.values.size()); ++i) {
    if (isNull(i)) column.SetNull(i);
  }
  return column;
}

std::function<bool(int)> Every(int step) {
  return [step](int station) { return station % step == 0; };
}

}  // namespace made

CMadeTable::CMadeTable(std::vector<MadeColumn> columns, int axes)
    : columns_(std::move(columns)),
      size_(columns_.empty() ? 0 : static_cast<int>(columns_.front().values.size())),
      axes_(axes) {}

double CMadeTable::GetValue(int field, int station) {
  return GetMade(field).values[static_cast<std::size_t>(station)];
}

int CMadeTable::ReadValues(int field, int first, int count, double* values, unsigned char* valid) {
  const auto& column = GetMade(field);
  std::memcpy(values, column.values.data() + first, static_cast<std::size_t>(count) * sizeof(double));
  int found = 0;
  for (int i = 0; i < count;) {
    const int bit = (first + i) % 64;
    const int size = std::min(64 - bit, count - i);
    const std::uint64_t used = size == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << size) - 1;
    const std::uint64_t word = column.valid[static_cast<std::size_t>(first + i) / 64] >> bit & used;
    if (word == used) {
      std::memset(valid + i, 1, static_cast<std::size_t>(size));
    } else {
      for (int k = 0; k < size; ++k) valid[i + k] = static_cast<unsigned char>(word >> k & 1);
    }
    found += std::popcount(word);
    i += size;
  }
  return found;
}

void CMadeTable::ReadRawValues(int field, int first, int count, double* values) {
  std::copy_n(GetMade(field).values.begin() + first, count, values);
}

CMadeTable TableFrom(std::string_view text) {
  std::istringstream lines{std::string(text)};
  std::string line;
  std::getline(lines, line);
  std::vector<MadeColumn> columns;
  std::istringstream headings(line);
  for (std::string name; headings >> name;) columns.push_back(made::Column({}, name));
  int axes = 0;
  for (const char* name : {"X", "Y", "Z"}) {
    const auto at = static_cast<std::size_t>(axes);
    if (at < columns.size() && columns[at].name == name) ++axes;
  }
  int stations = 0;
  while (std::getline(lines, line)) {
    std::istringstream cells(line);
    std::string cell;
    for (auto& column : columns) {
      if (!(cells >> cell)) throw std::invalid_argument("a line with too few cells: " + line);
      double value = -999;
      std::from_chars(cell.data(), cell.data() + cell.size(), value);
      column.values.push_back(value);
      column.valid.resize(column.values.size() / 64 + 1, ~std::uint64_t{0});
      if (cell == "-") column.SetNull(stations);
    }
    ++stations;
  }
  return CMadeTable(std::move(columns), axes);
}

}  // namespace tallyscope
