// SPDX-License-Identifier: MIT
#pragma once

#include "statistics/Stats_Calculator.h"
#include "statistics/Stats_Histogram.h"

namespace tallyscope {

// The figures of one field. Nulls are counted and skipped; NaN and infinities pass through as they come.
struct UnivariateFigures {
  int total = 0;       // stations
  int valid = 0;       // with a value
  int invalid = 0;     // nulls
  double minimum = 0;  // 0 without valid values; starts from 1e10, so never above that
  double maximum = 0;  // starts from -1e10
  double mean = 0;
  double variance = 0;  // sample variance, divisor valid - 1
  double standardDeviation = 0;
  double ratio = 0;     // mean over standard deviation
  double skewness = 0;  // third population moment over the cube of the sample standard deviation

  // The quantiles on show: the sorted histogram's once it has been asked for, before that the binned one's.
  double median = 0;
  double mode = 0;
  double lowerQuartile = 0;
  double upperQuartile = 0;
  double interquartileRange = 0;

  double binnedMedian = 0;
  double binnedMode = 0;
  double binnedLowerQuartile = 0;
  double binnedUpperQuartile = 0;
  double binnedInterquartileRange = 0;
};

// Summary statistics of one field. Bits of Calculate:
//   1   basic figures: counts, range, mean, variance, ratio
//   2   skewness (and 1)
//   4   quantiles from the sorted histogram (and 1)
//   8   quantiles from the binned histogram (and 1)
//   16  quantiles from the sorted histogram if it can be made, from the binned one otherwise; sets 4 or 8, and 16, 32
//   32  quantiles from the binned histogram; sets 8, 16, 32
// 16 and 32 do nothing once 4 or 8 stands. Without bit 1, as after a cancel, nothing else is computed: a later call
// does it all.
class CStats_Univariate : public CStats_Calculator, public UnivariateFigures {
 public:
  CStats_Univariate() = default;
  CStats_Univariate(const CStats_Univariate& other);
  CStats_Univariate& operator=(const CStats_Univariate& other);

  CStats_Histogram sortedHistogram;  // up to 256 bins of equal count
  CStats_Histogram binnedHistogram;  // up to 4096 bins of equal width

  bool CalculateItem(int item, int flags, CProgressSink* progress) override;
  void Serialize(CArchive& archive) override;

  virtual bool CalcBasic(CStats_Data* data, int dim, CProgressSink* progress);
  virtual bool CalcSkewness(CStats_Data* data, int dim, CProgressSink* progress);
  virtual bool CalcSorted(CStats_Data* data, int dim);
  virtual bool CalcBinned(CStats_Data* data, int dim);

 private:
  void AdoptHistograms(const CStats_Univariate& other);
  void CalculateFlags(int item, int flags, CProgressSink* progress);     // bits 1 to 8
  void CalculateRequests(int item, int flags, CProgressSink* progress);  // bits 16 and 32
  bool CalcSkewnessAndBins(CStats_Data* data, int dim);
  void SetSkewness(double cubes);
  CStats_Histogram MakeHistogram(CStats_Data* data, int dim, int binMode, int maxBins);
  static bool Replace(CStats_Histogram& histogram, CStats_Histogram anew, CProgressSink* progress);
  bool MakeSorted(CStats_Data* data, int dim, CProgressSink* progress);
  bool MakeBinned(CStats_Data* data, int dim, CProgressSink* progress);
  void ShowBinned();
};

}  // namespace tallyscope
