// SPDX-License-Identifier: MIT
#include "bands/Stats_DSPData.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "bands/MaskBits.h"

namespace tallyscope {

CStats_DSPData::CStats_DSPData(CDSPData* data) : data_(data) {
  for (std::size_t i = 0; i < data->bands.size(); ++i) {
    if (data->bands[i]->mask != nullptr) data->EnsureMask(static_cast<int>(i), false);
  }
}

int CStats_DSPData::GetCoordinate(int field, int station) const {
  if (data_->dimensionality == 1) return station;
  const int inPlane = data_->dimensionality == 3 ? station % data_->planeSize : station;
  if (field == -1) return inPlane % data_->sizeX;
  if (field == -2) return inPlane / data_->sizeX;
  return station / data_->planeSize;
}

double CStats_DSPData::GetValue(int field, int station) {
  if (field < 0) return GetCoordinate(field, station);
  const CDSPDataBand& band = GetBand(field);
  return data_->elementType == CDSPData::kDouble ? band.doubleData[GetElement(station)]
                                                 : static_cast<double>(band.floatData[GetElement(station)]);
}

bool CStats_DSPData::IsValueValid(int field, int station) {
  return field < 0 || !GetBand(field).IsNull(station);
}

void CStats_DSPData::ReadCoordinates(int field, int first, int count, double* values) const {
  if (count <= 0) return;
  if (data_->dimensionality == 1) {
    for (int i = 0; i < count; ++i) values[i] = first + i;
    return;
  }
  std::array<int, 3> at{first % data_->planeSize % data_->sizeX, first % data_->planeSize / data_->sizeX,
                        first / data_->planeSize};
  const int& wanted = field == -1 ? at[0] : field == -2 ? at[1] : at[2];
  for (int i = 0; i < count; ++i) {
    values[i] = wanted;
    if (++at[0] < data_->sizeX) continue;
    at[0] = 0;
    if (++at[1] < data_->sizeY) continue;
    at[1] = 0;
    ++at[2];
  }
}

void CStats_DSPData::ReadRawValues(int field, int first, int count, double* values) {
  if (field < 0) {
    ReadCoordinates(field, first, count, values);
    return;
  }
  if (data_->elementType == CDSPData::kDouble || data_->elementsPerSample != 1) {
    CStats_Data::ReadRawValues(field, first, count, values);
    return;
  }
  std::copy_n(GetBand(field).floatData + first, std::max(count, 0), values);
}

int CStats_DSPData::ReadValues(int field, int first, int count, double* values, unsigned char* valid) {
  ReadRawValues(field, first, count, values);
  const bvector* mask = field < 0 ? nullptr : GetBand(field).mask;
  int good = std::max(count, 0);
  std::fill_n(valid, good, static_cast<unsigned char>(1));
  if (mask == nullptr) return good;
  for (int done = 0; done < count; done += kMaskWord) {
    const int size = std::min(kMaskWord, count - done);
    for (auto nulls = LoadBits(*mask, first + done, size); nulls != 0; nulls &= nulls - 1, --good) {
      valid[done + std::countr_zero(nulls)] = 0;
    }
  }
  return good;
}

}  // namespace tallyscope
