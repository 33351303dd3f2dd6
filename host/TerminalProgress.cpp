// SPDX-License-Identifier: MIT
#include "host/TerminalProgress.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>

namespace tallyscope {

CTerminalProgress::CTerminalProgress(std::ostream& err)
    : CTerminalProgress(err, &err == &std::cerr && isatty(STDERR_FILENO) != 0) {}

CTerminalProgress::~CTerminalProgress() {
  if (shown_ >= 0) err_ << "\r\033[K" << std::flush;
}

bool CTerminalProgress::OnProgress(int percent) {
  constexpr int kBar = 30;
  if (!isTerminal_ || percent == shown_ || std::chrono::steady_clock::now() - started_ < patience_) return true;
  shown_ = percent;
  const auto filled = static_cast<std::size_t>(std::clamp(percent, 0, 100) * kBar / 100);
  err_ << "\r\033[K" << task_ << " [" << CString(filled, '#') << CString(kBar - filled, '.') << "] " << percent << " %"
       << std::flush;
  return true;
}

void CTerminalProgress::SetTask(const char* text, int) {
  task_ = text;
}

}  // namespace tallyscope
