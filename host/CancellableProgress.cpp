// SPDX-License-Identifier: MIT
#include "host/CancellableProgress.h"

namespace tallyscope {

namespace {

volatile std::sig_atomic_t cancelled = 0;

void Cancel(int) {
  cancelled = 1;
}

}  // namespace

CCancellableProgress::CCancellableProgress(std::ostream& err) : CTerminalProgress(err) {
  cancelled = 0;
  struct sigaction action {};
  action.sa_handler = Cancel;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, &before_);
}

CCancellableProgress::~CCancellableProgress() {
  sigaction(SIGINT, &before_, nullptr);
}

bool CCancellableProgress::IsCancelled() {
  return cancelled != 0;
}

}  // namespace tallyscope
