// SPDX-License-Identifier: MIT
#include "plots/TraceReducer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "platform/core/WideVectors.h"
#include "statistics/StationBlocks.h"
#include "statistics/Stats_Data.h"
#include "statistics/bvector.h"

namespace tallyscope {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kLargest = std::numeric_limits<double>::max();

// In lanes of their own, which a wide unit takes at once. Gives how many are NaN.
TALLYSCOPE_WIDE_VECTORS
int WidenBy(TraceStretch& stretch, const double* values, int count) {
  using Four [[gnu::vector_size(4 * sizeof(double))]] = double;
  using FourAnywhere [[gnu::vector_size(4 * sizeof(double)), gnu::aligned(alignof(double)), gnu::may_alias]] = double;
  using FourCounts [[gnu::vector_size(4 * sizeof(double))]] = std::int64_t;
  Four low = stretch.lowest - Four{};
  Four high = stretch.highest - Four{};
  FourCounts missing{};
  int i = 0;
  for (; i + 4 <= count; i += 4) {
    const Four four = *reinterpret_cast<const FourAnywhere*>(values + i);
    low = four < low ? four : low;
    high = four > high ? four : high;
    missing += four != four;  // -1 each
  }
  int all = 0;
  for (int lane = 0; lane < 4; ++lane) {
    stretch.Widen(low[lane], high[lane]);
    all -= static_cast<int>(missing[lane]);
  }
  for (; i < count; ++i) {
    stretch.Widen(values[i], values[i]);
    all += static_cast<int>(values[i] != values[i]);
  }
  return all;
}

bool HasInfinity(const TraceStretch& stretch) {
  return stretch.lowest <= stretch.highest && !(std::isfinite(stretch.lowest) && std::isfinite(stretch.highest));
}

// Nulls become NaN, which is what all bits set are.
TALLYSCOPE_WIDE_VECTORS
void MarkNulls(double* values, const unsigned char* valid, int count) {
  for (int i = 0; i < count; ++i) {
    values[i] = std::bit_cast<double>(std::bit_cast<std::uint64_t>(values[i]) | (std::uint64_t{valid[i]} - 1));
  }
}

TALLYSCOPE_WIDE_VECTORS
void MarkInfinities(double* values, int count) {
  for (int i = 0; i < count; ++i) values[i] = std::fabs(values[i]) <= kLargest ? values[i] : kNone;
}

// The bits of stations as bytes. Stations outside of the table are not selected.
void ExpandBits(const bvector& bits, int first, int count, unsigned char* bytes) {
  for (int i = 0; i < count; ++i) {
    const int station = first + i;
    bytes[i] = station >= 0 && station < bits.GetSize() && bits.Get(station) ? 1 : 0;
  }
}

bool HasAnyBit(const bvector& bits, int begin, int end) {
  const auto& bytes = bits.GetBytes();
  for (int i = begin / 8; i <= (end - 1) / 8; ++i) {
    if (bytes[static_cast<std::size_t>(i)] != 0) return true;
  }
  return false;
}

bool HasAllBits(const bvector& bits, int begin, int end) {
  for (int i = begin; i < end;) {
    if (i % 8 == 0 && i + 8 <= end) {
      if (bits.GetBytes()[static_cast<std::size_t>(i / 8)] != 0xff) return false;
      i += 8;
    } else if (!bits.Get(i++)) {
      return false;
    }
  }
  return true;
}

double GetMiddle(double a, double b, const AxisMap& axis) {
  return axis.IsLogarithmic() ? axis.ToWorld((axis.ToData(a) + axis.ToData(b)) / 2) : a / 2 + b / 2;
}

}  // namespace

void TraceReducer::Connect(CStats_Data* data, int dim) {
  const int size = data->GetSize();
  if (data == data_ && dim == dim_ && size == size_) return;
  data_ = data;
  dim_ = dim;
  size_ = size;
  ranges_.assign(static_cast<std::size_t>(size / kChunk), {});
  whole_.resize(kChunk);
  valid_.resize(kChunk);
}

void TraceReducer::Read(int first, int count, double* values) {
  const int begin = std::clamp(first, 0, size_);
  const int end = std::clamp(first + count, begin, size_);
  if (end == begin) {
    std::fill_n(values, count, kNone);
    return;
  }
  std::fill(values, values + (begin - first), kNone);
  std::fill(values + (end - first), values + count, kNone);
  double* inside = values + (begin - first);
  if (count > static_cast<int>(valid_.size())) valid_.resize(static_cast<std::size_t>(count));
  const int good = data_->ReadValues(dim_, begin, end - begin, inside, valid_.data());
  if (good < end - begin) MarkNulls(inside, valid_.data(), end - begin);
  MarkInfinities(inside, end - begin);
}

bool TraceReducer::Fill(CProgressSink* progress) {
  StationProgress reports(progress, size_);
  for (int chunk = 0; chunk < static_cast<int>(ranges_.size()); ++chunk) {
    GetRange(chunk);
    if (!reports.ReportRun(chunk * kChunk, kChunk)) return false;
  }
  return true;
}

double TraceReducer::ReadOne(int station) {
  double value = 0;
  Read(station, 1, &value);
  return value;
}

