// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace tallyscope {

// Takes the first line off a text, without its end.
inline std::string_view TakeLine(std::string_view& text) {
  const auto end = text.find('\n');
  const auto line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

}  // namespace tallyscope
