// SPDX-License-Identifier: MIT
#pragma once

#include "statistics/ProgressSink.h"

namespace tallyscope {

// Passes reports on and notes a cancel: a calculation that gives nothing may have had nothing to give.
class CancelNote : public CProgressSink {
 public:
  explicit CancelNote(CProgressSink* progress) : progress_(progress) {}

  CProgressSink* GetSink() { return progress_ != nullptr ? this : nullptr; }
  bool IsCancelled() const { return cancelled_; }

  bool OnProgress(int percent) override {
    cancelled_ = !progress_->OnProgress(percent) || cancelled_;
    return !cancelled_;
  }
  void SetTask(const char* text, int reserved) override { progress_->SetTask(text, reserved); }

 private:
  CProgressSink* progress_;
  bool cancelled_ = false;
};

}  // namespace tallyscope
