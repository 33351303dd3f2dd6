// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "statistics/ProgressSink.h"

namespace tallyscope {

// A progress sink for band operations, which fill a stretch of the bar: from `start` to `end`, in percent.
class CDSPProgress : public CProgressSink {
 public:
  // `done` of `total` pieces of the stretch; false when the work is to stop. REQUIRES: a total above 0.
  bool Report(std::int64_t done, std::int64_t total) {
    return OnProgress(static_cast<int>((end - start) * static_cast<double>(done) / static_cast<double>(total) + start));
  }

  double start = 0.0;
  double end = 100.0;
};

// Gives a part of the stretch to a step: part `index` of `count` equal ones, until the end of the scope, which gives
// the whole back. The sink may be null, and is the caller's.
class DSPProgressPart {
 public:
  DSPProgressPart(CDSPProgress* progress, int index, int count) : progress_(progress) {
    if (progress_ == nullptr) return;
    start_ = progress_->start;
    end_ = progress_->end;
    progress_->start = start_ + (end_ - start_) * index / count;
    progress_->end = start_ + (end_ - start_) * (index + 1) / count;
  }
  ~DSPProgressPart() {
    if (progress_ == nullptr) return;
    progress_->start = start_;
    progress_->end = end_;
  }
  DSPProgressPart(const DSPProgressPart&) = delete;
  DSPProgressPart& operator=(const DSPProgressPart&) = delete;

 private:
  CDSPProgress* progress_;
  double start_ = 0.0;
  double end_ = 0.0;
};

}  // namespace tallyscope
