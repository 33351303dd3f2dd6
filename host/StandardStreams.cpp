// SPDX-License-Identifier: MIT
#include "host/StandardStreams.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <iostream>

#include "host/Command.h"
#include "host/Sentences.h"

namespace tallyscope {

namespace {

// Whether nobody reads standard output any more. The signal for that ends the program, unless its caller ignores it.
bool IsReaderGone() {
  pollfd output{STDOUT_FILENO, POLLOUT, 0};
  return poll(&output, 1, 0) > 0 && (output.revents & POLLERR) != 0;
}

}  // namespace

void PrepareOutput() {
  std::signal(SIGXFSZ, SIG_IGN);
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (fcntl(stream, F_GETFD) >= 0) continue;
    const int wrongWay = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (open("/dev/null", wrongWay) < 0) return;  // takes the lowest number that is free
  }
}

int FinishOutput(std::ostream& out, std::ostream& err, int code) {
  if (out.flush()) return code;
  if (&out == &std::cout && IsReaderGone()) return kExitReaderGone;
  Say(err, "Standard output can't be written.");
  return code == kExitDone ? int{kExitBadInput} : code;
}

}  // namespace tallyscope
