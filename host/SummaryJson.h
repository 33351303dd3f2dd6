// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>

#include <nlohmann/json_fwd.hpp>

#include "host/Summary.h"

namespace tallyscope {

// Numbers are printed with the digits that read back to the same double. JSON has no infinity: a figure that left the
// range of doubles is null.
nlohmann::ordered_json ToJson(const ColumnSummary& column);

// A path may hold any bytes: what is no UTF-8 is replaced.
void PrintJsonText(const nlohmann::ordered_json& json, std::ostream& out);

}  // namespace tallyscope
