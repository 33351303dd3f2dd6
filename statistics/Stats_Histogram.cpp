// SPDX-License-Identifier: MIT
#include "statistics/Stats_Histogram.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/core/Archive.h"
#include "statistics/BinCounter.h"
#include "statistics/BlockReader.h"
#include "statistics/SortedBinner.h"
#include "statistics/StationBlocks.h"
#include "statistics/Stats_Univariate.h"
#include "statistics/Stats_vdData.h"
#include "statistics/WorkProgress.h"

namespace tallyscope {

namespace {

constexpr int kSortedMode = 0;
constexpr int kBinnedMode = 1;
constexpr const char* kTask = "Histogram computation";

constexpr std::size_t kStoredBin = sizeof(std::int32_t) + 4 * sizeof(double);  // bytes of the smallest stored bin

double Fraction(double fraction) {
  return fraction > 0 ? (fraction < 1 ? fraction : 1) : 0;
}

// First of the bins whose edge or fraction reaches `value`; the last one if none does.
template <class Get>
int FindReaching(const std::vector<CHistogramBin>& bins, double value, Get get) {
  int low = 0;
  int high = static_cast<int>(bins.size()) - 1;
  while (low < high) {
    const int middle = (low + high) / 2;
    if (value > get(bins[static_cast<std::size_t>(middle)])) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

}  // namespace

void CHistogramBin::Serialize(CArchive& archive) {
  std::int32_t version = 1;
  if (archive.IsStoring()) {
    archive << version << binMin << binMax << dataMin << dataMax << count << cumulative;
    return;
  }
  archive >> version;
  if (version != 0 && version != 1) archive.Fail();
  archive >> binMin >> binMax;
  if (version != 0) archive >> dataMin >> dataMax;
  archive >> count >> cumulative;
}

struct CStats_Histogram::Range {
  int valid;
  double minimum;
  double maximum;
};

bool CStats_Histogram::CalculateItem(int item, int flags, CProgressSink* progress) {
  if (!IsItem(item)) return false;
  const bool wanted = (flags & 1) != 0 && (GetFlags(item) & 1) == 0;
  if (wanted && ComputeBins(GetItemData(item), GetItemDim(item), progress)) SetFlags(item, 1);
  return (GetFlags(item) & 1) != 0;
}

bool CStats_Histogram::ComputeBins(CStats_Data* data, int dim, CProgressSink* progress) {
  CStats_Univariate own;
  if (owner == nullptr) {
    own.Add(data, dim);
    if (!own.Calculate(1, progress)) return false;  // cancelled: no bins from partial figures
  }
  const UnivariateFigures& figures = owner != nullptr ? *owner : own;
  const Range range{figures.valid, figures.minimum, figures.maximum};
  if (binMode_ != kSortedMode && binMode_ != kBinnedMode) return false;
  if (progress != nullptr) {
    progress->SetTask(kTask, 0);
    if (!progress->OnProgress(0)) return false;
  }
  return binMode_ == kBinnedMode ? ComputeBinned(data, dim, range, progress)
                                 : ComputeSorted(data, dim, range, progress);
}

bool CStats_Histogram::ComputeBinned(CStats_Data* data, int dim, const Range& range, CProgressSink* progress) {
  BinCounter counter(range.minimum, range.maximum, std::max(std::min(range.valid, maxBins_), 0));
  StationProgress reports(progress, data->GetSize());
  CBlockReader reader({{data, dim}}, counter.IsEmpty() ? 0 : data->GetSize());
  const bool whole = reader.VisitJoint(reports, [&] { counter.Add(reader.Values(0)); });
  TakeBins(counter.GetBins(range.valid), range.valid, whole);
  return whole && !bins.empty();
}

bool CStats_Histogram::ComputeSorted(CStats_Data* data, int dim, const Range& range, CProgressSink* progress) {
  CInnerTask sorting(progress);
  data->Sort(dim, 0, sorting.GetSink());
  sorting.Leave(kTask);
  if (!data->IsSorted(dim, 0)) return false;
  std::vector<CHistogramBin> made(static_cast<std::size_t>(std::max(std::min(range.valid, maxBins_), 0)));
  SortedBinner binner(made, range.valid);
  StationProgress reports(progress, data->GetSize());
  const bool whole = made.empty() || VisitSortedValues(*data, dim, reports, [&](double value) { binner.Add(value); });
  if (whole && !made.empty()) binner.Finish();
  TakeBins(std::move(made), range.valid, whole);
  return whole && !bins.empty();
}

// What a cancel has left in part never replaces bins that stand.
void CStats_Histogram::TakeBins(std::vector<CHistogramBin> made, int validCount, bool whole) {
  if (!whole && !bins.empty()) return;
  bins = std::move(made);
  validCount_ = validCount;
}

void CStats_Histogram::TakeBins(const BinCounter& counter) {
  TakeBins(counter.GetBins(owner->valid), owner->valid, true);
  if (!bins.empty()) SetFlags(0, 1);
}

double CStats_Histogram::GetMode() {
  if (bins.empty() || (binMode_ != kSortedMode && binMode_ != kBinnedMode)) return 0;
  const CHistogramBin* best = &bins.front();
  double spread = std::numeric_limits<double>::infinity();
  double most = -1;
  for (const auto& bin : bins) {
    const double range = bin.dataMax - bin.dataMin;
    const bool better = binMode_ == kSortedMode ? range < spread : bin.count > most;
    if (!better) continue;
    best = &bin;
    spread = range;
    most = bin.count;
  }
  return (best->dataMax + best->dataMin) / 2;
}

int CStats_Histogram::FindPercentileBin(double fraction) {
  if (bins.empty()) return -1;
  fraction = Fraction(fraction);
  int bin = FindReaching(bins, fraction, [](const CHistogramBin& b) { return b.cumulative; });
  while (bin > 0 && bins[static_cast<std::size_t>(bin) - 1].cumulative == fraction) --bin;
  return bin;
}

double CStats_Histogram::GetPercentile(double fraction) {
  if (bins.empty()) return 0;
  const auto at = static_cast<std::size_t>(std::clamp(FindPercentileBin(fraction), 0, GetBinCount() - 1));
  const auto& bin = bins[at];
  const double range = bin.dataMax - bin.dataMin;
  if (at == 0) return range * fraction / bin.cumulative + bin.dataMin;
  const double previous = bins[at - 1].cumulative;
  return range * (Fraction(fraction) - previous) / (bin.cumulative - previous) + bin.dataMin;
}

int CStats_Histogram::GetBinIndex(double value) {
  if (bins.empty()) return -1;
  if (binMode_ == kSortedMode) {
    return FindReaching(bins, value, [](const CHistogramBin& bin) { return bin.binMax; });
  }
  int index = -1;
  if (binMode_ == kBinnedMode) GetBinIndices(&value, 1, &index);
  return index;
}

void CStats_Histogram::GetBinIndices(const double* values, int count, int* indices) {
  if (bins.empty() || binMode_ != kBinnedMode) {
    for (int i = 0; i < count; ++i) indices[i] = GetBinIndex(values[i]);
    return;
  }
  const double size = static_cast<double>(bins.size());
  const double first = bins.front().binMin;
  const double width = (bins.back().binMax - first) / size;
  for (int i = 0; i < count; ++i) {
    double index = (values[i] - first) / width;
    index = index > 0 ? index : 0;  // NaN too
    indices[i] = static_cast<int>(index < size - 1 ? index : size - 1);
  }
}

double CStats_Histogram::GetCumulative(double value) {
  if (bins.empty()) return 0;
  const auto at = static_cast<std::size_t>(std::clamp(GetBinIndex(value), 0, GetBinCount() - 1));
  const auto& bin = bins[at];
  const double previous = at > 0 ? bins[at - 1].cumulative : 0;
  const double width = bin.binMax - bin.binMin;
  double within = value - bin.binMin;
  if (!(std::fabs(width) <= 1e-10 * std::fabs(width))) within /= width;
  return Fraction(previous + (bin.cumulative - previous) * within);
}

int CStats_Histogram::FindFirstBin(double fraction) {
  fraction = Fraction(fraction);
  int bin = 0;
  while (bin < GetBinCount() && !(bins[static_cast<std::size_t>(bin)].cumulative >= fraction)) ++bin;
  return bin;
}

int CStats_Histogram::FindLastBin(double fraction) {
  fraction = Fraction(fraction);
  int bin = GetBinCount() - 1;
  while (bin >= 0 && !(bins[static_cast<std::size_t>(bin)].cumulative < fraction)) --bin;
  return bin;
}

bool CStats_Histogram::Compute(std::vector<double>* values, int binMode) {
  Add(nullptr, 0);
  SetBinMode(binMode);
  if (GetItemCount() > 1) return CalculateItem(0, 1, nullptr);
  CStats_vdData data(values);
  if (ComputeBins(&data, 0, nullptr)) SetFlags(0, 1);
  return (GetFlags(0) & 1) != 0;
}

bool CStats_Histogram::ConvertToSorted(int count) {
  if (validCount_ <= 0 || binMode_ != kBinnedMode) return false;
  binMode_ = kSortedMode;
  return Regroup(count);
}

void CStats_Histogram::Serialize(CArchive& archive) {
  std::int32_t version = 0;
  std::int32_t count = GetBinCount();
  if (archive.IsStoring()) {
    archive << version;
    CStats_Calculator::Serialize(archive);
    archive << binMode_ << maxBins_ << validCount_ << count;
    for (auto& bin : bins) bin.Serialize(archive);
    return;
  }
  archive >> version;
  if (version != 0) archive.Fail();
  CStats_Calculator::Serialize(archive);
  archive >> binMode_ >> maxBins_ >> validCount_ >> count;
  const bool fits = count >= 0 && static_cast<std::size_t>(count) <= archive.GetRemaining() / kStoredBin;
  if (!fits || validCount_ < 0) archive.Fail();
  bins.assign(archive.IsFailed() ? 0 : static_cast<std::size_t>(count), CHistogramBin());
  for (auto& bin : bins) bin.Serialize(archive);
  if (!archive.IsFailed()) return;
  bins.clear();
  validCount_ = 0;
}

}  // namespace tallyscope
