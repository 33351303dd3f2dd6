// SPDX-License-Identifier: MIT
#pragma once

#include "host/ReaderOptions.h"

namespace CLI {
class App;
}

namespace tallyscope {

// The options of every command that reads a table. `options` is filled when the command line is parsed.
void AddReaderFlags(CLI::App& app, ReaderOptions& options);
CString CheckReaderFlags(const ReaderOptions& options);  // a sentence, or empty

}  // namespace tallyscope
