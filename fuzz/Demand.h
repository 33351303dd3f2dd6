// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <cstdlib>

namespace tallyscope {

// Ends the run, which makes the input a finding, unless what must hold does.
inline void Demand(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "It does not hold: %s\n", what);
  std::abort();
}

}  // namespace tallyscope
