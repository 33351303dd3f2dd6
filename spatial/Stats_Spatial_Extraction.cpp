// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "spatial/CancelMemory.h"
#include "spatial/ExtractCells.h"
#include "spatial/PairProgress.h"
#include "spatial/RegionSelector.h"
#include "spatial/StationIndex.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

void ListSetBits(const bvector& bits, int count, std::vector<int>& list) {
  const std::vector<std::uint8_t>& bytes = bits.GetBytes();
  for (int first = 0; first < count; first += 8) {
    if (bytes[static_cast<std::size_t>(first) / 8] == 0) continue;
    for (int station = first; station < std::min(first + 8, count); ++station) {
      if (bits.Get(station)) list.push_back(station);
    }
  }
}

}  // namespace

ExtractionSettings CStats_Spatial::GetExtractionSettings() const {
  return {extractFlags, cellBox, origin, cellCount, cellStep};
}

void CStats_Spatial::TakeOver(Extraction result) {
  lists = std::move(result.lists);
  changed = std::move(result.changed);
  bitmaps = std::move(result.bitmaps);
}

bool CStats_Spatial::CalcExtraction(CStats_Data* data, int, CProgressSink* progress) {
  if ((extractFlags & (kLists | kBitmaps)) == 0) extractFlags |= kBitmaps;
  if ((extractFlags & kRegularCells) == 0) return ExtractRegions(*data, progress);
  const StationIndex index = GetStationIndex(*data);
  if (!index) return false;
  auto result = ExtractCells(GetExtractionSettings(), *index.points, data->GetSize(), progress);
  if (!result) return false;
  TakeOver(std::move(*result));
  return true;
}

bool CStats_Spatial::ExtractRegions(CStats_Data& data, CProgressSink* progress) {
  const ExtractionSettings settings = GetExtractionSettings();
  const bool incremental = settings.Has(kIncremental);
  const int total = data.GetSize();
  Extraction result;
  result.lists.resize(1);
  result.changed.resize(1);
  result.bitmaps.resize(1);
  bvector& bits = result.bitmaps[0];
  if (incremental && !bitmaps.empty()) bits = bitmaps[0];
  bits.Resize(std::max(total, bits.GetSize()), false);

  CCancelMemory memory(progress);
  PairProgress reporter(memory.GetSink());
  if (!reporter.Start("Extraction computation")) return false;
  RegionSelector selector(data, settings, bits, result.changed[0], memory.GetSink(), reporter);
  CStats_Rgn* last = regions.GetLastActive();
  bool good = true;
  for (int i = 0; i < regions.GetCount(); ++i) {
    CStats_Rgn& region = regions.Get(i);
    if (!region.IsActive() || (incremental && &region != last)) continue;
    good = selector.Apply(region) && good;
    if (!reporter.Report(i, regions.GetCount()) || memory.IsCancelled()) return false;
  }
  if (settings.Has(kLists)) ListSetBits(bits, total, result.lists[0]);
  TakeOver(std::move(result));
  return good;
}

}  // namespace tallyscope
