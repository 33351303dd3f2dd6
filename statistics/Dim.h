// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

class CStats_Data;

// The dim that names no column. Dims 0, 1, ... are the fields of a table, -1, -2, -3 its axes.
inline constexpr int kNoDim = -999;

// A column of a table, which it doesn't own.
struct CColumnRef {
  CStats_Data* data;
  int dim;
};

}  // namespace tallyscope
