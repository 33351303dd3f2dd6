// SPDX-License-Identifier: MIT
#include "statistics/Stats_Multivariate.h"

#include <algorithm>
#include <cstdint>

#include "platform/core/Archive.h"
#include "statistics/BlockReader.h"
#include "statistics/RunningRange.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr int kBasic = 1;
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
  std::vector<CColumnRef> columns;
  for (int item = 0; item < GetItemCount(); ++item) columns.push_back({GetItemData(item), GetItemDim(item)});
  CBlockReader reader(columns, total);
  const bool done = reader.VisitJoint(reports, [&] {
    valid += static_cast<int>(reader.Values(0).size());
    for (std::size_t item = 0; item < ranges.size(); ++item) ranges[item].Add(reader.Values(item));
  });
  if (!done) return false;
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
