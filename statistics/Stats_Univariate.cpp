// SPDX-License-Identifier: MIT
#include "statistics/Stats_Univariate.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <typeinfo>
#include <utility>

#include "platform/core/Archive.h"
#include "statistics/BinCounter.h"
#include "statistics/BlockReader.h"
#include "statistics/CubeSum.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr int kSortedBins = 256;
constexpr int kBinnedBins = 4096;

enum Flag { kBasic = 1, kSkewness = 2, kSorted = 4, kBinned = 8, kSortedOrBinned = 16, kBinnedAnyway = 32 };

}  // namespace

CStats_Univariate::CStats_Univariate(const CStats_Univariate& other)
    : CStats_Calculator(other),
      UnivariateFigures(other),
      sortedHistogram(other.sortedHistogram),
      binnedHistogram(other.binnedHistogram) {
  AdoptHistograms(other);
}

CStats_Univariate& CStats_Univariate::operator=(const CStats_Univariate& other) {
  if (this == &other) return *this;
  CStats_Calculator::operator=(other);
  UnivariateFigures::operator=(other);
  sortedHistogram = other.sortedHistogram;
  binnedHistogram = other.binnedHistogram;
  AdoptHistograms(other);
  return *this;
}

// The owner link of a copied histogram has to follow the copy.
void CStats_Univariate::AdoptHistograms(const CStats_Univariate& other) {
  for (auto* histogram : {&sortedHistogram, &binnedHistogram}) {
    if (histogram->owner == &other) histogram->owner = this;
  }
}

bool CStats_Univariate::CalculateItem(int item, int flags, CProgressSink* progress) {
  if ((flags & (kSkewness | kSorted | kBinned)) != 0) flags |= kBasic;
  if (IsItem(item)) {
    if ((GetFlags(item) & flags) != flags) CalculateFlags(item, flags, progress);
    const bool requests = (flags & (kSortedOrBinned | kBinnedAnyway)) != 0;
    if (requests && (GetFlags(item) & (kSorted | kBinned)) == 0) CalculateRequests(item, flags, progress);
  }
  return item >= 0 && item < GetItemCount() && (GetFlags(item) & flags) == flags;
}

void CStats_Univariate::CalculateFlags(int item, int flags, CProgressSink* progress) {
  auto* data = GetItemData(item);
  const int dim = GetItemDim(item);
  const auto missing = [&](int flag) { return (flags & flag) != 0 && (GetFlags(item) & flag) == 0; };
  if (missing(kBasic) && CalcBasic(data, dim, progress)) SetFlags(item, kBasic);
  if ((GetFlags(item) & kBasic) == 0) return;  // cancelled: nothing may pass as done on partial figures
  // A class of its own may compute its skewness in its own way, and a sink is told of each pass by itself.
  const bool inOne =
      missing(kSkewness) && missing(kBinned) && progress == nullptr && typeid(*this) == typeid(CStats_Univariate);
  if (missing(kSkewness) && (inOne ? CalcSkewnessAndBins(data, dim) : CalcSkewness(data, dim, progress))) {
    SetFlags(item, kSkewness);
  }
  if (missing(kSorted) && MakeSorted(data, dim, progress)) SetFlags(item, kSorted);
  if (!missing(kBinned)) return;
  const bool binned =
      inOne ? binnedHistogram.Calculate(1, nullptr) && CalcBinned(data, dim) : MakeBinned(data, dim, progress);
  if (binned) SetFlags(item, kBinned);
  if ((GetFlags(item) & kSorted) == 0) ShowBinned();
}

void CStats_Univariate::CalculateRequests(int item, int flags, CProgressSink* progress) {
  auto* data = GetItemData(item);
  const int dim = GetItemDim(item);
  constexpr int kBoth = kSortedOrBinned | kBinnedAnyway;
  if ((GetFlags(item) & kBasic) == 0 && CalcBasic(data, dim, progress)) SetFlags(item, kBasic);
  if ((GetFlags(item) & kBasic) == 0) return;
  bool sorted = false;
  if ((flags & kSortedOrBinned) != 0) {
    sorted = MakeSorted(data, dim, progress);
    if (sorted) SetFlags(item, kSorted | kBoth);
  }
  if (!sorted || (flags & kBinnedAnyway) != 0) {
    if (MakeBinned(data, dim, progress)) SetFlags(item, kBinned | kBoth);
  }
  if ((GetFlags(item) & kSorted) == 0) ShowBinned();
}

