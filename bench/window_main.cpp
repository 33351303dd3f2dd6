// SPDX-License-Identifier: MIT
// The main of benchmarks that draw: with an application, and with settings in memory.
#include <benchmark/benchmark.h>

#include <memory>

#include <QApplication>

#include "platform/ui/WinApp.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  tallyscope::SetProfile(std::make_unique<tallyscope::CMemoryProfile>());
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
