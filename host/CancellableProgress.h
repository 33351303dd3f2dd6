// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>

#include "host/TerminalProgress.h"

namespace tallyscope {

// The progress bar of work that Ctrl-C cancels: while it lives, the key makes the next OnProgress false instead of
// ending the program, so that the command can say so and leave nothing half done. One at a time.
class CCancellableProgress : public CTerminalProgress {
 public:
  explicit CCancellableProgress(std::ostream& err);
  ~CCancellableProgress() override;

  bool OnProgress(int percent) override { return CTerminalProgress::OnProgress(percent) && !IsCancelled(); }
  static bool IsCancelled();  // since the last one was made

 private:
  struct sigaction before_ {};
};

}  // namespace tallyscope
