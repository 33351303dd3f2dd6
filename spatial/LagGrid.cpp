// SPDX-License-Identifier: MIT
#include "spatial/LagGrid.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tallyscope {

int Saturate(std::int64_t pairs) {
  return static_cast<int>(std::min<std::int64_t>(pairs, std::numeric_limits<int>::max()));
}

LagGrid::LagGrid() {
  static const auto nothing = std::make_shared<const Content>();
  content_ = nothing;
}

LagGrid::LagGrid(const LagSettings& settings, Cells cells)
    : content_(std::make_shared<const Content>(Content{settings, std::move(cells)})) {}

}  // namespace tallyscope
