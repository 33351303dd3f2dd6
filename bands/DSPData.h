// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "bands/DSPDataBand.h"

namespace tallyscope {

// A set of bands of one shape: lines, planes or cubes of samples, x running fastest.
//   CDSPData data;
//   data.SetDimensions(count, 1, 1);
//   CDSPDataBand& band = data.AddBand();
//   band.SetFloatData(samples, false);
//   band.SetMask(&nulls, false, -1e32f);
class CDSPData {
 public:
  static constexpr int kFloat = 1;
  static constexpr int kDouble = 2;

  CDSPData() = default;
  CDSPData(const CDSPData&) = delete;
  CDSPData& operator=(const CDSPData&) = delete;

  virtual std::unique_ptr<CDSPData> Clone(bool deep) const;  // deep: samples and masks are copies
  virtual ~CDSPData() = default;
  virtual void ClearBands();
  // Appends a clone of a band of `source`, which must have this shape. Deep: with a copy of its samples and its mask.
  // Take ownership: what the source's band owned of what the two share is this set's from now on.
  virtual CDSPDataBand& AddBandFrom(CDSPData& source, int band, bool deep, bool takeOwnership);
  virtual CDSPDataBand& AddBand();  // without arrays
  virtual void AddBands(int count);
  virtual void FillWithNull(int band);  // every sample; the mask stays
  // Called for each output of an operation that has run; false makes the run fail.
  virtual bool OnProcessed() { return true; }
  // Gives the band a mask of its own if it has none, and lengthens one that is too short for the shape. With `scan`
  // each sample v with |v| * 1e-6 >= |v - null value| becomes null as well.
  virtual void EnsureMask(int band, bool scan);
  virtual void CopyFrom(const CDSPData& source);  // shape, and copies of samples and masks

  // A size below 1 counts as 1. False, and no change, when there would be more samples than an int can count.
  bool SetDimensions(int x, int y, int z);
  int GetIndex(int i, int j, int k) const;  // of the sample at (i, j, k); unchecked
  std::size_t GetElementCount() const {
    return static_cast<std::size_t>(sampleCount) * static_cast<std::size_t>(elementsPerSample);
  }
  void NewSamples(CDSPDataBand& band) const;  // an owned array of this element type and length, its values not set

  std::vector<std::unique_ptr<CDSPDataBand>> bands;
  int sizeX = 0;
  int sizeY = 0;
  int sizeZ = 0;
  int planeSize = 0;
  int dimensionality = 1;
  int sampleCount = 0;
  int elementsPerSample = 1;  // only copies carry more than one; the filters leave such sets alone
  int elementType = kFloat;
};

}  // namespace tallyscope
