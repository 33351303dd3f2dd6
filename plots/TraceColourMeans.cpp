// SPDX-License-Identifier: MIT
#include "plots/TraceColourMeans.h"

#include <algorithm>
#include <limits>

#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr int kChunk = TraceReducer::kChunk;
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

}  // namespace

void TraceColourMeans::Connect(CStats_Data* data, int dim, int colourDim) {
  const auto chunks = static_cast<std::size_t>(data->GetSize() / kChunk);
  if (data == data_ && dim == dim_ && colourDim == colourDim_ && chunks == sums_.size()) return;
  trace_.Connect(data, dim);
  colours_.Connect(data, colourDim);
  data_ = data;
  dim_ = dim;
  colourDim_ = colourDim;
  sums_.assign(chunks, {});
}

TraceColourMeans::Sum TraceColourMeans::Add(int first, int count) {
  double values[kChunk];
  double colours[kChunk];
  trace_.Read(first, count, values);
  colours_.Read(first, count, colours);
  // In lanes of their own: one sum would wait for itself.
  constexpr int kLanes = 8;
  double totals[kLanes] = {};
  double counts[kLanes] = {};
  for (int i = count; i % kLanes != 0; ++i) values[i] = colours[i] = kNone;
  for (int first = 0; first < count; first += kLanes) {
    for (int lane = 0; lane < kLanes; ++lane) {
      const double colour = colours[first + lane];
      const bool both = values[first + lane] == values[first + lane] && colour == colour;
      totals[lane] += both ? colour : 0.0;
      counts[lane] += both ? 1.0 : 0.0;
    }
  }
  Sum sum{0, 0};
  for (int lane = 0; lane < kLanes; ++lane) {
    sum.total += totals[lane];
    sum.count += counts[lane];
  }
  return sum;
}

double TraceColourMeans::GetMean(int begin, int end) {
  Sum sum{0, 0};
  for (int at = begin; at < end;) {
    const int count = std::min(end - at, kChunk - at % kChunk);
    Sum part;
    if (count == kChunk) {
      auto& kept = sums_[static_cast<std::size_t>(at / kChunk)];
      if (kept.count < 0) kept = Add(at, count);
      part = kept;
    } else {
      part = Add(at, count);
    }
    sum.total += part.total;
    sum.count += part.count;
    at += count;
  }
  return sum.total / sum.count;  // NaN without any
}

}  // namespace tallyscope
