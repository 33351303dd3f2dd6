// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <vector>

#include "outside/plot/AxisMap.h"

namespace tallyscope {

class CProgressSink;
class CStats_Data;
class bvector;

// What a run of stations shows where all of them fall into one column of pixels.
struct TraceStretch {
  int first = -1;  // stations with a value; -1 if there are none
  int last = -1;
  double firstValue = 0;
  double lastValue = 0;
  double lowest = std::numeric_limits<double>::infinity();  // of the values
  double highest = -std::numeric_limits<double>::infinity();

  bool IsEmpty() const { return first < 0; }
  // Both bounds at once; NaN changes neither.
  void Widen(double low, double high) {
    if (low < lowest) lowest = low;
    if (high > highest) highest = high;
  }
};

// Reduces runs of stations of one field to what they show. The lowest and highest value of each chunk of stations is
// kept once it has been read, so that a further look at a long trace reads the ends of its columns only. A changed
// table wants a new reducer. NaN and infinities have no place on a plot: they count as nulls here.
class TraceReducer {
 public:
  static constexpr int kChunk = 256;

  // Takes a column of a table; what is kept stays if it is the same as before.
  void Connect(CStats_Data* data, int dim);
  bool IsConnected(const CStats_Data* data, int dim) const { return data == data_ && dim == dim_; }
  // Reads all chunks that have not been read. False after a cancel; what is missing is read when it is asked for.
  bool Fill(CProgressSink* progress);
  int GetSize() const { return size_; }

  // Values of `count` stations from `first`, NaN for nulls and for what lies outside the table.
  void Read(int first, int count, double* values);
  double ReadOne(int station);
  // Whether every station of a chunk is known to have a value.
  bool IsKnownWhole(int chunk) const { return ranges_[static_cast<std::size_t>(chunk)].isWhole; }

  // Of the stations from `begin` to before `end`, which the table has.
  TraceStretch Reduce(int begin, int end);
  // Of the selected ones alone. Each of them owns the trace up to the middle between it and its neighbours, as that
  // lies on an axis with the map `axis`; those middles widen the stretch where both ends lie in the run.
  TraceStretch ReduceSelected(int begin, int end, const bvector& selection, const AxisMap& axis);

 private:
  struct Range {
    double low = std::numeric_limits<double>::quiet_NaN();  // NaN: not read yet; above `high`: no value
    double high = 0;
    bool isWhole = false;
  };

  const Range& GetRange(int chunk);
  bool IsKnownEmpty(int chunk) const;
  bool AddSelected(TraceStretch& stretch, int begin, int end, bool joinsBefore, bool joinsBehind,
                   const bvector& selection, const AxisMap& axis);
  bool FindFirst(int begin, int end, double& value, int& station);
  bool FindLast(int begin, int end, double& value, int& station);

  CStats_Data* data_ = nullptr;
  int dim_ = 0;
  int size_ = 0;
  std::vector<Range> ranges_;  // of whole chunks
  std::vector<double> whole_;  // what has just been read
  std::vector<unsigned char> valid_;
};

}  // namespace tallyscope