bool CStats_Univariate::CalcBasic(CStats_Data* data, int dim, CProgressSink* progress) {
  StationProgress reports(progress, data->GetSize());
  if (!reports.Start("Basic univariate computation")) return false;
  total = data->GetSize();
  valid = 0;
  invalid = 0;
  minimum = 1e10;
  maximum = -1e10;
  double sum = 0;
  double squares = 0;
  CBlockReader reader({{data, dim}}, total);
  const bool done = reader.VisitJoint(reports, [&] {
    double low = minimum;
    double high = maximum;
    double s = sum;
    double q = squares;
    for (const double x : reader.Values(0)) {
      low = x < low ? x : low;
      high = x > high ? x : high;
      s += x;
      q += x * x;
    }
    minimum = low;
    maximum = high;
    sum = s;
    squares = q;
    const int good = static_cast<int>(reader.Values(0).size());
    valid += good;
    invalid += reader.Count() - good;
  });
  if (!done) return false;
  if (valid == 0) minimum = maximum = 0;
  // One pass, without compensation: cancels where |mean| is far above the deviation. Kept plain, so that figures agree
  // with any program that sums in station order.
  variance = valid >= 2 ? (squares - sum * sum / valid) / (valid - 1) : 0;
  if (!(variance > 0)) variance = 0;
  standardDeviation = std::sqrt(variance);
  mean = sum / std::max(valid, 1);
  ratio = standardDeviation == 0 ? 0 : mean / standardDeviation;
  return true;
}

bool CStats_Univariate::CalcSkewness(CStats_Data* data, int dim, CProgressSink* progress) {
  StationProgress reports(progress, data->GetSize());
  if (!reports.Start("Skewness computation")) return false;
  CubeSum cubes(mean);
  CBlockReader reader({{data, dim}}, data->GetSize());
  const bool done = reader.VisitJoint(reports, [&] { cubes.Add(reader.Values(0)); });
  if (done) SetSkewness(cubes.GetSum());
  return done;
}

// Both passes that need the basic figures in one: the values are read once.
bool CStats_Univariate::CalcSkewnessAndBins(CStats_Data* data, int dim) {
  CubeSum cubes(mean);
  BinCounter counter(minimum, maximum, std::min(valid, kBinnedBins));
  CBlockReader reader({{data, dim}}, data->GetSize());
  while (reader.Next()) {
    reader.KeepJoint();
    cubes.Add(reader.Values(0));
    counter.Add(reader.Values(0));
  }
  SetSkewness(cubes.GetSum());
  binnedHistogram = MakeHistogram(data, dim, 1, kBinnedBins);
  binnedHistogram.TakeBins(counter);
  return true;
}

void CStats_Univariate::SetSkewness(double cubes) {
  const double moment = cubes / std::max(valid, 1);
  const bool spread = standardDeviation > std::numeric_limits<double>::epsilon();
  skewness = spread ? moment / std::pow(standardDeviation, 3.0) : moment;
}

// One to be computed.
CStats_Histogram CStats_Univariate::MakeHistogram(CStats_Data* data, int dim, int binMode, int maxBins) {
  CStats_Histogram histogram;
  histogram.SetBinMode(binMode);
  histogram.SetMaxBins(maxBins);
  histogram.Add(data, dim);
  histogram.owner = this;
  return histogram;
}

// A histogram that has been computed stands until another takes its place whole.
bool CStats_Univariate::Replace(CStats_Histogram& histogram, CStats_Histogram anew, CProgressSink* progress) {
  const bool done = anew.Calculate(1, progress);
  const bool stands = histogram.GetItemCount() > 0 && (histogram.GetFlags(0) & 1) != 0;
  if (done || !stands) histogram = std::move(anew);
  return done;
}

bool CStats_Univariate::MakeSorted(CStats_Data* data, int dim, CProgressSink* progress) {
  return Replace(sortedHistogram, MakeHistogram(data, dim, 0, kSortedBins), progress) && CalcSorted(data, dim);
}

bool CStats_Univariate::MakeBinned(CStats_Data* data, int dim, CProgressSink* progress) {
  return Replace(binnedHistogram, MakeHistogram(data, dim, 1, kBinnedBins), progress) && CalcBinned(data, dim);
}

bool CStats_Univariate::CalcSorted(CStats_Data*, int) {
  median = sortedHistogram.GetPercentile(0.5);
  mode = sortedHistogram.GetMode();
  lowerQuartile = sortedHistogram.GetPercentile(0.25);
  upperQuartile = sortedHistogram.GetPercentile(0.75);
  interquartileRange = upperQuartile - lowerQuartile;
  return true;
}

bool CStats_Univariate::CalcBinned(CStats_Data*, int) {
  binnedMedian = binnedHistogram.GetPercentile(0.5);
  binnedMode = binnedHistogram.GetMode();
  binnedLowerQuartile = binnedHistogram.GetPercentile(0.25);
  binnedUpperQuartile = binnedHistogram.GetPercentile(0.75);
  binnedInterquartileRange = binnedUpperQuartile - binnedLowerQuartile;
  return true;
}

void CStats_Univariate::ShowBinned() {
  median = binnedMedian;
  mode = binnedMode;
  lowerQuartile = binnedLowerQuartile;
  upperQuartile = binnedUpperQuartile;
  interquartileRange = binnedInterquartileRange;
}

void CStats_Univariate::Serialize(CArchive& archive) {
  std::int32_t version = 0;
  if (archive.IsStoring()) {
    archive << version;
  } else {
    archive >> version;
    if (version != 0) archive.Fail();
  }
  CStats_Calculator::Serialize(archive);
}

}  // namespace tallyscope
