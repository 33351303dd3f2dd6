// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>

#include "statistics/ProgressSink.h"

namespace tallyscope {

// Tells a sink of work that is counted in steps of a few nanoseconds: at most once in kSteps of them, with the share
// done, so that work of less says nothing at all. Once the sink has cancelled, it is not asked again.
class CWorkProgress {
 public:
  static constexpr std::ptrdiff_t kSteps = 1 << 20;

  CWorkProgress(CProgressSink* sink, const char* task) : sink_(sink), task_(task) {}

  // After `steps` more. `share` of the whole is done, 0 to 1; one that falls back isn't shown. False when cancelled.
  bool Did(std::ptrdiff_t steps, double share) {
    if (sink_ == nullptr || cancelled_) return !cancelled_;
    steps_ += steps;
    if (steps_ < kSteps) return true;
    steps_ = 0;
    if (percent_ < 0) sink_->SetTask(task_, 0);
    percent_ = std::max(percent_, static_cast<int>(share * 100));
    cancelled_ = !sink_->OnProgress(percent_);
    return !cancelled_;
  }

  // Calls step(first, last) for blocks of `size` steps, of the work from share `begin` to `end`. False when cancelled.
  template <class Step>
  bool Run(std::size_t size, double begin, double end, Step step) {
    constexpr std::size_t kBlock = kSteps / 4;
    for (std::size_t first = 0; first < size; first += kBlock) {
      const std::size_t last = std::min(first + kBlock, size);
      step(first, last);
      const double part = static_cast<double>(last) / static_cast<double>(size);
      if (!Did(static_cast<std::ptrdiff_t>(last - first), begin + part * (end - begin))) return false;
    }
    return true;
  }

  bool IsCancelled() const { return cancelled_; }

 private:
  CProgressSink* sink_;
  const char* task_;
  std::ptrdiff_t steps_ = 0;
  int percent_ = -1;
  bool cancelled_ = false;
};

// Passes a computation's sink on to work inside it that may name a task of its own, and names the computation's again.
class CInnerTask : public CProgressSink {
 public:
  explicit CInnerTask(CProgressSink* outer) : outer_(outer) {}

  CProgressSink* GetSink() { return outer_ != nullptr ? this : nullptr; }
  void Leave(const char* task) {
    if (named_) outer_->SetTask(task, 0);
    named_ = false;
  }

  bool OnProgress(int percent) override { return outer_->OnProgress(percent); }
  void SetTask(const char* text, int reserved) override {
    named_ = true;
    outer_->SetTask(text, reserved);
  }

 private:
  CProgressSink* outer_;
  bool named_ = false;
};

// Passes a sink on to several computations in a row and keeps in mind that it has cancelled, so that the later ones end
// at once.
class CCancelWatch : public CProgressSink {
 public:
  explicit CCancelWatch(CProgressSink* outer) : outer_(outer) {}

  CProgressSink* GetSink() { return outer_ != nullptr ? this : nullptr; }
  bool WasCancelled() const { return cancelled_; }

  bool OnProgress(int percent) override {
    cancelled_ = cancelled_ || !outer_->OnProgress(percent);
    return !cancelled_;
  }
  void SetTask(const char* text, int reserved) override {
    if (!cancelled_) outer_->SetTask(text, reserved);
  }

 private:
  CProgressSink* outer_;
  bool cancelled_ = false;
};

}  // namespace tallyscope
