// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/core/Colour.h"

namespace tallyscope {

// Tables of 256 colours from low to high values.
std::vector<COLORREF> MakeBlueToRed();
// Even in lightness, and told apart without red and green: interpolated between nine published points of viridis
// (van der Walt and Smith 2015).
std::vector<COLORREF> MakePerceptual();

}  // namespace tallyscope
