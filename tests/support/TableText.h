// SPDX-License-Identifier: MIT
#pragma once

#include <charconv>
#include <string>

#include "host/HostTable.h"

namespace tallyscope {

inline std::string ShortestText(double value) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

inline std::string CsvText(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

// A cell as its column means it: a number, a label in quotes, or `null`.
inline std::string CellText(const CHostColumn& column, std::size_t row, const std::string& null) {
  if (!column.IsValid(row)) return null;
  const double value = column.GetValues()[row];
  return column.IsText() ? CsvText(column.labels[static_cast<std::size_t>(value) - 1]) : ShortestText(value);
}

// The table as comma-separated text, with the headings in quotes, and `null` for the nulls.
inline std::string WriteCsv(const CHostTable& table, int stations, const std::string& null = {}) {
  std::string text;
  const auto& columns = table.GetFileColumns();
  for (std::size_t i = 0; i < columns.size(); ++i) text += (i > 0 ? "," : "") + CsvText(columns[i].name);
  for (std::size_t row = 0; row < static_cast<std::size_t>(stations); ++row) {
    for (std::size_t i = 0; i < columns.size(); ++i) text += (i > 0 ? "," : "\n") + CellText(columns[i], row, null);
  }
  return text + "\n";
}

}  // namespace tallyscope
