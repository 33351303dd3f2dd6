// SPDX-License-Identifier: MIT
#include "spatial/CoordinateRange.h"

#include <cmath>

#include "statistics/BlockReader.h"
#include "statistics/RunningRange.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

CoordinateRange FindCoordinateRange(CStats_Data& data, int dim, const CStats_Univariate& figures) {
  if (std::isfinite(figures.minimum) && std::isfinite(figures.maximum)) return {figures.minimum, figures.maximum};
  CRunningRange range;
  bool any = false;
  CBlockReader column({{&data, dim}}, data.GetSize());
  while (column.Next()) {
    column.KeepJoint();
    for (const double& value : column.Values(0)) {
      if (!std::isfinite(value)) continue;
      any = true;
      range.Add({&value, 1});
    }
  }
  return any ? CoordinateRange{range.minimum, range.maximum} : CoordinateRange();
}

}  // namespace tallyscope
