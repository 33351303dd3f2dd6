// SPDX-License-Identifier: MIT
#include "spatial/SurfaceFit.h"

#include <algorithm>
#include <cmath>

#include "spatial/CoordinateRange.h"
#include "statistics/StationBlocks.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

constexpr double kSingular = 1e-12;  // a determinant this small against its terms is zero

// Sums of the normal equations of a plane, and their solution by Cramer's rule.
struct PlaneSums {
  double n = 0, sx = 0, sy = 0, sv = 0, sxx = 0, syy = 0, sxy = 0, sxv = 0, syv = 0;

  void Add(double x, double y, double v) {
    n += 1;
    sx += x;
    sy += y;
    sv += v;
    sxx += x * x;
    syy += y * y;
    sxy += x * y;
    sxv += x * v;
    syv += y * v;
  }
  // False on one line.
  bool Solve(double& a, double& b, double& c) const {
    const double terms[5] = {2 * sx * sy * sxy, n * sxx * syy, -(n * sxy * sxy), -(sx * sx * syy), -(sy * sy * sxx)};
    const double d = terms[0] + terms[1] + terms[2] + terms[3] + terms[4];
    double size = 0;
    for (const double term : terms) size += std::fabs(term);
    if (!(std::fabs(d) > kSingular * size)) return false;
    a = (sxx * sv * syy + sxy * sx * syv + sxy * sy * sxv - sxy * sv * sxy - sxv * sx * syy - syv * sy * sxx) / d;
    b = (n * sxv * syy + sv * sy * sxy + sy * sx * syv - n * sxy * syv - sv * sx * syy - sy * sy * sxv) / d;
    c = (sy * sx * sxv + n * sxx * syv + sv * sx * sxy - n * sxy * sxv - sx * sx * syv - sv * sy * sxx) / d;
    return true;
  }
};

SurfaceFit::Scale Normalise(const CoordinateRange& found) {
  const double range = found.high - found.low;
  return {found.low, range == 0 ? 1.0 : range};
}

double Apply(const SurfaceFit::Scale& scale, double value) {
  return (value - scale.start) / scale.range;
}

}  // namespace

std::optional<SurfaceFit> FitSurface(CStats_Data& data, const std::array<int, 3>& dims, CProgressSink* progress) {
  constexpr int kBlock = 512;
  CStats_Univariate figures[3];
  for (std::size_t i = 0; i < 3; ++i) {
    figures[i].Add(&data, dims[i]);
    if (!figures[i].Calculate(1, progress)) return {};
  }
  SurfaceFit fit;
  fit.x = Normalise(FindCoordinateRange(data, dims[0], figures[0]));
  fit.y = Normalise(FindCoordinateRange(data, dims[1], figures[1]));
  fit.value = Normalise({figures[2].minimum, figures[2].maximum});

  double values[3][kBlock];
  unsigned char valid[3][kBlock];
  const int total = data.GetSize();
  StationProgress reporter(progress, total);
  if (!reporter.Start("First Order Surface Fit")) return {};
  PlaneSums sums;
  for (int first = 0; first < total;) {
    const int count = reporter.Cut(first, std::min(kBlock, total - first));
    for (std::size_t i = 0; i < 3; ++i) data.ReadValues(dims[i], first, count, values[i], valid[i]);
    for (int i = 0; i < count; ++i) {
      if (valid[0][i] == 0 || valid[1][i] == 0 || valid[2][i] == 0) continue;
      if (!std::isfinite(values[0][i]) || !std::isfinite(values[1][i])) continue;
      sums.Add(Apply(fit.x, values[0][i]), Apply(fit.y, values[1][i]), Apply(fit.value, values[2][i]));
    }
    first += count;
    if (!reporter.Report(first - 1)) return {};
  }
  sums.Solve(fit.a, fit.b, fit.c);
  return fit;
}

}  // namespace tallyscope
