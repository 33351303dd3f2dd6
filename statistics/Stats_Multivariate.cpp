// SPDX-License-Identifier: MIT
#include "statistics/Stats_Multivariate.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/core/Archive.h"
#include "statistics/RunningRange.h"
#include "statistics/StationBlocks.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr int kBasic = 1;
constexpr int kBlock = 512;

// Reads blocks of stations of several columns and leaves the values where all columns have one, without gaps.
class JointReader {
 public:
  explicit JointReader(CStats_Calculator& items)
      : items_(items), values_(static_cast<std::size_t>(items.GetItemCount())) {}

  void Read(int first, int count) {
    joint_.fill(1);
    bool whole = true;
    for (std::size_t item = 0; item < values_.size(); ++item) {
      const int i = static_cast<int>(item);
      std::array<unsigned char, kBlock> valid{};
      whole &= items_.GetItemData(i)->ReadValues(items_.GetItemDim(i), first, count, values_[item].data(),
                                                 valid.data()) == count;
      for (std::size_t k = 0; k < joint_.size(); ++k) joint_[k] &= valid[k];
    }
    kept_ = static_cast<std::size_t>(count);
    if (!whole) SqueezeNulls(kept_);
  }

  std::span<const double> Values(std::size_t item) const { return {values_[item].data(), kept_}; }
  int Kept() const { return static_cast<int>(kept_); }

 private:
  void SqueezeNulls(std::size_t count) {
    for (auto& values : values_) {
      kept_ = 0;
      for (std::size_t i = 0; i < count; ++i) {
        values[kept_] = values[i];
        kept_ += joint_[i];
      }
    }
  }

  CStats_Calculator& items_;
  std::vector<std::array<double, kBlock>> values_;
  std::array<unsigned char, kBlock> joint_{};
  std::size_t kept_ = 0;
};

}  // namespace

bool CStats_Multivariate::Calculate(int flags, CProgressSink* progress) {
  if (GetItemCount() == 0) return false;
  int item = 0;
  while (IsItem(item)) ++item;
  const bool complete = item == GetItemCount();
  if (complete && (flags & ~GetFlags(0) & kBasic) && CalcBasic(progress)) SetFlags(0, kBasic);
  return (GetFlags(0) & flags) == flags;
}

void CStats_Multivariate::Serialize(CArchive& archive) {
  std::int32_t version = 0;
  if (archive.IsStoring()) {
    archive << version;
  } else {
    archive >> version;
    if (version != 0) archive.Fail();
  }
  CStats_Calculator::Serialize(archive);
}

bool CStats_Multivariate::CalcBasic(CProgressSink* progress) {
  if (GetItemCount() == 0) return false;
  total = GetItemData(0)->GetSize();
  for (int item = 1; item < GetItemCount(); ++item) total = std::min(total, GetItemData(item)->GetSize());
  StationProgress reports(progress, total);
  if (!reports.Start("Basic multivariate computation")) return false;
  valid = 0;
  invalid = 0;
  std::vector<CRunningRange> ranges(static_cast<std::size_t>(GetItemCount()));
  JointReader reader(*this);
  int count = 0;
  for (int first = 0; first < total; first += count) {
    count = std::min(kBlock, total - first);
    reader.Read(first, count);
    valid += reader.Kept();
    for (std::size_t item = 0; item < ranges.size(); ++item) ranges[item].Add(reader.Values(item));
    if (!reports.ReportRun(first, count)) return false;
  }
  invalid = total - valid;
  minima.clear();
  maxima.clear();
  means.clear();
  for (const CRunningRange& range : ranges) {
    minima.push_back(range.minimum);
    maxima.push_back(range.maximum);
    means.push_back(range.sum / std::max(valid, 1));
  }
  return true;
}

}  // namespace tallyscope
