// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "statistics/BlockReader.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr const char* kTask = "Conditional expectation computation";

int GetWindow(int valid) {
  return std::max(valid / 32, 3) / 2 * 2 + 1;
}  // odd, so that it has a middle

// A moving mean over the last `window` values, told at its middle station: for the first station, each window further
// on, and the last one. The sum is carried along, the oldest value leaving before the newest enters.
class CMovingMean {
 public:
  CMovingMean(int valid, std::vector<int>& stations, std::vector<double>& means)
      : window_(GetWindow(valid)),
        half_(window_ / 2),
        lastPlace_(valid - 1),
        place_(-half_),
        values_(static_cast<std::size_t>(window_)),
        stations_(static_cast<std::size_t>(window_)),
        told_(stations),
        means_(means) {}

  void Add(const int* stations, const double* values, int count) {
    int done = 0;
    for (; done < count && fill_ < window_; ++done) AddFirst(stations[done], values[done]);
    while (done < count) {
      const int run = std::min({count - done, window_ - tail_, GetRunToTell()});
      ReplaceOldest(stations + done, values + done, run);
      done += run;
    }
  }

  // The values have ended: the window runs out over the places that its middle has not reached.
  void Drain() {
    while (place_ <= lastPlace_ && fill_ > 1) {
      DropOldest();
      Step();
    }
  }

 private:
  int Next(int slot) const { return slot + 1 == window_ ? 0 : slot + 1; }

  void AddFirst(int station, double value) {
    head_ = Next(head_);
    values_[static_cast<std::size_t>(head_)] = value;
    stations_[static_cast<std::size_t>(head_)] = station;
    sum_ += value;
    ++fill_;
    Step();
  }

  // In a full ring the newest value takes the slot of the oldest. A run neither wraps nor passes a place that is told.
  void ReplaceOldest(const int* stations, const double* values, int run) {
    double* ring = values_.data() + tail_;
    double sum = sum_;
    for (int i = 0; i < run; ++i) {
      sum -= ring[i];
      ring[i] = values[i];
      sum += values[i];
    }
    sum_ = sum;
    std::copy_n(stations, run, stations_.data() + tail_);
    head_ = tail_ + run - 1;
    tail_ = Next(head_);
    centre_ = (centre_ + run - 1) % window_;
    place_ += run - 1;
    Step();
  }

  int GetRunToTell() const { return static_cast<int>(nextTold_ - place_) + 1; }

  void DropOldest() {
    sum_ -= values_[static_cast<std::size_t>(tail_)];
    tail_ = Next(tail_);
    --fill_;
  }

  void Step() {
    if (fill_ > half_) centre_ = Next(centre_);
    if (place_ == nextTold_ || place_ == lastPlace_) Tell();
    ++place_;
  }

  void Tell() {
    if (place_ == nextTold_) nextTold_ += window_;
    if (centre_ < 0) return;  // a lone value never fills half a window
    told_.push_back(stations_[static_cast<std::size_t>(centre_)]);
    means_.push_back(sum_ / fill_);
  }

  const int window_;
  const int half_;
  const int lastPlace_;
  int place_;  // of the middle, among the pairs in sorted order; below 0 while the first half window fills
  std::int64_t nextTold_ = 0;
  int fill_ = 0;
  int head_ = -1;
  int tail_ = 0;
  int centre_ = -1;
  double sum_ = 0;
  std::vector<double> values_;  // rings
  std::vector<int> stations_;
  std::vector<int>& told_;
  std::vector<double>& means_;
};

// Takes the pairs in the sorted order of one column and averages the other. Null `marks`: every station is a pair.
struct Walk {
  CColumnRef along;
  CColumnRef averaged;
  int total;
  const bvector* marks;

  bool Run(CMovingMean& mean, StationProgress& reports) const {
    constexpr int kBlock = 512;
    std::array<int, kBlock> stations{};
    std::array<double, kBlock> values{};
    std::array<unsigned char, kBlock> valid{};
    const int size = along.data->GetSize();
    int count = 0;
    for (int first = 0; first < size; first += count) {
      count = std::min(kBlock, size - first);
      const int pairs = Collect(first, count, stations.data());
      averaged.data->ReadValuesAt(averaged.dim, stations.data(), pairs, values.data(), valid.data());
      mean.Add(stations.data(), values.data(), pairs);
      if (!reports.ReportRun(first, std::min(count, total - first))) return false;
    }
    mean.Drain();
    return true;
  }

 private:
  int Collect(int first, int count, int* stations) const {
    int pairs = 0;
    for (int position = first; position < first + count; ++position) {
      const int station = along.data->GetSortedStation(along.dim, position);
      stations[pairs] = station;
      pairs += station < total && (!marks || marks->Get(station));
    }
    return pairs;
  }
};

}  // namespace

bool CStats_Bivariate::CalcExpectation(CProgressSink* progress) {
  StationProgress reports(progress, total);
  if (!reports.Start(kTask) || !SortBoth(kTask, progress)) return false;
  std::vector<double> xs;
  std::vector<double> ysGivenX;
  std::vector<double> ys;
  std::vector<double> xsGivenY;
  const CColumnRef x = GetColumn(0);
  const CColumnRef y = GetColumn(1);
  const bvector marks = valid < total ? MarkJoint({x, y}, total) : bvector();
  const bvector* marksOrNull = valid < total ? &marks : nullptr;

  const auto run = [&](const Walk& walk, double percent, std::vector<double>& places, std::vector<double>& means) {
    std::vector<int> stations;
    CMovingMean mean(valid, stations, means);
    reports.SetStretch(percent, 50.0);
    const bool whole = walk.Run(mean, reports);
    for (const int station : stations) places.push_back(walk.along.data->GetValue(walk.along.dim, station));
    return whole;
  };
  if (!run({x, y, total, marksOrNull}, 0.0, xs, ysGivenX)) return false;
  if (!run({y, x, total, marksOrNull}, 50.0, ys, xsGivenY)) return false;
  expectationX = std::move(xs);
  expectationYGivenX = std::move(ysGivenX);
  expectationY = std::move(ys);
  expectationXGivenY = std::move(xsGivenY);
  return true;
}

}  // namespace tallyscope
