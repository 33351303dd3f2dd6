// SPDX-License-Identifier: MIT
#pragma once

#include <array>

namespace tallyscope {

// Co-ordinates x, y, z.
using Point3 = std::array<double, 3>;

// Two opposite corners, and a flag that says whether the box holds something. Copied as one unit.
struct Box {
  Point3 min{0, 0, 0};
  Point3 max{1, 1, 1};
  int valid = 1;
};

}  // namespace tallyscope
