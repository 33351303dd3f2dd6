// SPDX-License-Identifier: MIT
// For tests that run the command line and open no window by it.
#include "host/CommandLine.h"

namespace tallyscope {

int RunWindow(const OpenRequest&) {
  return -1;
}

}  // namespace tallyscope
