// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace tallyscope {

// The sort table of a column: sorted position to station. Equal values come out in the one order that comb sort (below
// 100 values) and quicksort from the station order leave, whichever way the table was made. NaN is neither before nor
// after anything.
std::vector<int> MakeSortTable(std::vector<double> values, bool descending);

}  // namespace tallyscope
