// SPDX-License-Identifier: MIT
#pragma once

#include "statistics/ProgressSink.h"

namespace tallyscope {

// Reports percentages of a walk over `total` stations: after the station at which a further percent is reached. Several
// walks can share the bar, each with a stretch of its own.
class StationProgress {
 public:
  StationProgress(CProgressSink* sink, int total) : sink_(sink), total_(total) {}

  void SetStretch(double begin, double length) {
    begin_ = begin;
    length_ = length;
  }

  // False when the sink cancels before the first station.
  bool Start(const char* task) {
    if (sink_ == nullptr) return true;
    sink_->SetTask(task, 0);
    return sink_->OnProgress(0);
  }
  // Of `count` stations from `first`: how many up to and with the next one that reports; all of them if none does.
  int Cut(int first, int count) const {
    if (sink_ == nullptr || GetPercent(first + count - 1) <= last_) return count;
    int low = 1;
    int high = count;
    while (low < high) {
      const int middle = low + (high - low) / 2;
      if (GetPercent(first + middle - 1) > last_) {
        high = middle;
      } else {
        low = middle + 1;
      }
    }
    return low;
  }
  // After `station`. False when the sink cancels.
  bool Report(int station) {
    if (sink_ == nullptr || GetPercent(station) <= last_) return true;
    last_ = GetPercent(station);
    return sink_->OnProgress(last_);
  }
  // After `count` stations from `first`, as if they had been reported one by one.
  bool ReportRun(int first, int count) {
    for (int done = 0; sink_ != nullptr && done < count;) {
      done += Cut(first + done, count - done);
      if (!Report(first + done - 1)) return false;
    }
    return true;
  }

 private:
  int GetPercent(int station) const { return static_cast<int>(station * length_ / total_ + begin_); }

  CProgressSink* sink_;
  int total_;
  double begin_ = 0.0;
  double length_ = 100.0;
  int last_ = 0;
};

}  // namespace tallyscope