const TraceReducer::Range& TraceReducer::GetRange(int chunk) {
  auto& range = ranges_[static_cast<std::size_t>(chunk)];
  if (!std::isnan(range.low)) return range;
  TraceStretch stretch;
  const int good = data_->ReadValues(dim_, chunk * kChunk, kChunk, whole_.data(), valid_.data());
  if (good < kChunk) MarkNulls(whole_.data(), valid_.data(), kChunk);
  int missing = WidenBy(stretch, whole_.data(), kChunk);
  if (HasInfinity(stretch)) {
    stretch = {};
    MarkInfinities(whole_.data(), kChunk);
    missing = WidenBy(stretch, whole_.data(), kChunk);
  }
  range = {stretch.lowest, stretch.highest, missing == 0};
  return range;
}

bool TraceReducer::IsKnownEmpty(int chunk) const {
  if (chunk >= static_cast<int>(ranges_.size())) return false;
  const auto& range = ranges_[static_cast<std::size_t>(chunk)];
  return range.low > range.high;
}

bool TraceReducer::FindFirst(int begin, int end, double& value, int& station) {
  double values[kChunk];
  for (int look = 4; begin < end; look = kChunk) {
    const int count = std::min({look, end - begin, kChunk - begin % kChunk});
    if (!IsKnownEmpty(begin / kChunk)) {
      Read(begin, count, values);
      for (int i = 0; i < count; ++i) {
        if (std::isnan(values[i])) continue;
        value = values[i];
        station = begin + i;
        return true;
      }
    }
    begin += count;
  }
  return false;
}

bool TraceReducer::FindLast(int begin, int end, double& value, int& station) {
  double values[kChunk];
  for (int look = 4; begin < end; look = kChunk) {
    const int count = std::min({look, end - begin, (end - 1) % kChunk + 1});
    if (!IsKnownEmpty((end - 1) / kChunk)) {
      Read(end - count, count, values);
      for (int i = count - 1; i >= 0; --i) {
        if (std::isnan(values[i])) continue;
        value = values[i];
        station = end - count + i;
        return true;
      }
    }
    end -= count;
  }
  return false;
}

TraceStretch TraceReducer::Reduce(int begin, int end) {
  TraceStretch stretch;
  double values[kChunk];
  for (int at = begin; at < end;) {
    const int count = std::min(end - at, kChunk - at % kChunk);
    if (count == kChunk) {
      const auto& range = GetRange(at / kChunk);
      stretch.Widen(range.low, range.high);
    } else {
      Read(at, count, values);
      WidenBy(stretch, values, count);
    }
    at += count;
  }
  if (stretch.lowest > stretch.highest) return stretch;
  FindFirst(begin, end, stretch.firstValue, stretch.first);
  FindLast(stretch.first, end, stretch.lastValue, stretch.last);
  return stretch;
}

TraceStretch TraceReducer::ReduceSelected(int begin, int end, const bvector& selection, const AxisMap& axis) {
  TraceStretch stretch;
  int open = -1;  // start of a whole chunk that holds the run's last value
  for (int at = begin, next = begin; at < end; at = next) {
    next = std::min(end, at - at % kChunk + kChunk);
    if (!HasAnyBit(selection, at, next)) continue;
    const bool whole = next - at == kChunk;
    if (!whole || !HasAllBits(selection, std::max(at - 1, 0), std::min(next + 1, size_))) {
      if (AddSelected(stretch, at, next, at > begin, next < end, selection, axis)) open = -1;
      continue;
    }
    const auto& range = GetRange(at / kChunk);
    if (range.low > range.high) continue;
    stretch.Widen(range.low, range.high);
    if (stretch.IsEmpty()) FindFirst(at, next, stretch.firstValue, stretch.first);
    open = at;
  }
  if (open >= 0) FindLast(open, open + kChunk, stretch.lastValue, stretch.last);
  return stretch;
}

// Adds the selected stations of a part of a chunk, and the middles between them and their neighbours: those of the
// first and the last station with the stations outside only if `joinsBefore` and `joinsBehind`. False if there is no
// value.
bool TraceReducer::AddSelected(TraceStretch& stretch, int begin, int end, bool joinsBefore, bool joinsBehind,
                               const bvector& selection, const AxisMap& axis) {
  // One more on each side: entry i is station begin - 1 + i.
  const int count = end - begin;
  double values[kChunk + 2];
  unsigned char isIn[kChunk + 2];
  double middles[kChunk + 1];  // entry i lies before station begin + i
  Read(begin - 1, count + 2, values);
  ExpandBits(selection, begin - 1, count + 2, isIn);
  for (int i = 0; i <= count; ++i) {
    middles[i] = isIn[i] != isIn[i + 1] ? GetMiddle(values[i], values[i + 1], axis) : kNone;
  }
  WidenBy(stretch, middles + (joinsBefore ? 0 : 1), count - 1 + (joinsBefore ? 1 : 0) + (joinsBehind ? 1 : 0));
  for (int i = 1; i <= count; ++i) values[i] = isIn[i] != 0 ? values[i] : kNone;
  WidenBy(stretch, values + 1, count);

  int last = count;
  while (last > 0 && std::isnan(values[last])) --last;
  if (last == 0) return false;
  stretch.last = begin - 1 + last;
  stretch.lastValue = values[last];
  if (!stretch.IsEmpty()) return true;
  int first = 1;
  while (std::isnan(values[first])) ++first;
  stretch.first = begin - 1 + first;
  stretch.firstValue = values[first];
  return true;
}

}  // namespace tallyscope
