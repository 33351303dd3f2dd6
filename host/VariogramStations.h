// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

class CStats_Data;

// How the stations with a value of a column lie, as far as a variogram minds.
enum class StationLayout { kFewOrSpread, kOneLine, kOnePlace };

// By the table's axes; on a line to within a billionth of the distances, or the rounding of the co-ordinates.
StationLayout FindStationLayout(CStats_Data& table, int dim);

}  // namespace tallyscope
