// SPDX-License-Identifier: MIT
#include "host/SummaryJson.h"

#include <ostream>

#include <nlohmann/json.hpp>

namespace tallyscope {

nlohmann::ordered_json ToJson(const ColumnSummary& column) {
  nlohmann::ordered_json field = {{"name", column.name},
                                  {"dim", column.dim},
                                  {"total", column.total},
                                  {"valid", column.valid},
                                  {"invalid", column.invalid}};
  for (const auto& row : GetFigureRows()) field[row.key] = column.*row.figure;
  return field;
}

namespace {

CString Dump(const nlohmann::ordered_json& json) {
  return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

// The text of a value that stands deeper in another. A line end is never part of a text in it: JSON spells it out.
CString Indented(const CString& text, const CString& indent) {
  CString indented;
  for (const char c : text) {
    indented += c;
    if (c == '\n') indented += indent;
  }
  return indented;
}

}  // namespace

void PrintJsonText(const nlohmann::ordered_json& json, std::ostream& out) {
  out << Dump(json) << "\n";
}

// Column by column: the tree of a hundred thousand of them would take hundreds of megabytes.
void PrintJson(const CString& file, CStats_Data& table, const std::vector<ColumnSummary>& columns, std::ostream& out) {
  using Json = nlohmann::ordered_json;
  Json axes = Json::array();
  for (int axis = 1; axis <= table.GetSpatialSize(); ++axis) axes.push_back(table.GetValueName(-axis));
  const CString head = Dump({{"file", file}, {"stations", table.GetSize()}, {"axes", axes}, {"fields", Json::array()}});
  const auto end = head.rfind(']');
  out << head.substr(0, end);
  const CString indent(4, ' ');
  for (const auto& column : columns) {
    out << (&column == columns.data() ? "\n" : ",\n") << indent << Indented(Dump(ToJson(column)), indent);
  }
  out << (columns.empty() ? "" : "\n  ") << head.substr(end) << "\n";
}

}  // namespace tallyscope
