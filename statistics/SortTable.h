// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

namespace tallyscope {

class CProgressSink;
class CStats_Data;

using SortTable = std::vector<int>;  // sorted position to station

// Makes the sort table of a column, and changes nothing: any thread may call it while nobody changes the data. Nulls
// sort by their raw value. Equal values come out in the one order that comb sort (below 100 values) and quicksort from
// the station order leave, whichever way the table was made. NaN is neither before nor after anything. Null when the
// sink, which hears of large columns only, cancels. Memory: some 36 bytes a station on the way.
std::shared_ptr<const SortTable> MakeSortTable(CStats_Data& data, int field, bool descending, CProgressSink* sink);

}  // namespace tallyscope
