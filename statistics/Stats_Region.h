// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "statistics/Stats_Data.h"

namespace tallyscope {

class CStats_Spatial;

// The selected stations of a table as a table of their own, so that every calculator works on them alone. It copies
// nothing: it reads through the first station list of a spatial calculator, which must stand still as long as the
// region is in use, and through the data set of that calculator's item 0. A change of that data set is one of the
// region too.
class CStats_Region : public CStats_Data {
 public:
  explicit CStats_Region(CStats_Spatial* spatial);  // not owned

  int GetSize() override { return size_; }  // stations selected at construction
  bool CanSort() override;
  int GetSpatialSize() override;
  int GetValueSize() override;
  CString GetValueName(int field) override;
  bool GetValue(int field, int station, double& value) override;
  double GetValue(int field, int station) override;
  bool IsValueValid(int field, int station) override;
  int GetSourceStation(int station) override;

  int ReadValues(int field, int first, int count, double* values, unsigned char* valid) override;
  void ReadRawValues(int field, int first, int count, double* values) override;
  int ReadValuesAt(int field, const int* stations, int count, double* values, unsigned char* valid) override;
  void ReadRawValuesAt(int field, const int* stations, int count, double* values) override;

  virtual CStats_Data* GetSource();

 private:
  const std::vector<int>& GetStations() const;
  bool IsRun(int first, int count) const;
  int At(int station) const { return GetStations()[static_cast<std::size_t>(station)]; }

  class SourceListener;

  CStats_Spatial* spatial_;
  std::shared_ptr<CDataListener> listener_;
  int size_ = 0;
  bool ascending_ = true;
};

}  // namespace tallyscope
