// SPDX-License-Identifier: MIT
#include "statistics/Stats_HistData.h"

#include "statistics/Stats_Histogram.h"

namespace tallyscope {

namespace {

enum Field { kBin, kBinMin, kBinCentre, kBinMax, kDataMin, kDataCentre, kDataMax, kCount, kCumulative, kFields };

constexpr const char* kNames[kFields] = {"Bin",        "BinMin",  "BinCentre", "BinMax",    "DataMin",
                                         "DataCentre", "DataMax", "Count",     "Cumulative"};
constexpr double kNull = -1e32;

}  // namespace

int CStats_HistData::GetSize() {
  return histogram != nullptr ? histogram->GetBinCount() : 0;
}

CString CStats_HistData::GetValueName(int field) {
  return field >= 0 && field < kFields ? kNames[field] : "";
}

double CStats_HistData::GetValue(int field, int station) {
  if (station < 0 || station >= GetSize()) return 0.0;
  const auto& bin = histogram->bins[static_cast<std::size_t>(station)];
  switch (field) {
    case kBin:
      return station + 1;
    case kBinMin:
      return bin.binMin;
    case kBinCentre:
      return (bin.binMin + bin.binMax) / 2;
    case kBinMax:
      return bin.binMax;
    case kDataMin:
      return bin.dataMin;
    case kDataCentre:
      return (bin.dataMin + bin.dataMax) / 2;
    case kDataMax:
      return bin.dataMax;
    case kCount:
      return bin.count;
    case kCumulative:
      return bin.cumulative;
    default:
      return 0.0;
  }
}

bool CStats_HistData::IsValueValid(int field, int station) {
  if (station < 0 || station >= GetSize()) return false;
  const bool isData = field >= kDataMin && field <= kDataMax;
  return !isData || histogram->bins[static_cast<std::size_t>(station)].count > 0;
}

bool CStats_HistData::GetValue(int field, int station, double& value) {
  if (CStats_Data::GetValue(field, station, value)) return true;
  value = kNull;
  return false;
}

}  // namespace tallyscope
