// SPDX-License-Identifier: MIT
#include "statistics/Stats_Histogram.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/core/Archive.h"
#include "statistics/BinCounter.h"
#include "statistics/SortedBinner.h"
#include "statistics/StationBlocks.h"
#include "statistics/Stats_Univariate.h"
#include "statistics/Stats_vdData.h"

namespace tallyscope {

namespace {

constexpr int kSortedMode = 0;
constexpr int kBinnedMode = 1;

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

bool CStats_Histogram::CalculateItem(int item, int flags, CProgressSink* progress) {
  if (!IsItem(item)) return false;
  if ((flags & 1) == 0 || (GetFlags(item) & 1) != 0) return (GetFlags(item) & 1) != 0;
  auto* data = GetItemData(item);
  const int dim = GetItemDim(item);
  if (owner != nullptr ? ComputeBins(data, dim, progress) : ComputeAlone(data, dim, progress)) SetFlags(item, 1);
  return (GetFlags(item) & 1) != 0;
}

bool CStats_Histogram::ComputeAlone(CStats_Data* data, int dim, CProgressSink* progress) {
  CStats_Univariate figures;
  figures.Add(data, dim);
  if (!figures.Calculate(1, progress)) return false;  // cancelled: no bins from partial figures
  owner = &figures;
  const bool done = ComputeBins(data, dim, progress);
  owner = nullptr;
  return done;
}

bool CStats_Histogram::ComputeBins(CStats_Data* data, int dim, CProgressSink* progress) {
  if (owner == nullptr) return ComputeAlone(data, dim, progress);
  if (binMode_ != kSortedMode && binMode_ != kBinnedMode) return false;
  if (progress != nullptr) {
    progress->SetTask("Histogram computation", 0);
    if (!progress->OnProgress(0)) return false;
  }
  return binMode_ == kBinnedMode ? ComputeBinned(data, dim, progress) : ComputeSorted(data, dim, progress);
}

bool CStats_Histogram::ComputeBinned(CStats_Data* data, int dim, CProgressSink* progress) {
  validCount_ = owner->valid;
  bins.clear();
  const int count = std::min(validCount_, maxBins_);
  if (count < 1) return false;
  BinCounter counter(owner->minimum, owner->maximum, count);
  StationProgress reports(progress, data->GetSize());
  const bool done =
      VisitValidValues(*data, dim, reports, [&](const double* values, int good, int) { counter.Add(values, good); });
  bins = counter.GetBins(validCount_);
  return done;
}

void CStats_Histogram::TakeBins(const BinCounter& counter) {
  validCount_ = owner->valid;
  bins = counter.GetBins(validCount_);
  if (!bins.empty()) SetFlags(0, 1);
}

bool CStats_Histogram::ComputeSorted(CStats_Data* data, int dim, CProgressSink* progress) {
  data->Sort(dim, 0, progress);
  if (!data->IsSorted(dim, 0)) return false;
  validCount_ = owner->valid;
  const int count = std::min(validCount_, maxBins_);
  bins.clear();
  if (count < 1) return false;
  bins.resize(static_cast<std::size_t>(count));

  SortedBinner binner(bins, validCount_);
  StationProgress reports(progress, data->GetSize());
  const bool done = VisitSortedValues(*data, dim, reports, [&](double value) { binner.Add(value); });
  if (done) binner.Finish();
  return done;
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
  CStats_vdData data(values);
  const int item = GetItemCount();
  Add(&data, 0);
  SetBinMode(binMode);
  const bool done = CalculateItem(0, 1, nullptr);
  SetItemData(item, nullptr);  // the table ends with this call
  return done;
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
