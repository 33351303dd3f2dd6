// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "host/HostTable.h"

namespace tallyscope {

// Takes a piece of the text; false ends the writing.
using TextTarget = std::function<bool(std::string_view text)>;

// What becomes of texts that a spreadsheet would run as formulas: those that begin with "=", "+", "@", a tab or a line
// end, and those with "-" that are no number.
enum class Formulas {
  kKept,     // as they are, so that what is read back is the same
  kGuarded,  // with an apostrophe in front, which a spreadsheet takes for the sign of a text
};

// Stations of a table as comma-separated text that the readers take back: a line of names, then a line for each station
// with all columns in the order of their file. Numbers have the digits that read back to the same double, texts are
// their labels, a null is an empty cell. False when the target gave up.
[[nodiscard]] bool WriteCsv(const CHostTable& table, const std::vector<int>& stations, Formulas formulas,
                            const TextTarget& target);

}  // namespace tallyscope
