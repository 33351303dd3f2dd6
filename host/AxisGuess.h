// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "host/HostTable.h"
#include "host/ReaderOptions.h"

namespace tallyscope {

// Columns of a table that serve as X, Y and Z, by place in the file: none, two or three.
struct AxisChoice {
  std::vector<int> columns{};
  CString description{};  // "x and y, guessed from the headings; --z elev would make elev the third"
  CString error{};        // a sentence when the options ask for what can't be
};

// Takes the axes from the options, or guesses them from the headings. The rules stand in docs/guide/opening-tables.md.
AxisChoice ChooseAxes(const CHostTable& table, const CString& file, const ReaderOptions& options);

}  // namespace tallyscope
