// SPDX-License-Identifier: MIT
#pragma once

#include "statistics/ProgressSink.h"

namespace tallyscope {

// Passes reports on to a sink, if there is one, until that cancels; from then on it cancels by itself. For computations
// of several steps, some of which may fail for other reasons.
class CCancelMemory : public CProgressSink {
 public:
  explicit CCancelMemory(CProgressSink* sink) : sink_(sink) {}

  bool OnProgress(int percent) override {
    isCancelled_ = isCancelled_ || (sink_ != nullptr && !sink_->OnProgress(percent));
    return !isCancelled_;
  }
  void SetTask(const char* text, int reserved) override {
    if (sink_ != nullptr && !isCancelled_) sink_->SetTask(text, reserved);
  }

  bool IsCancelled() const { return isCancelled_; }
  CProgressSink* GetSink() { return sink_ != nullptr ? this : nullptr; }  // null without a sink to report to

 private:
  CProgressSink* sink_;
  bool isCancelled_ = false;
};

}  // namespace tallyscope
