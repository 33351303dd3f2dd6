// SPDX-License-Identifier: MIT
#include "bands/DSPTransform.h"

#include "bands/BandWalk.h"

namespace tallyscope {

bool CDSPTransform::ProcessAny(CDSPProgress* progress) {
  const double factor = scale;
  const double shift = offset;
  const bool good = inverse == 0 ? MapOverlap(*this, progress, [=](double x) { return factor * x + shift; })
                                 : MapOverlap(*this, progress, [=](double x) { return (x - shift) / factor; });
  if (good) inverse = inverse == 0 ? 1 : 0;
  return good;
}

}  // namespace tallyscope
