// SPDX-License-Identifier: MIT
#pragma once

#include <span>

namespace tallyscope {

// The SVG drawings of resources/, compiled in. Line icons are drawn in "currentColor".
struct IconDrawing {
  const char* name;
  const char* svg;
};

std::span<const IconDrawing> GetIconDrawings();

}  // namespace tallyscope
