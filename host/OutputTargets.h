// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <vector>

#include "platform/core/String.h"

namespace CLI {
class App;
}

namespace tallyscope {

// The files of a command, as they were named on the command line. An empty name is no file; "-" is standard input among
// those it reads, standard output among those it writes.
struct CommandFiles {
  std::vector<CString> reads;
  std::vector<CString> writes;
};

// The option that lets a command write over what it reads, or two things to one file.
void AddForceFlag(CLI::App& app, bool& force);

// Whether the files that would be written are all different, and none of them is read. Names that lead to one file
// count as one: by links of both kinds, by another way through the folders, by a redirection of the shell. What is no
// regular file (/dev/null, a pipe) never counts. With `force` always true; false when the sentence has been said.
// To be asked before anything is read or written.
//   if (!MayWrite({{file_}, {target_, savedRules_}}, force_, err)) return kExitBadInput;
[[nodiscard]] bool MayWrite(const CommandFiles& files, bool force, std::ostream& err);

}  // namespace tallyscope
