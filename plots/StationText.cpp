// SPDX-License-Identifier: MIT
#include "plots/StationText.h"

#include <algorithm>

#include "platform/core/NumberText.h"
#include "platform/core/ShownText.h"
#include "statistics/DimIndex.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

CString ShownNumber(double value) {
  return FormatLocale(value, 8);
}

CString DescribeStation(CStats_Data& data, int station, const std::vector<int>& dims) {
  const int axes = data.GetSpatialSize();
  std::vector<int> shown;
  for (int axis = -1; axis >= -axes; --axis) shown.push_back(axis);
  for (const int dim : dims) {
    const bool known = IsDimInRange(dim, axes, data.GetValueSize());
    if (known && std::find(shown.begin(), shown.end(), dim) == shown.end()) shown.push_back(dim);
  }
  CString text = "station " + std::to_string(station + 1) + ":";
  for (const int dim : shown) {
    double value = 0;
    const bool valid = data.GetValue(dim, station, value);
    text += (text.back() == ':' ? " " : ", ") + ShownText(data.GetValueName(dim)) + " " +
            (valid ? ShownNumber(value) : "null");
  }
  return text;
}

}  // namespace tallyscope
