// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>

namespace tallyscope {

// For a program's main, before it opens anything.
// The numbers of standard input, output and error never go to a file that the program opens, where the caller has
// closed one of them: a report would end up in a table. Reading or writing such a stream fails. And a file that would
// grow beyond the user's limit of size fails like a full disk, where the signal for that would end the process.
void PrepareOutput();

// The end of a command: flushes what it printed and returns its exit code, or another one where not all of it could be
// written. A sentence then goes to `err`, except for a reader who has had enough (| head).
[[nodiscard]] int FinishOutput(std::ostream& out, std::ostream& err, int code);

}  // namespace tallyscope
