// SPDX-License-Identifier: MIT
#include "statistics/Stats_RgnList.h"

#include <algorithm>

namespace tallyscope {

CStats_RgnList& CStats_RgnList::operator=(const CStats_RgnList& other) {
  if (this == &other) return *this;
  regions_.clear();
  for (const auto& region : other.regions_) regions_.push_back(region->Clone());
  return *this;
}

void CStats_RgnList::DropUndone() {
  while (!regions_.empty() && !regions_.back()->IsActive()) regions_.pop_back();
}

CStats_Rgn* CStats_RgnList::GetLastActive() {
  const auto found = std::find_if(regions_.rbegin(), regions_.rend(), [](auto& region) { return region->IsActive(); });
  return found == regions_.rend() ? nullptr : found->get();
}

CStats_Rgn* CStats_RgnList::GetFirstInactive() {
  const auto found = std::find_if(regions_.begin(), regions_.end(), [](auto& region) { return !region->IsActive(); });
  return found == regions_.end() ? nullptr : found->get();
}

void CStats_RgnList::DeactivateAll() {
  for (auto& region : regions_) region->SetActive(false);
}

}  // namespace tallyscope
