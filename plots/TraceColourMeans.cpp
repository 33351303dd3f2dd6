// SPDX-License-Identifier: MIT
#include "plots/TraceColourMeans.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "platform/core/WideVectors.h"
#include "statistics/StationBlocks.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr int kChunk = TraceReducer::kChunk;
constexpr int kLanes = 8;
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

}  // namespace

void TraceColourMeans::Connect(CStats_Data* data, int dim, int colourDim) {
  const auto chunks = static_cast<std::size_t>(data->GetSize() / kChunk);
  if (data == data_ && dim == dim_ && colourDim == colourDim_ && chunks == sums_.size()) return;
  colours_.Connect(data, colourDim);
  data_ = data;
  dim_ = dim;
  colourDim_ = colourDim;
  sums_.assign(chunks, {});
}

// In lanes of their own: one sum would wait for itself.
TALLYSCOPE_WIDE_VECTORS
void TraceColourMeans::AddUp(const double* values, const double* colours, int count, Sum& sum) {
  using Four [[gnu::vector_size(4 * sizeof(double))]] = double;
  using FourAnywhere [[gnu::vector_size(4 * sizeof(double)), gnu::aligned(alignof(double)), gnu::may_alias]] = double;
  using FourCounts [[gnu::vector_size(4 * sizeof(double))]] = std::int64_t;
  Four totals[2]{};
  FourCounts counts{};
  for (int first = 0; first < count; first += kLanes) {
    for (int half = 0; half < 2; ++half) {
      const Four value = *reinterpret_cast<const FourAnywhere*>(values + first + 4 * half);
      const Four colour = *reinterpret_cast<const FourAnywhere*>(colours + first + 4 * half);
      const FourCounts both = (value == value) & (colour == colour);
      totals[half] += both ? colour : Four{};
      counts += both;  // -1 each
    }
  }
  for (int lane = 0; lane < kLanes; ++lane) sum.total += totals[lane / 4][lane % 4];
  for (int lane = 0; lane < 4; ++lane) sum.count -= static_cast<double>(counts[lane]);
}

TraceColourMeans::Sum TraceColourMeans::Add(int first, int count) {
  double values[kChunk];
  double colours[kChunk];
  colours_.Read(first, count, colours);
  const bool isWhole = count == kChunk && trace_.IsKnownWhole(first / kChunk);  // then the colours alone tell
  if (!isWhole) trace_.Read(first, count, values);
  for (int i = count; i % kLanes != 0; ++i) values[i] = colours[i] = kNone;
  Sum sum{0, 0};
  AddUp(isWhole ? colours : values, colours, count, sum);
  return sum;
}

const TraceColourMeans::Sum& TraceColourMeans::GetSum(int chunk) {
  auto& kept = sums_[static_cast<std::size_t>(chunk)];
  if (kept.count < 0) kept = Add(chunk * kChunk, kChunk);
  return kept;
}

bool TraceColourMeans::Fill(CProgressSink* progress) {
  const int chunks = static_cast<int>(sums_.size());
  StationProgress reports(progress, chunks * kChunk);
  for (int chunk = 0; chunk < chunks; ++chunk) {
    GetSum(chunk);
    if (!reports.ReportRun(chunk * kChunk, kChunk)) return false;
  }
  return true;
}

double TraceColourMeans::GetMean(int begin, int end) {
  Sum sum{0, 0};
  for (int at = begin; at < end;) {
    const int count = std::min(end - at, kChunk - at % kChunk);
    const Sum part = count == kChunk ? GetSum(at / kChunk) : Add(at, count);
    sum.total += part.total;
    sum.count += part.count;
    at += count;
  }
  return sum.total / sum.count;  // NaN without any
}

}  // namespace tallyscope
