// SPDX-License-Identifier: MIT
#pragma once

#include "bands/DSPOperation.h"

namespace tallyscope {

class CDSPConvolution;

// Automatic gain control: each sample is divided by the root mean square of the valid samples in the window about it,
// so that quiet and loud stretches end up with about the same amplitude. Where that is 0 or infinite the sample becomes
// null.
class CDSPAGC : public CDSPOperation {
 public:
  CDSPAGC() { dimension = 2; }
  bool ProcessAny(CDSPProgress* progress) override { return Divide(progress); }
  bool Process1D(CDSPProgress* progress) override { return Divide(progress); }
  bool Process2D(CDSPProgress* progress) override { return Divide(progress); }
  bool Process3D(CDSPProgress* progress) override { return Divide(progress); }

  CDSPConvolution* windowFilter = nullptr;  // not owned; null: a box of `width` along each axis
  int width = 11;                           // odd; one that is refused lets the samples pass

 private:
  bool Divide(CDSPProgress* progress);
  bool WorksInPlace() const;
  bool WriteEnvelope(CDSPConvolution& window, CDSPProgress* progress);
};

}  // namespace tallyscope
