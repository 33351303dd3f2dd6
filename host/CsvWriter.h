// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "host/HostTable.h"

namespace tallyscope {

// Takes a piece of the text; false ends the writing.
using TextTarget = std::function<bool(std::string_view text)>;

// Stations of a table as comma-separated text that the readers take back: a line of names, then a line for each station
// with all columns in the order of their file. Numbers have the digits that read back to the same double, texts are
// their labels, a null is an empty cell. False when the target gave up.
bool WriteCsv(const CHostTable& table, const std::vector<int>& stations, const TextTarget& target);

}  // namespace tallyscope
