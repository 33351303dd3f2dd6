// SPDX-License-Identifier: MIT
#include <iostream>

#include "host/CommandLine.h"
#include "host/StandardStreams.h"
#include "platform/core/TemporaryFile.h"

int main(int argc, char** argv) {
  tallyscope::PrepareOutput();
  tallyscope::CTemporaryFile::RemoveOnSignals();
  std::ios::sync_with_stdio(false);
  return tallyscope::RunCommandLine({argv + (argc > 0 ? 1 : 0), argv + argc}, std::cout, std::cerr);
}
