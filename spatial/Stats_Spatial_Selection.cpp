// SPDX-License-Identifier: MIT
#include <algorithm>
#include <utility>

#include "spatial/CancelMemory.h"
#include "spatial/Rollback.h"
#include "spatial/Stats_Spatial.h"

namespace tallyscope {

namespace {

constexpr int kExtraction = 1;

}  // namespace

bool CStats_Spatial::AddSelRegion(std::unique_ptr<CStats_Rgn> region, CProgressSink* progress) {
  std::vector<std::unique_ptr<CStats_Rgn>> undone;
  while (!regions.IsEmpty() && !regions.Get(regions.GetCount() - 1).IsActive()) undone.push_back(regions.RemoveLast());
  regions.Append(std::move(region));
  CRollback rollback([&, flags = extractFlags] {
    extractFlags = flags;
    regions.RemoveLast();
    for (; !undone.empty(); undone.pop_back()) regions.Append(std::move(undone.back()));
  });
  extractFlags &= ~static_cast<unsigned>(kRegularCells | kLists | kExtractZ);
  extractFlags |= kBitmaps | kExtractX | kExtractY;
  if (!Reselect(true, progress)) return false;
  rollback.Keep();
  return true;
}

bool CStats_Spatial::ClearLastSelRegion(CProgressSink* progress) {
  CStats_Rgn* region = regions.GetLastActive();
  return region == nullptr || SetActiveAndReselect({&region, 1}, false, progress);
}

bool CStats_Spatial::RestoreLastSelRegion(CProgressSink* progress) {
  CStats_Rgn* region = regions.GetFirstInactive();
  return region == nullptr || SetActiveAndReselect({&region, 1}, true, progress);
}

bool CStats_Spatial::ClearAllSelRegion(CProgressSink* progress) {
  std::vector<CStats_Rgn*> active;
  for (int i = 0; i < regions.GetCount(); ++i) {
    if (regions.Get(i).IsActive()) active.push_back(&regions.Get(i));
  }
  return regions.IsEmpty() || SetActiveAndReselect(active, false, progress);
}

bool CStats_Spatial::SetActiveAndReselect(std::span<CStats_Rgn* const> changing, bool active, CProgressSink* progress) {
  const auto set = [changing](bool to) {
    for (CStats_Rgn* region : changing) region->SetActive(to);
  };
  CRollback rollback([&] { set(!active); });
  set(active);
  if (!Reselect(active, progress)) return false;
  rollback.Keep();
  return true;
}

// False when the sink cancels. A region that can't be searched is skipped, which shows in the missing flag.
bool CStats_Spatial::Reselect(bool incremental, CProgressSink* progress) {
  CRollback rollback([&, flags = extractFlags] { extractFlags = flags; });
  extractFlags &= ~static_cast<unsigned>(kIncremental);
  if (incremental) extractFlags |= kIncremental;
  if (IsItem(0)) {
    CCancelMemory memory(progress);
    CRollback flag([&, former = GetFlags(0)] { SetFlags(0, former & kExtraction); });
    ClearFlags(0, kExtraction);
    Calculate(kExtraction, memory.GetSink());
    if (memory.IsCancelled()) return false;
    flag.Keep();
  }
  rollback.Keep();
  return true;
}

}  // namespace tallyscope
