// SPDX-License-Identifier: MIT
#pragma once

#include "bands/DSPData.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

// A band set as a table, so that every calculator works on it: a station per sample, a field per band, nulls by the
// masks. The axes are the samples' indices along x, y and z: fields -1, -2, -3, as many as the set has dimensions. Of
// samples with several elements the first counts.
//
// The set must outlive the table, which holds nothing of it and shows what it holds now; only what a table sorts has to
// be told when samples change.
class CStats_DSPData : public CStats_Data {
 public:
  explicit CStats_DSPData(CDSPData* data);  // not owned; masks that are too short for it are lengthened

  int GetSize() override { return data_->sampleCount; }
  int GetSpatialSize() override { return data_->dimensionality; }
  int GetValueSize() override { return static_cast<int>(data_->bands.size()); }
  using CStats_Data::GetValue;
  double GetValue(int field, int station) override;
  bool IsValueValid(int field, int station) override;

  int ReadValues(int field, int first, int count, double* values, unsigned char* valid) override;
  void ReadRawValues(int field, int first, int count, double* values) override;

 private:
  const CDSPDataBand& GetBand(int field) const { return *data_->bands[static_cast<std::size_t>(field)]; }
  int GetCoordinate(int field, int station) const;
  void ReadCoordinates(int field, int first, int count, double* values) const;
  std::size_t GetElement(int station) const {
    return static_cast<std::size_t>(station) * static_cast<std::size_t>(data_->elementsPerSample);
  }

  CDSPData* data_;
};

}  // namespace tallyscope
