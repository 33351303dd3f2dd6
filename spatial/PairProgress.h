// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>

#include "statistics/ProgressSink.h"

namespace tallyscope {

// Reports a walk over pairs: each further percent of the outer loop, and the last one again when a percent takes long,
// so that a sink can cancel at any time.
class PairProgress {
 public:
  explicit PairProgress(CProgressSink* sink) : sink_(sink) {}

  // Each is false when the sink cancels.
  bool Start(const char* task) {
    if (sink_ == nullptr) return true;
    sink_->SetTask(task, 0);
    return Ask();
  }
  bool Report(std::int64_t step, std::int64_t steps) {
    const int percent = static_cast<int>(static_cast<double>(step) * 100.0 / static_cast<double>(steps));
    if (sink_ == nullptr || percent <= percent_) return true;
    percent_ = percent;
    return Ask();
  }
  // After that many pairs have been looked at.
  bool Work(std::int64_t pairs) {
    constexpr std::int64_t kPairsPerLook = 1 << 17;  // at the clock: some 2 ms of the slowest pairs
    unlooked_ += pairs;
    if (sink_ == nullptr || unlooked_ < kPairsPerLook) return true;
    unlooked_ = 0;
    return Clock::now() - asked_ < std::chrono::milliseconds(25) || Ask();
  }

 private:
  using Clock = std::chrono::steady_clock;

  bool Ask() {
    asked_ = Clock::now();
    return sink_->OnProgress(percent_);
  }

  CProgressSink* sink_;
  int percent_ = 0;
  std::int64_t unlooked_ = 0;
  Clock::time_point asked_;
};

}  // namespace tallyscope
