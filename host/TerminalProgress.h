// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <iosfwd>

#include "platform/core/String.h"
#include "statistics/ProgressSink.h"

namespace tallyscope {

// A progress bar on a terminal's standard error, shown once the work has taken half a second and wiped when it ends. On
// any other stream it stays silent.
class CTerminalProgress : public CProgressSink {
 public:
  explicit CTerminalProgress(std::ostream& err);
  CTerminalProgress(std::ostream& err, bool isTerminal, std::chrono::milliseconds patience = kPatience)
      : err_(err), isTerminal_(isTerminal), patience_(patience) {}
  CTerminalProgress(const CTerminalProgress&) = delete;
  CTerminalProgress& operator=(const CTerminalProgress&) = delete;
  ~CTerminalProgress() override;

  bool OnProgress(int percent) override;
  void SetTask(const char* text, int reserved) override;

 private:
  static constexpr std::chrono::milliseconds kPatience{500};

  std::ostream& err_;
  bool isTerminal_;
  std::chrono::milliseconds patience_;  // until the bar shows
  CString task_;
  int shown_ = -1;  // percent on the bar
  std::chrono::steady_clock::time_point started_ = std::chrono::steady_clock::now();
};

}  // namespace tallyscope
