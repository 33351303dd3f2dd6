// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "host/CommandLine.h"

namespace tallyscope {

// What the program says and ends with.
struct Answer {
  int code;
  std::string out;
  std::string err;
};

inline Answer RunProgram(const std::vector<CString>& arguments) {
  std::ostringstream out, err;
  const int code = RunCommandLine(arguments, out, err);
  return {code, out.str(), err.str()};
}

// The same for one command.
inline Answer RunProgram(const CString& command, std::vector<CString> arguments) {
  arguments.insert(arguments.begin(), command);
  return RunProgram(arguments);
}

// The path of a bundled example table.
inline std::string Example(const std::string& name) {
  const char* folder = std::getenv("TALLYSCOPE_EXAMPLES");
  return std::string(folder != nullptr ? folder : "examples") + "/" + name;
}

}  // namespace tallyscope
