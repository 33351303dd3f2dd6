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

void PrintJsonText(const nlohmann::ordered_json& json, std::ostream& out) {
  out << json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << "\n";
}

void PrintJson(const CString& file, CStats_Data& table, const std::vector<ColumnSummary>& columns, std::ostream& out) {
  using Json = nlohmann::ordered_json;
  Json axes = Json::array();
  for (int axis = 1; axis <= table.GetSpatialSize(); ++axis) axes.push_back(table.GetValueName(-axis));
  Json fields = Json::array();
  for (const auto& column : columns) fields.push_back(ToJson(column));
  PrintJsonText({{"file", file}, {"stations", table.GetSize()}, {"axes", axes}, {"fields", fields}}, out);
}

}  // namespace tallyscope
