// SPDX-License-Identifier: MIT
#include "bands/DSPDataBand.h"

#include <utility>

namespace tallyscope {

std::unique_ptr<CDSPDataBand> CDSPDataBand::Clone(bool deep) const {
  auto clone = std::make_unique<CDSPDataBand>();
  clone->floatData = floatData;
  clone->doubleData = doubleData;
  clone->mask = mask;
  clone->nullValue = nullValue;
  if (deep) clone->CloneMask(*this);
  return clone;
}

void CDSPDataBand::Clear() {
  SetFloatData(nullptr, false);
  SetDoubleData(nullptr, false);
  SetMask(nullptr, false, kDefaultNull);
}

void CDSPDataBand::SetDoubleData(double* data, bool own) {
  if (ownDoubles_.get() == data) static_cast<void>(ownDoubles_.release());  // handed in again
  doubleData = data;
  ownDoubles_.reset(own ? data : nullptr);
}

void CDSPDataBand::SetFloatData(float* data, bool own) {
  if (ownFloats_.get() == data) static_cast<void>(ownFloats_.release());
  floatData = data;
  ownFloats_.reset(own ? data : nullptr);
}

void CDSPDataBand::SetMask(bvector* samplesNull, bool own, float null) {
  if (ownMask_.get() == samplesNull) static_cast<void>(ownMask_.release());
  mask = samplesNull;
  ownMask_.reset(own ? samplesNull : nullptr);
  nullValue = null;
}

void CDSPDataBand::CloneMask(const CDSPDataBand& band) {
  SetMask(band.mask == nullptr ? nullptr : new bvector(*band.mask), true, band.nullValue);
}

void CDSPDataBand::TakeOwnership(CDSPDataBand& from) {
  if (from.ownFloats_ != nullptr && from.ownFloats_.get() == floatData) ownFloats_ = std::move(from.ownFloats_);
  if (from.ownDoubles_ != nullptr && from.ownDoubles_.get() == doubleData) ownDoubles_ = std::move(from.ownDoubles_);
  if (from.ownMask_ != nullptr && from.ownMask_.get() == mask) ownMask_ = std::move(from.ownMask_);
}

}  // namespace tallyscope
