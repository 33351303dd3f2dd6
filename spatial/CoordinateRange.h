// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

class CStats_Data;
class CStats_Univariate;

// Lowest and highest of the finite values of a column of co-ordinates. `figures` are the column's, with bit 1 computed:
// they are the answer as long as no infinity is among the values. Zeros without a finite value.
struct CoordinateRange {
  double low = 0;
  double high = 0;
};

CoordinateRange FindCoordinateRange(CStats_Data& data, int dim, const CStats_Univariate& figures);

}  // namespace tallyscope
