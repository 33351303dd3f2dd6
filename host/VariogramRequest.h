// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "host/ReaderOptions.h"
#include "platform/core/String.h"

namespace tallyscope {

inline constexpr int kAllDirections = 180;  // the width that takes all directions

// A curve of the sample variogram. Degrees: a bearing clockwise from north, a dip that is positive downward, and a
// whole opening, of which the integer half counts to each side.
struct CurveRequest {
  double direction = 0;
  double dip = 0;
  int width = kAllDirections;

  bool IsOmnidirectional() const { return width == kAllDirections; }
};

enum class GridKind { kNone, kPolar, kCartesian };

// What the variogram command is asked for.
struct VariogramRequest {
  CString file;
  CString field;
  double range = 0;                  // 0: from the spacing of the stations
  int samples = 0;                   // most stations used; 0: all
  std::vector<CurveRequest> curves;  // beside that of all directions
  bool covariance = false;           // in the text; JSON has it always
  CString modelFile;
  bool fit = false;
  CString target;                       // gets the fitted model
  std::optional<double> errorDistance;  // of the pairs that the error variance takes
  GridKind grid = GridKind::kNone;
  bool json = false;
  ReaderOptions reader;

  bool HasDips() const;
};

}  // namespace tallyscope
