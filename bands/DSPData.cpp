// SPDX-License-Identifier: MIT
#include "bands/DSPData.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace tallyscope {

namespace {

template <class Sample>
void ScanForNulls(const Sample* samples, int count, int elements, double null, bvector& mask) {
  for (int i = 0; i < count; ++i) {
    const double v = samples[static_cast<std::size_t>(i) * static_cast<std::size_t>(elements)];
    if (std::abs(v) * 1e-6 >= std::abs(v - null)) mask.Set(i, true);
  }
}

}  // namespace

std::unique_ptr<CDSPData> CDSPData::Clone(bool deep) const {
  auto clone = std::make_unique<CDSPData>();
  if (deep) {
    clone->CopyFrom(*this);
    return clone;
  }
  clone->SetDimensions(sizeX, sizeY, sizeZ);
  clone->elementsPerSample = elementsPerSample;
  clone->elementType = elementType;
  for (const auto& band : bands) clone->bands.push_back(band->Clone(false));
  return clone;
}

void CDSPData::ClearBands() {
  bands.clear();
}

void CDSPData::NewSamples(CDSPDataBand& band) const {
  if (elementType == kDouble) {
    band.SetDoubleData(new double[GetElementCount()], true);
  } else {
    band.SetFloatData(new float[GetElementCount()], true);
  }
}

namespace {

// `band` gets arrays of its own with what `source` holds.
void CopySamples(const CDSPData& shape, const CDSPDataBand& source, CDSPDataBand& band) {
  const auto count = shape.GetElementCount();
  if (shape.elementType == CDSPData::kFloat && source.floatData != nullptr) {
    shape.NewSamples(band);
    std::copy_n(source.floatData, count, band.floatData);
  } else if (shape.elementType == CDSPData::kDouble && source.doubleData != nullptr) {
    shape.NewSamples(band);
    std::copy_n(source.doubleData, count, band.doubleData);
  }
}

}  // namespace

CDSPDataBand& CDSPData::AddBandFrom(CDSPData& source, int band, bool deep, bool takeOwnership) {
  CDSPDataBand& from = *source.bands[static_cast<std::size_t>(band)];
  bands.push_back(from.Clone(deep));
  CDSPDataBand& added = *bands.back();
  if (deep) CopySamples(source, from, added);
  if (takeOwnership) added.TakeOwnership(from);
  return added;
}

CDSPDataBand& CDSPData::AddBand() {
  bands.push_back(std::make_unique<CDSPDataBand>());
  return *bands.back();
}

void CDSPData::AddBands(int count) {
  for (int i = 0; i < count; ++i) AddBand();
}

void CDSPData::FillWithNull(int band) {
  CDSPDataBand& filled = *bands[static_cast<std::size_t>(band)];
  if (elementType == kDouble && filled.doubleData != nullptr) {
    std::fill_n(filled.doubleData, GetElementCount(), static_cast<double>(filled.nullValue));
  } else if (elementType == kFloat && filled.floatData != nullptr) {
    std::fill_n(filled.floatData, GetElementCount(), filled.nullValue);
  }
}

void CDSPData::EnsureMask(int band, bool scan) {
  CDSPDataBand& masked = *bands[static_cast<std::size_t>(band)];
  if (masked.mask == nullptr) masked.SetMask(new bvector(sampleCount), true, masked.nullValue);
  if (masked.mask->GetSize() < sampleCount) masked.mask->Resize(sampleCount, false);
  if (!scan) return;
  if (elementType == kDouble && masked.doubleData != nullptr) {
    ScanForNulls(masked.doubleData, sampleCount, elementsPerSample, masked.nullValue, *masked.mask);
  } else if (elementType == kFloat && masked.floatData != nullptr) {
    ScanForNulls(masked.floatData, sampleCount, elementsPerSample, masked.nullValue, *masked.mask);
  }
}

void CDSPData::CopyFrom(const CDSPData& source) {
  if (&source == this) return;
  ClearBands();
  SetDimensions(source.sizeX, source.sizeY, source.sizeZ);
  elementsPerSample = source.elementsPerSample;
  elementType = source.elementType;
  for (const auto& band : source.bands) {
    bands.push_back(band->Clone(true));
    CopySamples(source, *band, *bands.back());
  }
}

bool CDSPData::SetDimensions(int x, int y, int z) {
  x = std::max(x, 1);
  y = std::max(y, 1);
  z = std::max(z, 1);
  constexpr std::int64_t kMost = std::numeric_limits<int>::max();
  if (std::int64_t{x} * y > kMost || std::int64_t{x} * y * z > kMost) return false;
  sizeX = x;
  sizeY = y;
  sizeZ = z;
  planeSize = x * y;
  sampleCount = planeSize * z;
  dimensionality = z >= 2 ? 3 : y > 1 ? 2 : 1;
  return true;
}

int CDSPData::GetIndex(int i, int j, int k) const {
  switch (dimensionality) {
    case 1:
      return i;
    case 2:
      return j * sizeX + i;
    case 3:
      return k * planeSize + j * sizeX + i;
    default:
      return -1;
  }
}

}  // namespace tallyscope
