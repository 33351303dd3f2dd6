// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "statistics/bvector.h"

namespace tallyscope {

// One band of a regular array of samples, with its mask of nulls (a set bit is a null; without a mask nothing is null).
// The samples are floats or doubles, as the CDSPData says that holds the band. An array that the band owns was made by
// new[], an owned mask by new.
class CDSPDataBand {
 public:
  static constexpr float kDefaultNull = -1e32f;

  CDSPDataBand() = default;
  CDSPDataBand(const CDSPDataBand&) = delete;
  CDSPDataBand& operator=(const CDSPDataBand&) = delete;

  // Shares the arrays with this band, which must outlive the clone. Deep: the mask is a copy of the clone's own.
  virtual std::unique_ptr<CDSPDataBand> Clone(bool deep) const;
  virtual ~CDSPDataBand() = default;
  virtual void Clear();  // lets go of the arrays and of the mask
  virtual void SetDoubleData(double* data, bool own);
  virtual void SetFloatData(float* data, bool own);
  virtual void SetMask(bvector* samplesNull, bool own, float null);
  virtual void CloneMask(const CDSPDataBand& band);  // a copy of its mask, owned here, and its null value

  bool OwnsData() const { return ownFloats_ != nullptr || ownDoubles_ != nullptr; }
  bool OwnsMask() const { return ownMask_ != nullptr; }
  void TakeOwnership(CDSPDataBand& from);  // of what `from` owns and this band shares
  bool IsNull(int sample) const { return mask != nullptr && mask->Get(sample); }

  // Change these through the operations above, which keep ownership straight.
  float* floatData = nullptr;
  double* doubleData = nullptr;
  bvector* mask = nullptr;

  float nullValue = kDefaultNull;  // what a null sample holds

 private:
  std::unique_ptr<float[]> ownFloats_;
  std::unique_ptr<double[]> ownDoubles_;
  std::unique_ptr<bvector> ownMask_;
};

}  // namespace tallyscope
