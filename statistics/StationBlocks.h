// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

#include "statistics/ProgressSink.h"
#include "statistics/Stats_Data.h"

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

// Walks the stations of a field in order, in blocks: visit(values, valid, stations) gets the valid values of a run of
// `stations` stations, `valid` of them. Holds no more than a block. False when the sink cancels; the block that
// reported has been visited by then.
template <class Visit>
bool VisitValidValues(CStats_Data& data, int dim, StationProgress& progress, Visit visit) {
  constexpr int kBlock = 512;
  double values[kBlock] = {};  // a null's place is left unset by the read, but copied below
  unsigned char valid[kBlock];
  const int total = data.GetSize();
  for (int first = 0; first < total;) {
    const int count = progress.Cut(first, std::min(kBlock, total - first));
    const int good = data.ReadValues(dim, first, count, values, valid);
    if (good < count) {
      int kept = 0;
      for (int i = 0; i < count; ++i) {  // without a branch: nulls in no order would mispredict it
        values[kept] = values[i];
        kept += valid[i];
      }
    }
    visit(values, good, count);
    first += count;
    if (!progress.Report(first - 1)) return false;
  }
  return true;
}

// The same in the order of the field's sort table, value by value: visit(value). A percent counts positions.
template <class Visit>
bool VisitSortedValues(CStats_Data& data, int dim, StationProgress& progress, Visit visit) {
  constexpr int kBlock = 512;
  int stations[kBlock];
  double values[kBlock];
  unsigned char valid[kBlock];
  const int total = data.GetSize();
  for (int first = 0; first < total;) {
    const int count = progress.Cut(first, std::min(kBlock, total - first));
    for (int i = 0; i < count; ++i) stations[i] = data.GetSortedStation(dim, first + i);
    data.ReadValuesAt(dim, stations, count, values, valid);
    for (int i = 0; i < count; ++i) {
      if (valid[i] != 0) visit(values[i]);
    }
    first += count;
    if (!progress.Report(first - 1)) return false;
  }
  return true;
}

}  // namespace tallyscope
