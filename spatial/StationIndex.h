// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>

#include "spatial/PointIndex.h"

namespace tallyscope {

class CProgressSink;
class CStats_Data;

// What the search of a table was built to, with the columns that it was built over. Shared: it stays as it is whatever
// becomes of the search.
struct StationIndex {
  std::shared_ptr<const PointIndex> points;  // null: there is none
  std::array<int, 3> fields{};               // of which points->axes count

  explicit operator bool() const { return points != nullptr; }
};

// Whether these are two or three columns of the table.
bool HasDims(CStats_Data& data, const std::array<int, 3>& dims, int dimCount);

// The index of the table's search as it stands; none unless that is partitioned.
StationIndex GetStationIndex(CStats_Data& data);

// The index over these columns, which the table's search is built to unless it stands so. None if the table doesn't
// have the columns, they are fewer than two, or the sink cancels.
StationIndex PrepareStationIndex(CStats_Data& data, const std::array<int, 3>& dims, int dimCount,
                                 CProgressSink* progress);

}  // namespace tallyscope
