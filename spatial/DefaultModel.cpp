// SPDX-License-Identifier: MIT
#include "spatial/DefaultModel.h"

#include <cmath>

#include "spatial/Stats_ModelVariogram.h"
#include "spatial/Stats_SampleVariogram.h"
#include "spatial/Stats_VariogramData.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_vdData.h"

namespace tallyscope {

namespace {

constexpr int kRegression = 2;
constexpr double kRange = 1000.0;

// The line of a curve of one lag isn't finite.
double AtLeastZero(double value) {
  return std::isfinite(value) && value > 0 ? value : 0.0;
}

}  // namespace

void MakeDefaultModel(CStats_SampleVariogram& sample, int dimension, CStats_ModelVariogram& model) {
  CStats_VariogramData curve;
  sample.GetVariogramData(curve);
  CStats_vdData lags(&curve.lag);
  CStats_vdData moments(&curve.momentOfInertia);
  CStats_Bivariate line;
  line.Add(&lags, 0);
  line.Add(&moments, 0);
  line.Calculate(kRegression, nullptr);
  model.Reset();
  model.SetIsotropicNugget(AtLeastZero(line.displayLine[1]));
  model.AddNest() = CModelVariogram::Linear(
      {.sill = AtLeastZero(line.displayLine[0]), .primaryRange = kRange, .minorRange = kRange, .depthRange = kRange});
  model.Update(dimension);
}

}  // namespace tallyscope
