// SPDX-License-Identifier: MIT
#include <ostream>

#include <nlohmann/json.hpp>

#include "host/Summary.h"

namespace tallyscope {

// Numbers are printed with the digits that read back to the same double. JSON has no infinity: a figure that left the
// range of doubles is null.
void PrintJson(const CString& file, CStats_Data& table, const std::vector<ColumnSummary>& columns, std::ostream& out) {
  using Json = nlohmann::ordered_json;
  Json axes = Json::array();
  for (int axis = 1; axis <= table.GetSpatialSize(); ++axis) axes.push_back(table.GetValueName(-axis));
  Json fields = Json::array();
  for (const auto& column : columns) {
    Json field = {{"name", column.name},
                  {"dim", column.dim},
                  {"total", column.total},
                  {"valid", column.valid},
                  {"invalid", column.invalid}};
    for (const auto& row : GetFigureRows()) field[row.key] = column.*row.figure;
    fields.push_back(std::move(field));
  }
  const Json summary = {{"file", file}, {"stations", table.GetSize()}, {"axes", axes}, {"fields", fields}};
  // A path may hold any bytes; names are UTF-8 already.
  out << summary.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
}

}  // namespace tallyscope
