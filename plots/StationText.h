// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/core/String.h"

namespace tallyscope {

class CStats_Data;

// A number as the spreadsheet shows it: "%.8g" in the user's characters.
CString ShownNumber(double value);

// "station 37: x 181072, y 333611, zinc 1022": the axes and then these dims, each once; those that the table doesn't
// have are left out. Stations count from 1, and a null is called so.
CString DescribeStation(CStats_Data& data, int station, const std::vector<int>& dims);

}  // namespace tallyscope
