// SPDX-License-Identifier: MIT
#include "statistics/Stats_Region.h"

#include <algorithm>
#include <cstddef>
#include <functional>

#include "spatial/Stats_Spatial.h"

namespace tallyscope {

namespace {

constexpr int kBlock = 512;

}  // namespace

class CStats_Region::SourceListener : public CDataListener {
 public:
  explicit SourceListener(CStats_Region& region) : region_(region) {}
  void OnDataChanged(const DataChange& change) override { region_.DataChanged(change); }

 private:
  CStats_Region& region_;
};

CStats_Region::CStats_Region(CStats_Spatial* spatial)
    : spatial_(spatial), listener_(std::make_shared<SourceListener>(*this)) {
  const std::vector<int>& stations = GetStations();
  size_ = static_cast<int>(stations.size());
  ascending_ = std::adjacent_find(stations.begin(), stations.end(), std::greater_equal<>()) == stations.end();
  if (spatial->IsItem(0)) spatial->GetItemData(0)->AddListener(listener_);
}

CStats_Data* CStats_Region::GetSource() {
  return spatial_->GetItemData(0);
}

const std::vector<int>& CStats_Region::GetStations() const {
  static const std::vector<int> kNone;
  return spatial_->lists.empty() ? kNone : spatial_->lists.front();
}

bool CStats_Region::CanSort() {
  return GetSource()->CanSort();
}

int CStats_Region::GetSpatialSize() {
  return GetSource()->GetSpatialSize();
}

int CStats_Region::GetValueSize() {
  return GetSource()->GetValueSize();
}

CString CStats_Region::GetValueName(int field) {
  return GetSource()->GetValueName(field);
}

bool CStats_Region::GetValue(int field, int station, double& value) {
  return GetSource()->GetValue(field, At(station), value);
}

double CStats_Region::GetValue(int field, int station) {
  return GetSource()->GetValue(field, At(station));
}

bool CStats_Region::IsValueValid(int field, int station) {
  return GetSource()->IsValueValid(field, At(station));
}

int CStats_Region::GetSourceStation(int station) {
  return GetSource()->GetSourceStation(At(station));
}

// A run of selected stations that are neighbours in the source as well is read as a run there.
bool CStats_Region::IsRun(int first, int count) const {
  return ascending_ && At(first + count - 1) - At(first) == count - 1;
}

int CStats_Region::ReadValues(int field, int first, int count, double* values, unsigned char* valid) {
  if (count <= 0) return 0;
  if (IsRun(first, count)) {
    return GetSource()->ReadValues(field, At(first), count, values, valid);
  }
  return GetSource()->ReadValuesAt(field, GetStations().data() + first, count, values, valid);
}

void CStats_Region::ReadRawValues(int field, int first, int count, double* values) {
  if (count <= 0) return;
  if (IsRun(first, count)) {
    GetSource()->ReadRawValues(field, At(first), count, values);
  } else {
    GetSource()->ReadRawValuesAt(field, GetStations().data() + first, count, values);
  }
}

int CStats_Region::ReadValuesAt(int field, const int* stations, int count, double* values, unsigned char* valid) {
  int good = 0;
  int own[kBlock];
  for (int first = 0; first < count; first += kBlock) {
    const int size = std::min(kBlock, count - first);
    std::transform(stations + first, stations + first + size, own, [this](int station) { return At(station); });
    good += GetSource()->ReadValuesAt(field, own, size, values + first, valid + first);
  }
  return good;
}

void CStats_Region::ReadRawValuesAt(int field, const int* stations, int count, double* values) {
  int own[kBlock];
  for (int first = 0; first < count; first += kBlock) {
    const int size = std::min(kBlock, count - first);
    std::transform(stations + first, stations + first + size, own, [this](int station) { return At(station); });
    GetSource()->ReadRawValuesAt(field, own, size, values + first);
  }
}

}  // namespace tallyscope
