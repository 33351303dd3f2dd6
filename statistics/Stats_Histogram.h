// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "statistics/Stats_Calculator.h"

namespace tallyscope {

class BinCounter;
class CStats_Univariate;

// A bin of a histogram. Edges of equal count are values of the table, those of equal width divide its range; the first
// edge belongs to the bin.
struct CHistogramBin {
  CHistogramBin() = default;
  CHistogramBin(const CHistogramBin&) = default;
  CHistogramBin& operator=(const CHistogramBin&) = default;
  virtual ~CHistogramBin() = default;
  virtual void Serialize(CArchive& archive);  // version 1; version 0, without dataMin and dataMax, is read too

  double binMin = 0;  // edges
  double binMax = 0;
  double dataMin = 1e10;  // smallest and largest value that fell in the bin
  double dataMax = -1e10;
  double count = 0;       // stations; not whole where Regroup has cut a bin
  double cumulative = 0;  // fraction of the valid stations in this bin and those before it
};

// The histogram of one field, in bins of equal count (mode 0, "sorted") or of equal width (mode 1, "binned").
//   CStats_Histogram histogram;
//   histogram.SetBinMode(1);
//   histogram.SetMaxBins(64);
//   histogram.Add(&table, 3);
//   histogram.Calculate(1, nullptr);
// Sorted bins need the field's sort table and fail when the table is too large to sort. Nulls are skipped. Quantiles
// are interpolated within the cumulative curve; they are no order statistics.
class CStats_Histogram : public CStats_Calculator {
 public:
  std::vector<CHistogramBin> bins;
  // Where valid count, minimum and maximum come from; null: computed on the way. Not owned.
  CStats_Univariate* owner = nullptr;

  bool CalculateItem(int item, int flags, CProgressSink* progress) override;
  // Settings, flags and bins, not the owner. Counts below 0, or of more bins than the archive still holds, leave no
  // bins and a failed archive.
  void Serialize(CArchive& archive) override;

  // Settings of the next computation; the bins that stand are read in the mode that is set.
  virtual void SetBinMode(int mode) { binMode_ = mode; }
  virtual int GetBinMode() { return binMode_; }
  virtual void SetMaxBins(int count) { maxBins_ = count; }
  virtual int GetMaxBins() { return maxBins_; }
  // Of the bins that stand: how many, and how many stations they were counted from.
  virtual int GetBinCount() { return static_cast<int>(bins.size()); }
  virtual int GetValidCount() { return validCount_; }

  // Middle of the values of the densest bin; 0 without bins. Sorted: the bin of the smallest spread, however large;
  // binned: of the largest count. Of several the first.
  virtual double GetMode();
  virtual double GetPercentile(double fraction);   // value at a cumulative fraction; 0 without bins
  virtual int FindPercentileBin(double fraction);  // first bin whose cumulative reaches it; -1 without bins
  virtual int GetBinIndex(double value);           // bin of a value; -1 without bins
  virtual double GetCumulative(double value);      // cumulative fraction at a value; 0 without bins, and if it is NaN
  virtual int FindFirstBin(double fraction);       // first bin at or above; the bin count if none
  virtual int FindLastBin(double fraction);        // last bin strictly below; -1 if none

  // Histogram of a plain vector, for a fresh object. The item that it adds has no data set.
  virtual bool Compute(std::vector<double>* values, int binMode);
  virtual bool ConvertToSorted(int count);  // from equal width to equal count, without reading the data again
  virtual bool Regroup(int count);          // sorted bins into fewer; false for other modes, no bins, or count < 1
  // Bins in the mode and up to the limit that are set. False when the table can't be sorted or the sink cancels: the
  // bins then stay, or hold what was reached where there were none; and false, with no bins, when there is nothing to
  // put in any.
  virtual bool ComputeBins(CStats_Data* data, int dim, CProgressSink* progress);

  // GetBinIndex of each of `count` values, in one loop; bins of equal count are searched one by one.
  void GetBinIndices(const double* values, int count, int* indices);

  // Takes bins that the owner has counted on its way, and marks item 0 computed. Not marked without a bin.
  // REQUIRES: an owner, an item.
  void TakeBins(const BinCounter& counter);

 private:
  struct Range;  // of the values to be put in bins

  bool ComputeSorted(CStats_Data* data, int dim, const Range& range, CProgressSink* progress);
  bool ComputeBinned(CStats_Data* data, int dim, const Range& range, CProgressSink* progress);
  void TakeBins(std::vector<CHistogramBin> made, int validCount, bool whole);

  int validCount_ = 0;
  int binMode_ = 0;
  int maxBins_ = 256;
};

}  // namespace tallyscope
