// SPDX-License-Identifier: MIT
#include "bands/DSPLog.h"

#include <cmath>

#include "bands/BandWalk.h"

namespace tallyscope {

bool CDSPLog::ProcessAny(CDSPProgress* progress) {
  const double s = scale * 0.1;
  const double edge = cutoff;
  const double top = std::log10(edge);
  const auto forward = [=](double x) {
    const double v = x / s;
    if (-edge <= v && v <= edge) return top * v / edge;
    return v < -edge ? -std::log10(-v) : std::log10(v);
  };
  const auto backward = [=](double x) {
    if (-top <= x && x <= top) return edge * x / top * s;
    return (x < -top ? -std::pow(10.0, -x) : std::pow(10.0, x)) * s;
  };
  const bool good = inverse == 0 ? MapOverlap(*this, progress, forward) : MapOverlap(*this, progress, backward);
  if (good) inverse = inverse == 0 ? 1 : 0;
  return good;
}

}  // namespace tallyscope
