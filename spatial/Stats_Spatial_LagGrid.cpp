// SPDX-License-Identifier: MIT
#include "spatial/ComputeLagGrid.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

LagSettings CStats_Spatial::GetLagSettings() const {
  return {lagFlags, lagRange, lagCount, sampleLimit, dims_, dimCount_};
}

void CStats_Spatial::SetLagSettings(const LagSettings& settings) {
  lagFlags = settings.flags;
  lagRange = settings.range;
  lagCount = settings.count;
  sampleLimit = settings.sampleLimit;
}

bool CStats_Spatial::CalcLagGrid(CStats_Data* data, int dim, CProgressSink* progress) {
  CStats_Univariate figures;
  figures.Add(data, dim);
  if (!figures.Calculate(1, progress)) return false;
  if (sampleLimit < 0) sampleLimit = data->GetSize();
  const auto computed = ComputeLagGrid(*data, dim, figures.mean, GetLagSettings(), progress);
  if (!computed) return false;
  grid = *computed;
  return true;
}

}  // namespace tallyscope
