// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "spatial/LagGrid.h"

namespace tallyscope {

class CProgressSink;
class CStats_Data;

// The lag grid of a column, whose mean over its valid stations is given. With kUseSearch the table's search must stand,
// on whatever columns; it stays as it is. Stations without a value, or with a co-ordinate that is null or not finite,
// have no part. Nothing when the search is missing, the sink cancels, or there are more cells than memory is given to.
std::optional<LagGrid> ComputeLagGrid(CStats_Data& data, int dim, double mean, const LagSettings& settings,
                                      CProgressSink* progress);

}  // namespace tallyscope
