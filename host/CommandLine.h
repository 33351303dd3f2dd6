// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <optional>
#include <vector>

#include "host/ReaderOptions.h"
#include "statistics/Tallyscope.h"

namespace tallyscope {

// What the window is asked to open with.
struct OpenRequest {
  CString file{};  // empty: the window asks for one
  ReaderOptions reader{};
  std::optional<CTallyscope::eAnalysisMode> mode{};
  CString field{};     // name of the field to start with, not checked; empty: the first
  CString pictures{};  // a folder: walk the pages, write a picture of each there, and end
};

// Opens the workbench and returns the exit code when it is closed. Whoever links the command line defines it: the
// program with a window, tests with a note of what was asked.
int RunWindow(const OpenRequest& request);

// The whole program: `arguments` without the program's name, answers to `out`, complaints to `err`. Returns the exit
// code.
//   RunCommandLine({"summary", "meuse.csv", "--field", "zinc"}, std::cout, std::cerr);
// A first argument that names no command is a file to open.
int RunCommandLine(const std::vector<CString>& arguments, std::ostream& out, std::ostream& err);

}  // namespace tallyscope
