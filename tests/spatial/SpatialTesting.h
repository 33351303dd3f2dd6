// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "platform/core/Box.h"
#include "tests/support/Made.h"

namespace tallyscope::testing_spatial {

constexpr double kNull = -9999;

// A table of axes and then fields; kNull is a null.
CMadeTable Table(int axes, const std::vector<std::vector<double>>& columns);

// A cloud in three dimensions with one field that counts stations; tests take as many axes as they want.
struct Cloud {
  std::string name;
  std::vector<Point3> points;

  CMadeTable Table(int axes) const;
};

// Clouds that trip a search up: ties, lines, lattices, nulls, NaN, sizes beside the limits of a leaf.
std::vector<Cloud> NastyClouds();

// Box of a whole cloud with some room, nulls left out.
Box BoundsOf(const Cloud& cloud);

}  // namespace tallyscope::testing_spatial
