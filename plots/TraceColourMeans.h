// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "plots/TraceReducer.h"

namespace tallyscope {

class CProgressSink;
class CStats_Data;

// The mean of a second field over runs of those stations that a trace shows: what a column of many stations is coloured
// by. Sums of whole chunks are kept, as a TraceReducer keeps its bounds.
class TraceColourMeans {
 public:
  // The trace that is coloured, which must outlive this.
  explicit TraceColourMeans(TraceReducer& trace) : trace_(trace) {}

  // Connect the trace to `data` and `dim` first.
  void Connect(CStats_Data* data, int dim, int colourDim);
  bool IsConnected(const CStats_Data* data, int dim, int colourDim) const {
    return data == data_ && dim == dim_ && colourDim == colourDim_;
  }
  // As TraceReducer::Fill.
  bool Fill(CProgressSink* progress);

  // Over the stations from `begin` to before `end`; NaN where none has both values.
  double GetMean(int begin, int end);
  // Colour values of `count` stations from `first`, NaN for nulls.
  void Read(int first, int count, double* values) { colours_.Read(first, count, values); }

 private:
  struct Sum {
    double total = 0;
    double count = -1;  // not read yet
  };

  const Sum& GetSum(int chunk);
  Sum Add(int first, int count);
  static void AddUp(const double* values, const double* colours, int count, Sum& sum);

  TraceReducer& trace_;
  TraceReducer colours_;
  CStats_Data* data_ = nullptr;
  int dim_ = 0;
  int colourDim_ = 0;
  std::vector<Sum> sums_;
};

}  // namespace tallyscope
