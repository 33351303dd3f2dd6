// SPDX-License-Identifier: MIT
#include "spatial/CoordinateRange.h"

#include <cmath>
#include <span>

#include "statistics/RunningRange.h"
#include "statistics/StationBlocks.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

CoordinateRange FindCoordinateRange(CStats_Data& data, int dim, const CStats_Univariate& figures) {
  if (std::isfinite(figures.minimum) && std::isfinite(figures.maximum)) return {figures.minimum, figures.maximum};
  CRunningRange range;
  bool any = false;
  StationProgress silent(nullptr, data.GetSize());
  VisitValidValues(data, dim, silent, [&](const double* values, int count, int) {
    for (const double& value : std::span(values, static_cast<std::size_t>(count))) {
      if (!std::isfinite(value)) continue;
      any = true;
      range.Add({&value, 1});
    }
  });
  return any ? CoordinateRange{range.minimum, range.maximum} : CoordinateRange();
}

}  // namespace tallyscope
