// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string_view>
#include <utility>

namespace tallyscope {

// What stands against the rules until it is mended; each goes from here with its mend, and nothing is added.
inline constexpr std::array<std::pair<std::string_view, std::string_view>, 0> kIncludesToGo = {};
inline constexpr std::array<std::string_view, 1> kNamesToGo = {"tallyscope::FigureRow"};

}  // namespace tallyscope
